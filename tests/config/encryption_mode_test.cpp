// Tests of the encryption mode, its caching and its selectors.
#include <climits>
#include <cstddef>
#include <filesystem>
#include <fstream>

#include "tests/config/config_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kFlagDir[] = "/zrrom/zrconf";
constexpr char kFlagFile[] = "/zrrom/zrconf/status_version_flag";
constexpr char kEnter[] = "zrcfg_get_encryptmode Enter. \n";
constexpr char kReading[] =
    "zrfile_uci_get_config filepath=/zrrom/zrconf/status_version_flag key=cfg_encrypt_mode";
constexpr char kNoFile[] =
    "uci_load Path=/zrrom/zrconf/status_version_flag error=Entry not found fail!\n";
constexpr char kFailed[] = "get cfg_encrypt_mode failed, ret = -1, set to default. \n";

std::string got(const std::string &text) {
  return "zrcfg_get_encryptmode: get encrypt_mode = " + text + " .\n";
}

std::string leave(int mode) {
  return "zrcfg_get_encryptmode Leave: g_sys_encrypt_mode=" + std::to_string(mode) + "\n";
}

// The mode is cached for the life of a process, so every look at it happens in a child.
class EncryptionModeTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      std::filesystem::remove_all(kFlagDir);
      ASSERT_TRUE(std::filesystem::create_directories(kFlagDir));
    }
  }

  static void write_flag_file(const std::string &text) {
    std::ofstream out(kFlagFile, std::ios::binary | std::ios::trunc);
    out << text;
    ASSERT_TRUE(out.flush().good());
  }

  static void write_mode(const std::string &value) {
    write_flag_file("config setting cfg_encrypt_mode\n\toption value '" + value + "'\n");
  }
};

TEST_F(EncryptionModeTest, ReadsTheSetting) {
  in_own_process([] {
    write_mode("84040");
    clear_log();
    EXPECT_EQ(zrcfg_get_encryptmode(), 84040);
    EXPECT_THAT(log_texts(), ElementsAre(kEnter, kReading, got("84040"), leave(84040)));
  });
}

TEST_F(EncryptionModeTest, ReadsOncePerProcess) {
  in_own_process([] {
    write_mode("5");
    EXPECT_EQ(zrcfg_get_encryptmode(), 5);
    write_mode("6");
    clear_log();
    EXPECT_EQ(zrcfg_get_encryptmode(), 5);
    EXPECT_THAT(log_texts(), ElementsAre(kEnter, leave(5)));
  });
  in_own_process([] { EXPECT_EQ(zrcfg_get_encryptmode(), 6); });
}

TEST_F(EncryptionModeTest, MissingFileGivesTwoAndIsNotLookedForAgain) {
  in_own_process([] {
    clear_log();
    EXPECT_EQ(zrcfg_get_encryptmode(), 2);
    EXPECT_THAT(log_texts(), ElementsAre(kEnter, kReading, kNoFile, kFailed, leave(2)));
    write_mode("7");
    clear_log();
    EXPECT_EQ(zrcfg_get_encryptmode(), 2);
    EXPECT_THAT(log_texts(), ElementsAre(kEnter, leave(2)));
  });
}

TEST_F(EncryptionModeTest, MissingSettingGivesTwo) {
  for (const char *text :
       {"", "config setting other\n\toption value 5\n", "config setting cfg_encrypt_mode\n",
        "config setting cfg_encrypt_mode\n\toption mode 5\n",
        "config setting cfg_encrypt_mode\n\tlist value 5\n",
        "config setting cfg_encrypt_mode\n\toption value ''\n"}) {
    in_own_process([text] {
      write_flag_file(text);
      clear_log();
      EXPECT_EQ(zrcfg_get_encryptmode(), 2) << text;
      EXPECT_THAT(log_texts(), ElementsAre(kEnter, kReading, kFailed, leave(2))) << text;
    });
  }
}

TEST_F(EncryptionModeTest, UnreadableFileGivesTwo) {
  in_own_process([] {
    write_flag_file("config setting cfg_encrypt_mode\n\toption value '5\n");
    clear_log();
    EXPECT_EQ(zrcfg_get_encryptmode(), 2);
    const std::vector<std::string> texts = log_texts();
    ASSERT_EQ(texts.size(), 5u);
    EXPECT_EQ(texts[2].find("uci_load Path=/zrrom/zrconf/status_version_flag error=Parse error"),
              0u);
    EXPECT_EQ(texts[3], kFailed);
  });
}

TEST_F(EncryptionModeTest, ZeroIsReadAgainAtEachCall) {
  in_own_process([] {
    write_mode("0");
    for (int call = 0; call < 3; ++call) {
      clear_log();
      EXPECT_EQ(zrcfg_get_encryptmode(), 0);
      EXPECT_THAT(log_texts(), ElementsAre(kEnter, kReading, got("0"), leave(0)));
    }
    write_mode("9");
    EXPECT_EQ(zrcfg_get_encryptmode(), 9);
    write_mode("0");
    EXPECT_EQ(zrcfg_get_encryptmode(), 9);
  });
}

TEST_F(EncryptionModeTest, TextIsConvertedWithoutValidation) {
  struct {
    const char *text;
    int mode;
  } const rows[] = {{"12abc", 12},
                    {"  34", 34},
                    {"\t35", 35},
                    {"+7", 7},
                    {"-1", -1},
                    {"0012", 12},
                    {"0x10", 0},
                    {"abc", 0},
                    {"- 1", 0},
                    {"2.9", 2},
                    {"2147483647", INT_MAX},
                    {"-2147483648", INT_MIN},
                    {"UCI_NULL", 0}};
  for (const auto &row : rows) {
    in_own_process([&row] {
      write_mode(row.text);
      EXPECT_EQ(zrcfg_get_encryptmode(), row.mode) << row.text;
    });
  }
}

TEST_F(EncryptionModeTest, NumbersBeyondTheLimitsSaturateOnEveryHost) {
  for (const char *text : {"2147483648", "4294967297", "99999999999999999999999"}) {
    in_own_process([text] {
      write_mode(text);
      EXPECT_EQ(zrcfg_get_encryptmode(), INT_MAX) << text;
    });
    in_own_process([text] {
      write_mode(std::string("-") + text);
      EXPECT_EQ(zrcfg_get_encryptmode(), INT_MIN) << "-" << text;
    });
  }
}

TEST_F(EncryptionModeTest, EmptyTextOfUciNullCountsAsZero) {
  in_own_process([] {
    write_mode("UCI_NULL");
    clear_log();
    EXPECT_EQ(zrcfg_get_encryptmode(), 0);
    EXPECT_THAT(log_texts(), ElementsAre(kEnter, kReading, got(""), leave(0)));
  });
}

TEST_F(EncryptionModeTest, TextIsCutTo255Characters) {
  in_own_process([] {
    write_mode(std::string(254, ' ') + "77");
    clear_log();
    EXPECT_EQ(zrcfg_get_encryptmode(), 7);
    EXPECT_THAT(log_texts(),
                ElementsAre(kEnter, kReading, got(std::string(254, ' ') + "7"), leave(7)));
  });
}

CryptoInfo selectors(int mode) {
  CryptoInfo info = {77, 77, 77, 77, 77};
  zrcfg_get_crytoinfo_from_encryptmode(mode, &info);
  return info;
}

void expect_selectors(int mode, const CryptoInfo &expected) {
  const CryptoInfo info = selectors(mode);
  EXPECT_EQ(info.workmode, expected.workmode) << mode;
  EXPECT_EQ(info.index_key, expected.index_key) << mode;
  EXPECT_EQ(info.index_iv, expected.index_iv) << mode;
  EXPECT_EQ(info.padding, expected.padding) << mode;
  EXPECT_EQ(info.key_type, expected.key_type) << mode;
}

TEST_F(EncryptionModeTest, SelectorsOfKnownModes) {
  expect_selectors(2, {0, 0, 0, 0, 0});
  expect_selectors(0, {0, 0, 0, 0, 0});
  expect_selectors(84040, {1, 1, 1, 1, 1});
  expect_selectors(74565, {0, 1, 13, 4, 0});
}

TEST_F(EncryptionModeTest, EveryBitGoesToItsSelector) {
  for (unsigned bit = 0; bit < 32; ++bit) {
    CryptoInfo expected = {};
    if (bit >= 3 && bit <= 5) {
      expected.workmode = 1u << (bit - 3);
    } else if (bit >= 6 && bit <= 10) {
      expected.index_iv = 1u << (bit - 6);
    } else if (bit >= 11 && bit <= 13) {
      expected.padding = 1u << (bit - 11);
    } else if (bit >= 14 && bit <= 15) {
      expected.key_type = 1u << (bit - 14);
    } else if (bit >= 16 && bit <= 20) {
      expected.index_key = 1u << (bit - 16);
    }
    expect_selectors(static_cast<int>(1u << bit), expected);
  }
}

TEST_F(EncryptionModeTest, NegativeModeFillsEverySelector) {
  expect_selectors(-1, {7, 31, 31, 7, 3});
}

TEST_F(EncryptionModeTest, SelectorsAreLogged) {
  selectors(74565);
  EXPECT_THAT(log_texts(),
              ElementsAre("zrcfg_get_crytoinfo_from_encryptmode Enter: encryptmode = 74565 . \n",
                          "zrcfg_get_crytoinfo_from_encryptmode Leave: index_iv = 13 index_key = 1 "
                          "workmode =  0 padding = 4 key_type = 0 . \n"));
  clear_log();
  selectors(-1);
  EXPECT_THAT(log_texts(),
              ElementsAre("zrcfg_get_crytoinfo_from_encryptmode Enter: encryptmode = -1 . \n",
                          "zrcfg_get_crytoinfo_from_encryptmode Leave: index_iv = 31 index_key = "
                          "31 workmode =  7 padding = 7 key_type = 3 . \n"));
}

TEST_F(EncryptionModeTest, NullInfoDoesNothing) {
  zrcfg_get_crytoinfo_from_encryptmode(84040, nullptr);
}

TEST_F(EncryptionModeTest, SelectorsHaveTheirOrder) {
  EXPECT_EQ(sizeof(CryptoInfo), 20u);
  EXPECT_EQ(offsetof(CryptoInfo, workmode), 0u);
  EXPECT_EQ(offsetof(CryptoInfo, index_key), 4u);
  EXPECT_EQ(offsetof(CryptoInfo, index_iv), 8u);
  EXPECT_EQ(offsetof(CryptoInfo, padding), 12u);
  EXPECT_EQ(offsetof(CryptoInfo, key_type), 16u);
}

}  // namespace
}  // namespace zrcfg_test
