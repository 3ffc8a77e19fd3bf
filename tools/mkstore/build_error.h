// The one exception of the store builder: a finished sentence for the user.
#ifndef ZRCFG_TOOLS_MKSTORE_BUILD_ERROR_H_
#define ZRCFG_TOOLS_MKSTORE_BUILD_ERROR_H_

#include <cstddef>
#include <string>

namespace zrcfg::mkstore {

// Thrown for everything that ends a run with exit code 1. The text names the file and the place.
struct BuildError {
  std::string text;
};

[[noreturn]] inline void fail(const std::string &where, const std::string &reason) {
  throw BuildError{where + ": " + reason};
}

[[noreturn]] inline void fail_at_line(const std::string &file, size_t line,
                                      const std::string &reason) {
  throw BuildError{file + ":" + std::to_string(line) + ": " + reason};
}

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_BUILD_ERROR_H_
