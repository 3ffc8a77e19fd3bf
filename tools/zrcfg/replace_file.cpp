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
namespace {

bool failed(const char *name) {
  complain("%s: cannot be written: %s", name, strerror(errno));
  return false;
}

// Whether the name is that of a device, a pipe or a directory.
bool is_special(const char *name) {
  struct stat status;
  return stat(name, &status) == 0 && !S_ISREG(status.st_mode);
}

bool write_special(const char *name, bool (*write)(FILE *stream, const void *context),
                   const void *context) {
  FILE *const stream = fopen(name, "we");
  if (stream == nullptr) {
    return failed(name);
  }
  const bool written = write(stream, context);
  return (fclose(stream) == 0 && written) || failed(name);
}

// Replaces the file itself, not a link to it.
bool replace_regular(const char *name, bool (*write)(FILE *stream, const void *context),
                     const void *context) {
  Bytes temporary;
  if (!temporary.append(name) || !temporary.append(".XXXXXX") || !temporary.append('\0')) {
    return false;
  }
  const int fd = mkstemp(temporary.at);
  if (fd == -1) {
    return failed(name);
  }
  FILE *const stream = fdopen(fd, "w");
  if (stream == nullptr) {
    (void)failed(name);
    (void)close(fd);             // The failure before it is what matters,
    (void)unlink(temporary.at);  // here too.
    return false;
  }
  const mode_t mask = umask(0);
  (void)umask(mask);
  const bool written = write(stream, context) && fchmod(fd, 0666 & ~mask) == 0 &&
                       fflush(stream) == 0 && fsync(fd) == 0;
  if (fclose(stream) == 0 && written && rename(temporary.at, name) == 0) {
    return true;
  }
  (void)failed(name);
  (void)unlink(temporary.at);  // The failure before it is what matters.
  return false;
}

}  // namespace

bool replace_file(const char *name, bool (*write)(FILE *stream, const void *context),
                  const void *context) {
  if (is_special(name)) {
    return write_special(name, write, context);
  }
  char *const target = realpath(name, nullptr);
  const bool replaced = replace_regular(target != nullptr ? target : name, write, context);
  free(target);
  return replaced;
}

}  // namespace zrcfg_tool
