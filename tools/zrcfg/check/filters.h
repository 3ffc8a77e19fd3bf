// The filters of the store: what a parameter's value may be.
#ifndef ZRCFG_TOOLS_ZRCFG_CHECK_FILTERS_H_
#define ZRCFG_TOOLS_ZRCFG_CHECK_FILTERS_H_

#include <regex.h>
#include <stddef.h>
#include <stdint.h>

namespace zrcfg_tool {

enum class Verdict {
  kTaken,
  kRefused,
  kNoFilter,    // The file of filters has none of that number, or cannot be read.
  kBadPattern,  // The filter is no regular expression.
};

// Judges values as the library does, but keeps filters that it has used compiled.
class Filters {
 public:
  Filters();
  ~Filters();
  Filters(const Filters &) = delete;
  Filters &operator=(const Filters &) = delete;

  // The filter itself: kTaken when values can be judged, or need not be.
  Verdict judge(uint32_t number);
  Verdict judge(uint32_t number, const char *value);

 private:
  static constexpr size_t kKept = 128;

  struct Slot {
    uint32_t number = 0;  // 0 for a free one.
    Verdict verdict;      // kTaken for a compiled filter, else what becomes of every value.
    regex_t regex;
  };

  void compile(Slot &slot, uint32_t number);
  // The filter's slot, compiled; null when it takes every value.
  const Slot *find(uint32_t number);

  bool exists_;
  bool readable_;
  Slot slots_[kKept];
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CHECK_FILTERS_H_
