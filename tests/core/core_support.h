// What the tests of the core share: the usual object, opened images, guarded buffers, log order.
#ifndef ZRCFG_TESTS_CORE_CORE_SUPPORT_H_
#define ZRCFG_TESTS_CORE_CORE_SUPPORT_H_

#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/property_builder.h"
#include "support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {

inline constexpr char kDir[] = "Gateway/Device/";
inline constexpr char kUrl[] = "Gateway.Device.";
inline constexpr char kFile[] = "Gateway/Device/property.conf";

// An image opened without a lock for the length of a test.
class OpenedImage {
 public:
  explicit OpenedImage(const std::string &dir = kDir);
  ~OpenedImage();
  OpenedImage(const OpenedImage &) = delete;
  OpenedImage &operator=(const OpenedImage &) = delete;

  ZrcfgObject *get() const { return image_; }
  std::string bytes(size_t offset, size_t size) const;

 private:
  ZrcfgObject *image_ = nullptr;
};

// A 256-byte output buffer between guards, everything filled with a mark.
class GuardedBuffer {
 public:
  static constexpr char kMark = '\x5a';
  GuardedBuffer() { bytes_.fill(kMark); }

  char *data() { return bytes_.data() + kGuard; }
  // What was written up to its terminator; all 256 bytes when there is none.
  std::string text() const;
  char at(size_t i) const { return bytes_.at(kGuard + i); }
  // Whether no byte from `offset` of the buffer to the far guard's end was written, and none before
  // the buffer.
  bool untouched_from(size_t offset) const;
  bool untouched() const { return untouched_from(0); }

 private:
  static constexpr size_t kGuard = 64;
  std::array<char, 256 + 2 * kGuard> bytes_;
};

// A lock on a store file through a descriptor of its own, for the length of a test's block.
class HeldLock {
 public:
  HeldLock(const std::string &relative, int operation);
  ~HeldLock();
  HeldLock(const HeldLock &) = delete;
  HeldLock &operator=(const HeldLock &) = delete;

 private:
  int fd_;
};

// Whether such a lock could be taken at this moment.
bool can_lock(const std::string &relative, int operation);

// The logged lines whose texts are fixed, in order, descriptor numbers replaced by "N" and
// addresses by "P". Lines that only mark progress are left out.
std::vector<std::string> fixed_log();
std::string last_fixed_log();  // Empty when there is none.

// A URL, or directory with '/', of exactly `length` characters, separators and last one included.
std::string long_path(size_t length, char separator);

// Sets the file's modification time to a moment long ago, and tells whether it is still that.
void age_file(const std::string &relative);
bool is_aged(const std::string &relative);

// Makes an entry that exists but cannot be opened, not even by root.
void make_unopenable(const std::string &relative);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CORE_CORE_SUPPORT_H_
