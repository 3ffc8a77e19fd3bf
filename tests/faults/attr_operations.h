// The attribute calls that are put under faults, run on one known store.
#ifndef ZRCFG_TESTS_FAULTS_ATTR_OPERATIONS_H_
#define ZRCFG_TESTS_FAULTS_ATTR_OPERATIONS_H_

#include <stdint.h>

#include <ostream>
#include <string>
#include <vector>

#include "zrcfg.h"

namespace zrcfg_test {

// The store: object A/B/3/ of parameters First, Second, Third under the lock of A/B/0/, and A/
// under its own.
inline constexpr char kAttrDir[] = "A/B/3/";
inline constexpr char kAttrUrl[] = "A.B.3.";
void write_attr_store();
std::string attr_file_bytes();

// An open object for the steps, without a lock.
class AttrImage {
 public:
  AttrImage();
  ~AttrImage();
  AttrImage(const AttrImage &) = delete;
  AttrImage &operator=(const AttrImage &) = delete;
  ZrcfgObject *get() const { return image_; }

 private:
  ZrcfgObject *image_ = nullptr;
};

// A call or a step. `run` returns the result; a query adds "untouched" or what it has got to
// `output`. `image` is null for a call.
struct AttrOperation {
  const char *name;
  bool is_step;
  bool writes;
  bool memory_gives_15;  // Where a result list cannot be built.
  uint32_t (*run)(const char *url, ZrcfgObject *image, std::string &output);
  // The bytes of the file after success.
  std::string (*after)(std::string bytes);
};

void PrintTo(const AttrOperation &operation, std::ostream *out);
const std::vector<AttrOperation> &attr_operations();
std::vector<AttrOperation> attr_writers();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_FAULTS_ATTR_OPERATIONS_H_
