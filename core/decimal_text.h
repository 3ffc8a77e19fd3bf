// Decimal texts as numbers, with the target's 32-bit limits on every host.
#ifndef ZRCFG_CORE_DECIMAL_TEXT_H_
#define ZRCFG_CORE_DECIMAL_TEXT_H_

#include <stdint.h>
#include <stdlib.h>

namespace zrcfg {

// The number that a text begins with, behind blanks and a sign; saturating, 0 without digits.
inline int decimal_value(const char *text) {
  const long value = strtol(text, nullptr, 10);
  if (value > INT32_MAX) {
    return INT32_MAX;
  }
  return value < INT32_MIN ? INT32_MIN : static_cast<int>(value);
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_DECIMAL_TEXT_H_
