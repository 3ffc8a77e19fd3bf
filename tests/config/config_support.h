// Buffers that show what was written, and processes in which nothing is cached yet.
#ifndef ZRCFG_TESTS_CONFIG_CONFIG_SUPPORT_H_
#define ZRCFG_TESTS_CONFIG_CONFIG_SUPPORT_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>

#include "support/log_capture.h"
#include "support/property_builder.h"
#include "support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {

inline constexpr size_t kGuardedSize = 1024;
inline constexpr char kUntouchedByte = 0x5A;

// A buffer filled with a byte of its own, larger than what the call under test may use.
struct Guarded {
  Guarded() { text.assign(kGuardedSize, kUntouchedByte); }
  char *data() { return text.data(); }
  unsigned char *bytes() { return reinterpret_cast<unsigned char *>(text.data()); }
  std::string first(size_t size) const { return text.substr(0, size); }
  bool untouched_from(size_t at) const {
    return text.find_first_not_of(kUntouchedByte, at) == std::string::npos;
  }
  std::string text;
};

// The texts of RFC 4648, section 10.
struct Rfc4648Row {
  const char *text;
  const char *base64;
  const char *base16;
};
inline constexpr Rfc4648Row kRfc4648[] = {
    {"", "", ""},
    {"f", "Zg==", "66"},
    {"fo", "Zm8=", "666F"},
    {"foo", "Zm9v", "666F6F"},
    {"foob", "Zm9vYg==", "666F6F62"},
    {"fooba", "Zm9vYmE=", "666F6F6261"},
    {"foobar", "Zm9vYmFy", "666F6F626172"},
};

std::string random_bytes(std::mt19937 *random, size_t size);

// Runs `body` in a child process; its failures are printed and fail the caller.
void in_own_process(const std::function<void()> &body);

// Feeds a program's standard input and returns what it prints.
std::string run_program(const std::string &command, const std::string &input);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CONFIG_CONFIG_SUPPORT_H_
