// A number as an argument.
#include "tools/zrcfg/number.h"

#include <limits.h>

namespace zrcfg_tool {

bool parse_number(const char *text, size_t length, int &number) {
  number = 0;
  for (size_t i = 0; i < length; ++i) {
    const int digit = text[i] - '0';
    if (digit < 0 || digit > 9 || number > (INT_MAX - digit) / 10) {
      return false;
    }
    number = number * 10 + digit;
  }
  return length > 0;
}

}  // namespace zrcfg_tool
