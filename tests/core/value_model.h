// What reading and writing one value has to do to the bytes of any property file, well-formed or
// not: a second, plain account that the library's results are compared with.
#ifndef ZRCFG_TESTS_CORE_VALUE_MODEL_H_
#define ZRCFG_TESTS_CORE_VALUE_MODEL_H_

#include <cstdint>
#include <optional>
#include <string>

namespace zrcfg_test {

struct ReadOutcome {
  uint32_t result;
  std::optional<std::string> value;  // Nothing: the buffer is not written.
};

struct WriteOutcome {
  uint32_t result;
  std::string file;                      // All bytes after the call.
  std::optional<uint8_t> changed;        // Nothing: the flag is not written.
  std::optional<std::string> old_value;  // Nothing: the buffer is not written.
};

ReadOutcome model_read(const std::string &file, const std::string &name);
WriteOutcome model_write(const std::string &file, const std::string &name,
                         const std::string &value);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CORE_VALUE_MODEL_H_
