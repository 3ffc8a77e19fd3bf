// The well-formed files that the tests damage.
#ifndef ZRCFG_TESTS_ANYBYTES_ANY_FILES_H_
#define ZRCFG_TESTS_ANYBYTES_ANY_FILES_H_

#include <string>
#include <vector>

namespace zrcfg_test {

struct NamedFile {
  const char *name;
  std::string bytes;
};

// Files of different shapes, none larger than some hundred bytes.
const std::vector<NamedFile> &small_files();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_ANYBYTES_ANY_FILES_H_
