// Stands between the library and scandir: fails it, changes what it found, acts before and after.
#ifndef ZRCFG_TESTS_SUPPORT_SCAN_HOOK_H_
#define ZRCFG_TESTS_SUPPORT_SCAN_HOOK_H_

#include <functional>
#include <string>
#include <vector>

namespace zrcfg_test {

// One entry that scandir has found, in its sorted place.
struct ScannedEntry {
  std::string name;
  unsigned char *type;  // May be set to any type, 0 for an unknown one.
};

struct ScanHooks {
  // Called with the absolute path; an error number other than 0 fails the scan with it.
  std::function<int(const std::string &path)> before;
  std::function<void(const std::string &path, const std::vector<ScannedEntry> &entries)> after;
};

// In force from its making to its end. One at a time; programs that use it compile scan_hook.cpp.
class ScanHook {
 public:
  explicit ScanHook(const ScanHooks &hooks);
  ~ScanHook();
  ScanHook(const ScanHook &) = delete;
  ScanHook &operator=(const ScanHook &) = delete;

  // How many scans were made.
  unsigned count() const;
};

// Fails every scan of that directory, given relative to the store root with its final slash.
ScanHooks failing_scan(const std::string &dir, int error);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_SCAN_HOOK_H_
