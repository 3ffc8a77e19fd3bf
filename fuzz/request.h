// A request list for any object: two of its names and one that it does not have, every buffer a
// heap block of the exact size.
#ifndef ZRCFG_FUZZ_REQUEST_H_
#define ZRCFG_FUZZ_REQUEST_H_

#include <array>
#include <memory>
#include <string>

#include "fuzz/any_object.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {

inline constexpr char kUnknownName[] = "NoSuchParameter";
inline constexpr char kNewValue[] = "written";

// Heap memory that a sanitizer watches to the byte, zero-filled.
class Buffer {
 public:
  explicit Buffer(size_t size) : bytes_(new char[size]()) {}
  operator char *() const { return bytes_.get(); }

 private:
  std::unique_ptr<char[]> bytes_;
};

class Request {
 public:
  // `value_size` is that of each node's buffer; `text` stands in it.
  Request(const AnyObject &object, size_t value_size, const char *text);
  Request(const Request &) = delete;
  Request &operator=(const Request &) = delete;

  ParamValueEntry *first() { return nodes_[0].get(); }
  void set_faults(uint32_t code);
  // Makes every node one that an earlier write has changed.
  void set_changed();
  // Every text that a call may have stored has its end.
  void look_at_values() const;

 private:
  static constexpr size_t kNodes = 3;
  std::array<std::unique_ptr<ParamValueEntry>, kNodes> nodes_;
  std::array<std::unique_ptr<Buffer>, kNodes> buffers_;
  std::array<uint32_t, kNodes> faults_ = {};
  size_t value_size_;
};

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_REQUEST_H_
