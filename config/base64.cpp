// Base64 encoding and decoding of texts.
#include "config/base64.h"

#include <stdint.h>
#include <string.h>

#include "zrcfg.h"

const char g_base64_char[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

namespace zrcfg {
namespace {

constexpr char kPadding = '=';
constexpr uint8_t kNotInAlphabet = 0xFF;

char digit(uint32_t bits) {
  return g_base64_char[bits & 63u];
}

// Encodes one group of one to three bytes into four characters.
void encode_group(const uint8_t *in, int size, char *out) {
  const uint32_t group = (uint32_t{in[0]} << 16) | (size > 1 ? uint32_t{in[1]} << 8 : 0) |
                         (size > 2 ? uint32_t{in[2]} : 0);
  out[0] = digit(group >> 18);
  out[1] = digit(group >> 12);
  out[2] = size > 1 ? digit(group >> 6) : kPadding;
  out[3] = size > 2 ? digit(group) : kPadding;
}

uint8_t digit_value(char c) {
  const char *const at = c != '\0' ? strchr(g_base64_char, c) : nullptr;
  return at != nullptr ? static_cast<uint8_t>(at - g_base64_char) : kNotInAlphabet;
}

// Decodes the four characters of a group. Bad characters enter with all bits set. Returns the
// bytes that stand before a padding character.
int decode_group(const char (&text)[4], char (&out)[3]) {
  const unsigned a = digit_value(text[0]);
  const unsigned b = digit_value(text[1]);
  const unsigned c = digit_value(text[2]);
  const unsigned d = digit_value(text[3]);
  out[0] = static_cast<char>((a << 2) | ((b >> 4) & 3u));
  out[1] = static_cast<char>((b << 4) | ((c >> 2) & 15u));
  out[2] = static_cast<char>((c << 6) | (d & 63u));
  if (text[2] == kPadding) {
    return 1;
  }
  return text[3] == kPadding ? 2 : 3;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int zrcfg_encryp_string(const char *in, char *out, int inLen) {
  if (in == nullptr || out == nullptr) {
    return -1;
  }
  const uint8_t *const bytes = reinterpret_cast<const uint8_t *>(in);
  for (int i = 0; i < inLen; i += 3) {
    const int left = inLen - i;
    encode_group(bytes + i, left < 3 ? left : 3, out);
    out += 4;
    if (left <= 3) {
      break;
    }
  }
  *out = '\0';
  return 0;
}

ZRCFG_EXPORT int zrcfg_dencryp_string(const char *in, char *out, int outSize) {
  if (in == nullptr || out == nullptr) {
    return -1;
  }
  int written = 0;
  bool ended = false;
  while (!ended && *in != '\0') {
    // What lies behind the end of the text is not looked at and counts as zero bytes.
    char group[4] = {};
    const size_t taken = strnlen(in, sizeof group);
    memcpy(group, in, taken);
    in += taken;
    char bytes[3];
    const int count = decode_group(group, bytes);
    for (int i = 0; i < count; ++i) {
      if (written >= outSize) {
        return written;
      }
      out[written++] = bytes[i];
    }
    ended = count < 3 || taken < sizeof group;
  }
  return written;
}

}  // extern "C"
