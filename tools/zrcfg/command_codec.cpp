// encode, decode: texts and bytes as base64 or hexadecimal digits and back.
#include <limits.h>
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// The codecs count in int, and hexadecimal text is twice as long as what it stands for.
constexpr size_t kMaxInput = INT_MAX / 4;

bool write_output(const char *bytes, size_t size) {
  return fwrite(bytes, 1, size, stdout) == size;  // main reports what standard output suffers.
}

bool encode(const Options &options, const char *text, size_t size) {
  Bytes output;
  const size_t encoded = options.has(kHex) ? 2 * size : (size + 2) / 3 * 4;
  if (!output.reserve(encoded + 1)) {
    return false;
  }
  if (options.has(kHex)) {
    (void)hex_to_ascii(reinterpret_cast<const unsigned char *>(text), output.at,
                       static_cast<int>(size));
  } else {
    (void)zrcfg_encryp_string(text, output.at, static_cast<int>(size));  // Always 0.
  }
  output.at[encoded] = '\n';
  (void)write_output(output.at, encoded + 1);
  return true;
}

bool is_base64(const char *text, size_t size) {
  constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const size_t digits = strspn(text, kAlphabet);
  const size_t padding = size - digits;
  return size % 4 == 0 && padding <= 2 && strspn(text + digits, "=") == padding;
}

bool decode(const Options &options, const char *text, size_t size) {
  Bytes output;
  if (!output.reserve(size + 1)) {
    return false;
  }
  int decoded = -1;
  if (options.has(kHex)) {
    decoded =
        ascii_to_hex(text, reinterpret_cast<unsigned char *>(output.at), static_cast<int>(size));
  } else if (is_base64(text, size)) {
    decoded = zrcfg_dencryp_string(text, output.at, static_cast<int>(size));
  }
  if (decoded < 0) {
    complain("not %s text", options.has(kHex) ? "hexadecimal" : "base64");
    return false;
  }
  (void)write_output(output.at, static_cast<size_t>(decoded));
  return true;
}

// Removes the line ends and blanks that text carries when it comes out of a file.
size_t strip_white_space(char *text, size_t size) {
  size_t kept = 0;
  for (size_t i = 0; i < size; ++i) {
    if (strchr(" \t\r\n", text[i]) == nullptr || text[i] == '\0') {
      text[kept++] = text[i];
    }
  }
  text[kept] = '\0';
  return kept;
}

}  // namespace

int run_encode(const Options &options, const Arguments &arguments) {
  Bytes input;
  if (arguments.count == 0) {
    return input.read_all(stdin, "standard input", kMaxInput) &&
                   encode(options, input.at, input.size)
               ? kExitOk
               : kExitRefused;
  }
  for (int i = 0; i < arguments.count; ++i) {
    if (!encode(options, arguments.values[i], strlen(arguments.values[i]))) {
      return kExitRefused;
    }
  }
  return kExitOk;
}

int run_decode(const Options &options, const Arguments &arguments) {
  if (arguments.count > 1) {
    complain("takes one text");
    return kExitUsage;
  }
  if (arguments.count == 1) {
    const char *const text = arguments.values[0];
    return decode(options, text, strlen(text)) ? kExitOk : kExitRefused;
  }
  Bytes input;
  if (!input.read_all(stdin, "standard input", kMaxInput)) {
    return kExitRefused;
  }
  const size_t size = strip_white_space(input.at, input.size);
  return decode(options, input.at, size) ? kExitOk : kExitRefused;
}

}  // namespace zrcfg_tool
