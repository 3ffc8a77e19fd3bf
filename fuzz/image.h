// An object that is open for the length of a call: its image, and the table of its values.
#ifndef ZRCFG_FUZZ_IMAGE_H_
#define ZRCFG_FUZZ_IMAGE_H_

#include <stdlib.h>

#include "fuzz/any_object.h"
#include "values/value_table.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {

// Null when the object cannot be opened; `result` tells why.
class Image {
 public:
  explicit Image(const AnyObject &object)
      : result_(createObjByPath(&image_, object.dir.c_str(), &lock_, ZRCFG_LOCK_EXCLUSIVE, 0)) {}
  ~Image() {
    if (image_ != nullptr) {
      (void)destroyObj(image_, lock_);  // Always 0.
    }
  }
  Image(const Image &) = delete;
  Image &operator=(const Image &) = delete;

  ZrcfgObject *get() const { return image_; }
  uint32_t result() const { return result_; }

 private:
  ZrcfgObject *image_ = nullptr;
  int lock_ = -1;
  uint32_t result_;
};

// Null when there is no image or no table.
class ValueTable {
 public:
  explicit ValueTable(const AnyObject &object)
      : image_(object),
        result_(image_.get() == nullptr ? static_cast<int>(image_.result())
                                        : constructParamValues(image_.get(), &table_)) {}
  ~ValueTable() { free(table_); }
  ValueTable(const ValueTable &) = delete;
  ValueTable &operator=(const ValueTable &) = delete;

  ZrcfgObject *image() const { return image_.get(); }
  char *get() const { return table_; }
  int result() const { return result_; }

 private:
  Image image_;
  char *table_ = nullptr;
  int result_;
};

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_IMAGE_H_
