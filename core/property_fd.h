// A property file's descriptor for the length of one exported call.
#ifndef ZRCFG_CORE_PROPERTY_FD_H_
#define ZRCFG_CORE_PROPERTY_FD_H_

namespace zrcfg {

enum class Access { kRead, kWrite };

struct PropertyFd {
  int fd = -1;
  bool writable = false;
  bool borrowed = false;  // Whoever lent it closes it.

  // Opens `path` read-write for kWrite, and read-only where the file permits no more.
  bool open(const char *path, Access access);
  void close();
};

}  // namespace zrcfg

#endif  // ZRCFG_CORE_PROPERTY_FD_H_
