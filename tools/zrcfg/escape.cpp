// Control characters, and escape sequences that stand for characters.
#include "tools/zrcfg/escape.h"

#include <ctype.h>
#include <string.h>

namespace zrcfg_tool {
namespace {

int hex_digit(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  const int lower = tolower(static_cast<unsigned char>(c));
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

char meaning_of_letter(char c) {
  switch (c) {
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case 'n':
      return '\n';
    default:
      return c;
  }
}

}  // namespace

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

size_t unescape(const char *text, const char *single, char &out) {
  if (text[0] == '\0') {
    return 0;
  }
  if (strchr(single, text[0]) != nullptr) {
    out = meaning_of_letter(text[0]);
    return 1;
  }
  if (text[0] != 'x') {
    return 0;
  }
  const int high = hex_digit(text[1]);
  const int low = high >= 0 ? hex_digit(text[2]) : -1;
  if (low < 0 || (high == 0 && low == 0)) {
    return 0;
  }
  out = static_cast<char>(high * 16 + low);
  return 3;
}

}  // namespace zrcfg_tool
