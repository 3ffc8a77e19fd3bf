// Writing a file that replaces an older one as a whole or not at all.
#include "tools/zrcfg/replace_file.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {

bool replace_file(const char *name, bool (*write)(FILE *stream, const void *context),
                  const void *context) {
  Bytes temporary;
  if (!temporary.append(name) || !temporary.append(".XXXXXX") || !temporary.append('\0')) {
    return false;
  }
  const int fd = mkstemp(temporary.at);
  FILE *const stream = fd != -1 ? fdopen(fd, "w") : nullptr;
  if (stream == nullptr) {
    complain("%s: cannot be written: %s", name, strerror(errno));
    return false;
  }
  const mode_t mask = umask(0);
  (void)umask(mask);
  const bool written = write(stream, context) && fchmod(fd, 0666 & ~mask) == 0 &&
                       fflush(stream) == 0 && fsync(fd) == 0;
  if (fclose(stream) == 0 && written && rename(temporary.at, name) == 0) {
    return true;
  }
  complain("%s: cannot be written: %s", name, strerror(errno));
  (void)unlink(temporary.at);  // The failure before it is what matters.
  return false;
}

}  // namespace zrcfg_tool
