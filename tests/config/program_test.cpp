// Random round trips of the codecs against the programs base64 and xxd.
#include <algorithm>

#include "tests/config/config_support.h"

namespace zrcfg_test {
namespace {

constexpr int kRounds = 60;
constexpr size_t kLargest = 300;

class ProgramTest : public StoreTest {
 protected:
  // Sizes from 0 on, so that every size of the last group is there.
  std::string next_bytes(int round) {
    const size_t size = round < 20 ? static_cast<size_t>(round) : random_() % kLargest;
    return random_bytes(&random_, size);
  }

  // xxd prints 30 bytes a line.
  static std::string one_line(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
    return text;
  }

 private:
  std::mt19937 random_{4648};
};

TEST_F(ProgramTest, Base64ProgramAgrees) {
  for (int round = 0; round < kRounds; ++round) {
    const std::string bytes = next_bytes(round);
    Guarded text;
    ASSERT_EQ(zrcfg_encryp_string(bytes.data(), text.data(), static_cast<int>(bytes.size())), 0);
    const std::string encoded = text.data();
    ASSERT_EQ(encoded, run_program("base64 -w 0", bytes)) << "round " << round;
    ASSERT_EQ(bytes, run_program("base64 -d", encoded)) << "round " << round;
    Guarded back;
    ASSERT_EQ(zrcfg_dencryp_string(encoded.c_str(), back.data(), kGuardedSize),
              static_cast<int>(bytes.size()));
    ASSERT_EQ(back.first(bytes.size()), bytes) << "round " << round;
  }
}

TEST_F(ProgramTest, XxdAgrees) {
  for (int round = 0; round < kRounds; ++round) {
    const std::string bytes = next_bytes(round);
    const int size = static_cast<int>(bytes.size());
    Guarded text;
    ASSERT_EQ(
        hex_to_ascii(reinterpret_cast<const unsigned char *>(bytes.data()), text.data(), size),
        size);
    const std::string digits = text.first(2 * bytes.size());
    ASSERT_EQ(digits, one_line(run_program("xxd -p -u", bytes))) << "round " << round;
    ASSERT_EQ(bytes, run_program("xxd -r -p", digits)) << "round " << round;

    const std::string lower = one_line(run_program("xxd -p", bytes));
    for (const std::string &read : {digits, lower}) {
      Guarded back;
      ASSERT_EQ(ascii_to_hex(read.data(), back.bytes(), 2 * size), size);
      ASSERT_EQ(back.first(bytes.size()), bytes) << "round " << round;
    }
  }
}

}  // namespace
}  // namespace zrcfg_test
