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

constexpr mode_t kNewFileMode = 0666;

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

bool write_standard_output(bool (*write)(FILE *stream, const void *context), const void *context) {
  if (write(stdout, context) && fflush(stdout) == 0) {
    return true;
  }
  (void)failed("standard output");
  clearerr(stdout);  // It is reported.
  return false;
}

// A new file gets the permissions that the umask leaves. One that replaces another keeps those, and
// the owner where the user may give files away; the group's are not for another group.
bool set_permissions(int fd, const char *name) {
  struct stat old;
  if (stat(name, &old) == 0) {
    const bool is_given = fchown(fd, old.st_uid, old.st_gid) == 0;
    const mode_t kept = S_IRWXU | S_IRWXO | (is_given ? S_IRWXG : 0);
    return fchmod(fd, old.st_mode & kept) == 0;
  }
  const mode_t mask = umask(0);
  (void)umask(mask);
  return fchmod(fd, kNewFileMode & ~mask) == 0;
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
  const bool written =
      write(stream, context) && set_permissions(fd, name) && fflush(stream) == 0 && fsync(fd) == 0;
  if (fclose(stream) == 0 && written && rename(temporary.at, name) == 0) {
    return true;
  }
  (void)failed(name);
  (void)unlink(temporary.at);  // The failure before it is what matters.
  return false;
}

}  // namespace

bool is_standard_output(const char *name) {
  struct stat named;
  struct stat output;
  return strcmp(name, "-") == 0 || (stat(name, &named) == 0 && fstat(STDOUT_FILENO, &output) == 0 &&
                                    named.st_dev == output.st_dev && named.st_ino == output.st_ino);
}

bool replace_file(const char *name, bool (*write)(FILE *stream, const void *context),
                  const void *context) {
  if (is_standard_output(name)) {
    return write_standard_output(write, context);
  }
  if (is_special(name)) {
    return write_special(name, write, context);
  }
  char *const target = realpath(name, nullptr);
  const bool replaced = replace_regular(target != nullptr ? target : name, write, context);
  free(target);
  return replaced;
}

}  // namespace zrcfg_tool
