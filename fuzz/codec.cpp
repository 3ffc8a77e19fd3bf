// Target: the input is bytes for the codecs, and text for their decoders.
#include <string.h>

#include <algorithm>
#include <memory>
#include <string>

#include "fuzz/check.h"
#include "fuzz/target.h"
#include "zrcfg.h"

namespace {

using zrcfg_fuzz::require;

// A block of the exact size, so that a sanitizer sees each byte beyond it.
std::unique_ptr<char[]> block(size_t size) {
  return std::unique_ptr<char[]>(new char[size]);
}

void round_trip(const char *bytes, size_t size) {
  zrcfg_fuzz::set_under_way("base64 there and back");
  const auto length = static_cast<int>(size);
  const size_t text_size = 4 * ((size + 2) / 3) + 1;
  const auto text = block(text_size);
  require(zrcfg_encryp_string(bytes, text.get(), length) == 0, "bytes are refused");
  require(strlen(text.get()) == text_size - 1, "a text of another length");
  const auto again = block(size);
  require(zrcfg_dencryp_string(text.get(), again.get(), length) == length, "fewer bytes come back");
  require(memcmp(again.get(), bytes, size) == 0, "other bytes come back");

  zrcfg_fuzz::set_under_way("hexadecimal there and back");
  const auto digits = block(2 * size);
  const auto *const in = reinterpret_cast<const unsigned char *>(bytes);
  require(hex_to_ascii(in, digits.get(), length) == length, "bytes are refused");
  auto *const out = reinterpret_cast<unsigned char *>(again.get());
  require(ascii_to_hex(digits.get(), out, 2 * length) == length, "digits are refused");
  require(memcmp(again.get(), bytes, size) == 0, "other bytes come back");
}

// Any text, into buffers that are too small, that fit, and that are too large.
void decode(const std::string &text, size_t room) {
  zrcfg_fuzz::set_under_way("decoding");
  const auto text_block = block(text.size() + 1);
  memcpy(text_block.get(), text.c_str(), text.size() + 1);
  for (const size_t size : {room, text.size(), 3 * text.size() / 4}) {
    const auto out = block(size);
    const int got = zrcfg_dencryp_string(text_block.get(), out.get(), static_cast<int>(size));
    require(got >= 0 && static_cast<size_t>(got) <= size, "more bytes than there is room");
  }
  const size_t length = strlen(text.c_str());
  const auto out = block(length / 2);
  const int got = ascii_to_hex(text_block.get(), reinterpret_cast<unsigned char *>(out.get()),
                               static_cast<int>(length));
  require(got == -1 || static_cast<size_t>(got) == length / 2, "another number of bytes");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  const auto copy = block(size);
  std::copy(bytes.begin(), bytes.end(), copy.get());
  round_trip(copy.get(), size);
  decode(bytes, size == 0 ? 0 : data[0]);
  int mode = 0;
  std::copy_n(data, std::min(size, sizeof mode), reinterpret_cast<uint8_t *>(&mode));
  CryptoInfo info = {};
  zrcfg_get_crytoinfo_from_encryptmode(mode, &info);
  return 0;
}
