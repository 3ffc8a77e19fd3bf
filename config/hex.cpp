// Bytes as hexadecimal digits and back.
#include "core/export.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

// The digit's value; -1, logged, for another character.
int digit_value(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  if (c >= 'A' && c <= 'F') {
    return c - 'A' + 10;
  }
  if (c >= 'a' && c <= 'f') {
    return c - 'a' + 10;
  }
  ZRCFG_TRACE("ascii_to_hex char %c is not hex.\n", c);
  return -1;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int hex_to_ascii(const unsigned char *in, char *out, int len) {
  if (in == nullptr || out == nullptr) {
    return -1;
  }
  for (int i = 0; i < len; ++i) {
    *out++ = kDigits[in[i] >> 4];
    *out++ = kDigits[in[i] & 15u];
  }
  return len;
}

ZRCFG_EXPORT int ascii_to_hex(const char *in, unsigned char *out, int len) {
  if (in == nullptr || out == nullptr) {
    return -1;
  }
  if (len % 2 != 0) {
    ZRCFG_TRACE("ascii_to_hex nlen %d is not even.\n", len);
    return -1;
  }
  if (len < 0) {
    return -1;
  }
  for (int i = 0; i < len; i += 2) {
    const int high = digit_value(in[i]);
    if (high < 0) {
      return -1;
    }
    const int low = digit_value(in[i + 1]);
    if (low < 0) {
      return -1;
    }
    *out++ = static_cast<unsigned char>(high * 16 + low);
  }
  return len / 2;
}

}  // extern "C"
