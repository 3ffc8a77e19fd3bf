// Standard input when it is where the commands come from.
#include "tools/zrcfg/standard_input.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr int kFirstOwnDescriptor = 3;

bool reserved = false;

void close_failed(int moved, FILE *stream, int nothing) {
  if (stream != nullptr) {
    (void)fclose(stream);
  } else if (moved != -1) {
    (void)close(moved);
  }
  if (nothing != -1) {
    (void)close(nothing);
  }
}

}  // namespace

void reserve_standard_input() {
  reserved = true;
}

bool standard_input_reserved() {
  return reserved;
}

FILE *take_standard_input() {
  const int moved = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, kFirstOwnDescriptor);
  FILE *const stream = moved != -1 ? fdopen(moved, "re") : nullptr;
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (stream == nullptr || nothing == -1 || dup2(nothing, STDIN_FILENO) == -1) {
    complain("standard input: cannot be read: %s", strerror(errno));
    close_failed(moved, stream, nothing);
    return nullptr;
  }
  (void)close(nothing);  // Its copy stays.
  reserve_standard_input();
  return stream;
}

}  // namespace zrcfg_tool
