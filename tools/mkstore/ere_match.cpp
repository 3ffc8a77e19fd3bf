// Matching with libc's extended regular expressions, as the device does it.
#include "tools/mkstore/ere_match.h"

#include <regex.h>

#include <map>
#include <memory>

namespace zrcfg::mkstore {

namespace {

struct Compiled {
  regex_t expression = {};
  bool usable = false;

  explicit Compiled(const std::string &text)
      : usable(regcomp(&expression, text.c_str(), REG_EXTENDED | REG_NOSUB) == 0) {}
  ~Compiled() {
    if (usable) {
      regfree(&expression);
    }
  }
  Compiled(const Compiled &) = delete;
  Compiled &operator=(const Compiled &) = delete;
};

constexpr size_t kKept = 256;

// Compiled expressions are kept, because a document uses few of them many times. What libc learns
// while it matches stays with them, so that too many of them are forgotten.
const Compiled &compiled(const std::string &text) {
  static std::map<std::string, std::unique_ptr<Compiled>> cache;
  if (cache.size() >= kKept && cache.count(text) == 0) {
    cache.clear();
  }
  std::unique_ptr<Compiled> &entry = cache[text];
  if (!entry) {
    entry = std::make_unique<Compiled>(text);
  }
  return *entry;
}

}  // namespace

bool ere_matches(const std::string &expression, const std::string &value) {
  const Compiled &with = compiled(expression);
  return with.usable && regexec(&with.expression, value.c_str(), 0, nullptr, 0) == 0;
}

}  // namespace zrcfg::mkstore
