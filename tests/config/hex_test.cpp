// Tests of hexadecimal digits.
#include "tests/config/config_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

class HexTest : public StoreTest {
 protected:
  static std::string digits_of(const std::string &bytes) {
    Guarded out;
    const int length = static_cast<int>(bytes.size());
    EXPECT_EQ(
        hex_to_ascii(reinterpret_cast<const unsigned char *>(bytes.data()), out.data(), length),
        length);
    EXPECT_TRUE(out.untouched_from(2 * bytes.size())) << "no terminator";
    return out.first(2 * bytes.size());
  }

  static std::string bytes_of(const std::string &digits) {
    Guarded out;
    const int length = static_cast<int>(digits.size());
    EXPECT_EQ(ascii_to_hex(digits.data(), out.bytes(), length), length / 2);
    EXPECT_TRUE(out.untouched_from(digits.size() / 2));
    return out.first(digits.size() / 2);
  }
};

TEST_F(HexTest, BytesBecomeUpperCaseDigits) {
  EXPECT_EQ(digits_of("\x0A\xFF"), "0AFF");
  EXPECT_EQ(digits_of(std::string("\0\x10\x9A\xBC\xDE\xF0", 6)), "00109ABCDEF0");
  EXPECT_EQ(digits_of(""), "");
}

TEST_F(HexTest, DigitsOfEitherCaseBecomeBytes) {
  EXPECT_EQ(bytes_of("0AFF"), "\x0A\xFF");
  EXPECT_EQ(bytes_of("0aff"), "\x0A\xFF");
  EXPECT_EQ(bytes_of("0aFf"), "\x0A\xFF");
  EXPECT_EQ(bytes_of("0123456789abcdefABCDEF"), "\x01\x23\x45\x67\x89\xAB\xCD\xEF\xAB\xCD\xEF");
  EXPECT_EQ(bytes_of(""), "");
  EXPECT_TRUE(log_lines().empty());
}

TEST_F(HexTest, VectorsOfRfc4648) {
  for (const Rfc4648Row &row : kRfc4648) {
    EXPECT_EQ(digits_of(row.text), row.base16);
    EXPECT_EQ(bytes_of(row.base16), row.text);
  }
}

TEST_F(HexTest, OnlyAsManyBytesAsToldTo) {
  Guarded out;
  EXPECT_EQ(hex_to_ascii(reinterpret_cast<const unsigned char *>("abc"), out.data(), 1), 1);
  EXPECT_EQ(out.first(2), "61");
  EXPECT_TRUE(out.untouched_from(2));
  Guarded back;
  EXPECT_EQ(ascii_to_hex("616263", back.bytes(), 4), 2);
  EXPECT_EQ(back.first(2), "ab");
  EXPECT_TRUE(back.untouched_from(2));
}

TEST_F(HexTest, OddLengthFailsBeforeAnythingIsWritten) {
  Guarded out;
  EXPECT_EQ(ascii_to_hex("0aff", out.bytes(), 3), -1);
  EXPECT_TRUE(out.untouched_from(0));
  EXPECT_THAT(log_texts(), ElementsAre("ascii_to_hex nlen 3 is not even.\n"));
  clear_log();
  EXPECT_EQ(ascii_to_hex("zz", out.bytes(), 1), -1);
  EXPECT_THAT(log_texts(), ElementsAre("ascii_to_hex nlen 1 is not even.\n"));
}

TEST_F(HexTest, OtherCharacterFailsAtOnce) {
  Guarded out;
  EXPECT_EQ(ascii_to_hex("0aFgzz", out.bytes(), 6), -1);
  EXPECT_EQ(out.first(1), "\x0A") << "what was converted before stays";
  EXPECT_TRUE(out.untouched_from(1));
  EXPECT_THAT(log_texts(), ElementsAre("ascii_to_hex char g is not hex.\n"));
}

TEST_F(HexTest, FirstCharacterOfAPairIsLookedAtFirst) {
  Guarded out;
  EXPECT_EQ(ascii_to_hex("xy", out.bytes(), 2), -1);
  EXPECT_TRUE(out.untouched_from(0));
  EXPECT_THAT(log_texts(), ElementsAre("ascii_to_hex char x is not hex.\n"));
}

TEST_F(HexTest, OnlyTheTwentyTwoDigitsAreDigits) {
  const std::string digits = "0123456789abcdefABCDEF";
  for (int c = 0; c < 256; ++c) {
    for (const bool second : {false, true}) {
      std::string pair = "00";
      pair[second ? 1 : 0] = static_cast<char>(c);
      Guarded out;
      const bool good = digits.find(static_cast<char>(c)) != std::string::npos;
      EXPECT_EQ(ascii_to_hex(pair.data(), out.bytes(), 2), good ? 1 : -1) << c;
      EXPECT_EQ(out.untouched_from(0), !good) << c;
    }
  }
}

TEST_F(HexTest, FailureLogIsOfTheLibrarysModule) {
  Guarded out;
  EXPECT_EQ(ascii_to_hex("0", out.bytes(), 1), -1);
  ASSERT_EQ(log_lines().size(), 1u);
  EXPECT_EQ(log_lines()[0].module, "ZRCFG");
  EXPECT_EQ(log_lines()[0].level, 7);
}

TEST_F(HexTest, EveryByteComesBack) {
  for (int c = 0; c < 256; ++c) {
    const std::string byte(1, static_cast<char>(c));
    EXPECT_EQ(bytes_of(digits_of(byte)), byte);
  }
}

TEST_F(HexTest, NegativeLengths) {
  Guarded out;
  EXPECT_EQ(hex_to_ascii(reinterpret_cast<const unsigned char *>("a"), out.data(), -1), -1);
  EXPECT_EQ(ascii_to_hex("00", out.bytes(), -1), -1);
  EXPECT_EQ(ascii_to_hex("00", out.bytes(), -2), -1);
  EXPECT_EQ(ascii_to_hex("0000", out.bytes(), -4), -1);
  EXPECT_TRUE(out.untouched_from(0));
}

TEST_F(HexTest, NullIsRefused) {
  unsigned char bytes[4] = {};
  char text[4] = {};
  EXPECT_EQ(hex_to_ascii(nullptr, text, 1), -1);
  EXPECT_EQ(hex_to_ascii(bytes, nullptr, 1), -1);
  EXPECT_EQ(ascii_to_hex(nullptr, bytes, 2), -1);
  EXPECT_EQ(ascii_to_hex("00", nullptr, 2), -1);
}

}  // namespace
}  // namespace zrcfg_test
