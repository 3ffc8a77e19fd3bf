// A property file's descriptor for the length of one exported call.
#include "core/property_fd.h"

#include <fcntl.h>
#include <unistd.h>

#include "core/store_file.h"

namespace zrcfg {

bool PropertyFd::open(const char *path, Access access) {
  if (access == Access::kWrite) {
    fd = open_store_file(path, O_RDWR);
    writable = fd != -1;
  }
  if (!writable) {
    fd = open_store_file(path, O_RDONLY);
  }
  return fd != -1;
}

void PropertyFd::close() {
  if (fd != -1 && !borrowed) {
    (void)::close(fd);  // The store never relies on what a close may still report.
  }
  *this = {};
}

}  // namespace zrcfg
