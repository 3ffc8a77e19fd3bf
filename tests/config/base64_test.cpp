// Tests of base64 encoding and decoding.
#include "config/base64.h"

#include <limits>
#include <memory>

#include "tests/config/config_support.h"

namespace zrcfg_test {
namespace {

class Base64Test : public StoreTest {
 protected:
  // The text without its terminator, which must be there.
  static std::string encoded(const std::string &bytes) {
    Guarded out;
    EXPECT_EQ(zrcfg_encryp_string(bytes.data(), out.data(), static_cast<int>(bytes.size())), 0);
    const size_t size = (bytes.size() + 2) / 3 * 4;
    EXPECT_EQ(out.text[size], '\0');
    EXPECT_TRUE(out.untouched_from(size + 1));
    return out.first(size);
  }

  static std::string decoded(const std::string &text, int out_size = kGuardedSize) {
    Guarded out;
    const int written = zrcfg_dencryp_string(text.c_str(), out.data(), out_size);
    EXPECT_GE(written, 0);
    EXPECT_LE(written, out_size > 0 ? out_size : 0);
    const size_t size = static_cast<size_t>(written);
    EXPECT_TRUE(out.untouched_from(size)) << "no terminator is added";
    return out.first(size);
  }
};

TEST_F(Base64Test, AlphabetIsTheStandardOne) {
  EXPECT_EQ(std::string(g_base64_char, 64),
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST_F(Base64Test, EncodesTheVectorsOfRfc4648) {
  for (const Rfc4648Row &row : kRfc4648) {
    EXPECT_EQ(encoded(row.text), row.base64);
  }
}

TEST_F(Base64Test, DecodesTheVectorsOfRfc4648) {
  for (const Rfc4648Row &row : kRfc4648) {
    EXPECT_EQ(decoded(row.base64), row.text);
  }
}

TEST_F(Base64Test, PadsByTheSizeOfTheLastGroup) {
  EXPECT_EQ(encoded("M"), "TQ==");
  EXPECT_EQ(encoded("Ma"), "TWE=");
  EXPECT_EQ(encoded("Man"), "TWFu");
  EXPECT_EQ(decoded("TQ=="), "M");
  EXPECT_EQ(decoded("TWE="), "Ma");
  EXPECT_EQ(decoded("TWFu"), "Man");
}

TEST_F(Base64Test, EncodesEveryByte) {
  EXPECT_EQ(encoded(std::string("\0\0\0", 3)), "AAAA");
  EXPECT_EQ(encoded("\xFF\xFF\xFF"), "////");
  EXPECT_EQ(encoded("\xFB\xEF\xBE"), "++++");
  EXPECT_EQ(encoded("\x80"), "gA==");
  EXPECT_EQ(encoded(std::string("\0", 1)), "AA==");
}

TEST_F(Base64Test, EncodesOnlyAsManyBytesAsToldTo) {
  Guarded out;
  EXPECT_EQ(zrcfg_encryp_string("Many", out.data(), 2), 0);
  EXPECT_EQ(out.first(5), std::string("TWE=\0", 5));
  EXPECT_TRUE(out.untouched_from(5));
}

TEST_F(Base64Test, NothingToEncodeGivesTheEmptyText) {
  for (const int size : {0, -1, -4, std::numeric_limits<int>::min()}) {
    Guarded out;
    EXPECT_EQ(zrcfg_encryp_string("M", out.data(), size), 0) << size;
    EXPECT_EQ(out.text[0], '\0') << size;
    EXPECT_TRUE(out.untouched_from(1)) << size;
  }
}

TEST_F(Base64Test, OutSizeBoundsWhatIsDecoded) {
  EXPECT_EQ(decoded("TWFu", 2), "Ma");
  EXPECT_EQ(decoded("TWFu", 1), "M");
  EXPECT_EQ(decoded("TWFu", 3), "Man");
  EXPECT_EQ(decoded("TWFuTWFu", 4), "ManM");
  EXPECT_EQ(decoded("TWFuTQ==", 3), "Man");
  for (const int none : {0, -1, -2, std::numeric_limits<int>::min() + 1}) {
    EXPECT_EQ(decoded("TWFu", none), "") << none;
  }
}

TEST_F(Base64Test, DecodingEndsAtThePadding) {
  EXPECT_EQ(decoded("TQ==TWFu"), "M");
  EXPECT_EQ(decoded("TWE=TWFu"), "Ma");
  EXPECT_EQ(decoded("TWFuTQ=="), "ManM");
  EXPECT_EQ(decoded("TQ=u"), "M") << "the third character alone ends it";
}

TEST_F(Base64Test, CharactersOutsideTheAlphabetHaveAllBitsSet) {
  EXPECT_EQ(decoded("****"), "\xFF\xFF\xFF");
  EXPECT_EQ(decoded("*A=="), "\xFC");
  EXPECT_EQ(decoded("A*=="), "\x03");
  EXPECT_EQ(decoded("AA*="), std::string("\0\x0F", 2));
  EXPECT_EQ(decoded("A*A="), std::string("\x03\xF0", 2));
  EXPECT_EQ(decoded("AA*A"), std::string("\0\x0F\xC0", 3));
  EXPECT_EQ(decoded("AAA*"), std::string("\0\0\x3F", 3));
  EXPECT_EQ(decoded("-_\n "), "\xFF\xFF\xFF");
  EXPECT_EQ(decoded("===="), "\xFF");
  EXPECT_EQ(decoded("=A=="), "\xFC");
  EXPECT_EQ(decoded("\xFF\x80\xC3\xA4"), "\xFF\xFF\xFF");
}

TEST_F(Base64Test, LineFeedsAreNotSkipped) {
  EXPECT_EQ(decoded("TWFu\nTWF"), std::string("Man\xFD\x35\x85", 6));
}

TEST_F(Base64Test, TextThatEndsInAGroupEndsWithIt) {
  EXPECT_EQ(decoded(""), "");
  EXPECT_EQ(decoded("T"), "\x4F\xFF\xFF") << "what is missing has all bits set";
  EXPECT_EQ(decoded("TQ"), "\x4D\x0F\xFF");
  EXPECT_EQ(decoded("TWE"), "\x4D\x61\x3F");
  EXPECT_EQ(decoded("TWFuT"), "Man\x4F\xFF\xFF");
}

// The address sanitizer watches the bytes behind the block.
TEST_F(Base64Test, NothingBehindTheTerminatorIsRead) {
  for (const std::string &text : {std::string("T"), std::string("TQ"), std::string("TWE")}) {
    std::unique_ptr<char[]> exact(new char[text.size() + 1]);
    text.copy(exact.get(), text.size());
    exact[text.size()] = '\0';
    Guarded out;
    EXPECT_EQ(zrcfg_dencryp_string(exact.get(), out.data(), kGuardedSize), 3);
  }
}

TEST_F(Base64Test, EveryGroupOfTwoBytesComesBack) {
  for (int i = 0; i < 65536; ++i) {
    const std::string bytes = {static_cast<char>(i >> 8), static_cast<char>(i)};
    ASSERT_EQ(decoded(encoded(bytes)), bytes);
  }
}

TEST_F(Base64Test, NullIsRefused) {
  char out[8] = "x";
  EXPECT_EQ(zrcfg_encryp_string(nullptr, out, 1), -1);
  EXPECT_EQ(zrcfg_encryp_string("M", nullptr, 1), -1);
  EXPECT_EQ(zrcfg_dencryp_string(nullptr, out, 1), -1);
  EXPECT_EQ(zrcfg_dencryp_string("TQ==", nullptr, 1), -1);
  EXPECT_STREQ(out, "x");
}

TEST_F(Base64Test, NothingIsLogged) {
  encoded("Man");
  decoded("****");
  EXPECT_TRUE(log_lines().empty());
}

}  // namespace
}  // namespace zrcfg_test
