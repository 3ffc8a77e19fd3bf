// Reading a whole file that a command was given.
#include "tools/zrcfg/input_file.h"

#include <errno.h>
#include <string.h>

#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kMaxFile = 64u << 20;

}  // namespace

bool read_input_file(const char *name, Bytes &bytes) {
  if (strcmp(name, "-") == 0) {
    return bytes.read_all(stdin, "standard input", kMaxFile);
  }
  FILE *const file = fopen(name, "re");
  if (file == nullptr) {
    complain("%s: cannot be read: %s", name, strerror(errno));
    return false;
  }
  const bool ok = bytes.read_all(file, name, kMaxFile);
  (void)fclose(file);  // Only read.
  return ok;
}

}  // namespace zrcfg_tool
