// A set of texts.
#ifndef ZRCFG_TOOLS_ZRCFG_TEXT_SET_H_
#define ZRCFG_TOOLS_ZRCFG_TEXT_SET_H_

#include <stddef.h>

namespace zrcfg_tool {

// Keeps copies of what is added.
class TextSet {
 public:
  TextSet() = default;
  ~TextSet();
  TextSet(const TextSet &) = delete;
  TextSet &operator=(const TextSet &) = delete;

  // Reports and returns false without memory. Adding twice is adding once.
  bool add(const char *text);
  // Whether the `length` characters at `text` are in the set.
  bool has(const char *text, size_t length) const;
  bool has(const char *text) const;

 private:
  size_t place_of(const char *text, size_t length) const;
  bool grow();

  char **slots_ = nullptr;  // Null in a free place.
  size_t capacity_ = 0;     // A power of two.
  size_t used_ = 0;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_TEXT_SET_H_
