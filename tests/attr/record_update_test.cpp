// Tests of the update of one parameter's attributes by record: modes 19 to 22 and those that are
// none, and the whole file compared with a model.
#include <climits>
#include <cstring>
#include <memory>
#include <string>

#include "attr/attr_update.h"
#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

constexpr char kWritten[] = "param's attr has write to file\n";

// An input in a block of exactly its size, so that the sanitizer sees a read beyond.
class Input {
 public:
  explicit Input(const std::string &bytes) : bytes_(bytes), block_(new char[bytes.size()]) {
    memcpy(block_.get(), bytes.data(), bytes.size());
  }
  const void *get() const { return block_.get(); }
  bool kept() const { return memcmp(block_.get(), bytes_.data(), bytes_.size()) == 0; }

 private:
  std::string bytes_;
  std::unique_ptr<char[]> block_;
};

Input change_input(uint32_t noti_change, uint32_t noti, uint32_t list_change,
                   const std::string &list) {
  ParamAttrChange change;
  memset(static_cast<void *>(&change), 0xee, sizeof change);
  change.noti_change = noti_change;
  change.noti = noti;
  change.access_list_change = list_change;
  memcpy(change.accesslist, list.data(), sizeof change.accesslist);
  return Input(std::string(reinterpret_cast<const char *>(&change), sizeof change));
}

enum class Way { kCall, kStep };

class RecordUpdateTest : public AttrTest, public ::testing::WithParamInterface<Way> {
 protected:
  static uint32_t set(const char *name, const Input &input, int mode) {
    clear_log();
    if (GetParam() == Way::kCall) {
      return zrcfg_setsingleparamattr(kUrl, name, input.get(), mode, 0);
    }
    const OpenedImage image;
    return setSingleParamAttrByParamName(image.get(), name, input.get(), mode);
  }

  void store_filled(Fill fill) { store(filled_file({"A", "B", "C"}, fill, 70)); }
};

TEST_P(RecordUpdateTest, Mode19SetsItsFieldsMaskedAndNothingElse) {
  for (const Fill fill : kFills) {
    for (const Fill input_fill : kFills) {
      for (unsigned seed = 1; seed < 20; ++seed) {
        store_filled(fill);
        const std::string attr = filled(sizeof(ParamAttr), input_fill, seed);
        std::string expected = before_;
        model_single_all(expected, record_at(1), attr);
        const Input input(attr);
        EXPECT_EQ(set("B", input, 19), 0u);
        EXPECT_TRUE(input.kept());
        expect_file(expected, "seed " + std::to_string(seed));
      }
    }
  }
}

// Walks one bit through the input, over a record of zeros and over one of ones.
TEST_P(RecordUpdateTest, EachBitOfMode19ReachesItsFieldOnly) {
  for (const Fill fill : {Fill::kZeros, Fill::kOnes}) {
    for (size_t bit = 0; bit < sizeof(ParamAttr) * 8; ++bit) {
      store_filled(fill);
      std::string attr = filled(sizeof(ParamAttr), fill);
      attr[bit / 8] = static_cast<char>(attr[bit / 8] ^ (1 << (bit % 8)));
      std::string expected = before_;
      model_single_all(expected, record_at(2), attr);
      ASSERT_EQ(set("C", Input(attr), 19), 0u);
      expect_file(expected, "bit " + std::to_string(bit));
    }
  }
}

TEST_P(RecordUpdateTest, Mode19LeavesDeviceTypeAndArea) {
  PropertyFile file = property_file({"A"}, {"value"});
  file.params[0].device_type = 0x12;
  file.params[0].area = "the old area";
  store(file);
  ParamAttr attr = {};
  attr.device_type = 0xff;
  attr.hide = 3;
  attr.noti = 58;
  attr.param_check = 0x0a0b0c0d;
  memcpy(attr.accesslist, "sixteen letters!", 16);
  memcpy(attr.area, "eight and twenty characters!", 28);
  EXPECT_EQ(set("A", Input(bytes_of(attr)), 19), 0u);
  file.params[0].hide = 1;
  file.params[0].noti = 10;
  file.params[0].param_check = 0x0a0b0c0d;
  file.params[0].accesslist = "sixteen letters!";
  expect_file(file.bytes());
}

TEST_P(RecordUpdateTest, Mode20SetsNotiToTheLowFourBits) {
  for (const Fill fill : kFills) {
    for (unsigned byte = 0; byte < 256; ++byte) {
      store_filled(fill);
      std::string expected = before_;
      model_noti(expected, record_at(1), byte);
      ASSERT_EQ(set("B", Input(std::string(1, static_cast<char>(byte))), 20), 0u);
      expect_file(expected, "byte " + std::to_string(byte));
    }
  }
}

TEST_P(RecordUpdateTest, Mode20Of58Is10) {
  store_filled(Fill::kZeros);
  EXPECT_EQ(set("A", Input(std::string(1, 58)), 20), 0u);
  EXPECT_EQ(read_property(kDir).at(record_at(0) + 5), '\xa0');
}

TEST_P(RecordUpdateTest, Mode21SetsThe16BytesAsTheyAre) {
  for (const Fill fill : kFills) {
    for (const std::string &list :
         {std::string("sixteen letters!"), std::string(16, '\0'),
          std::string("ab\0cd", 5) + std::string(11, '\xff'), filled(16, Fill::kRandom, 5)}) {
      store_filled(fill);
      std::string expected = before_;
      model_accesslist(expected, record_at(0), list);
      EXPECT_EQ(set("A", Input(list), 21), 0u);
      expect_file(expected, list);
    }
  }
}

TEST_P(RecordUpdateTest, Mode22SetsWhatItsFlagsSay) {
  const std::string bytes = std::string("ab\0d efgh ijkl!!", 16);
  for (const Fill fill : kFills) {
    for (const uint32_t noti_change : {0u, 1u, 2u, 0x80000000u, 0xffffff00u}) {
      for (const uint32_t list_change : {0u, 1u, 0x100u, 0xffffffffu}) {
        for (const uint32_t noti : {0u, 7u, 15u, 16u, 58u, 0xffffffffu, 0x10000005u}) {
          store_filled(fill);
          std::string expected = before_;
          if (noti_change != 0) {
            model_noti(expected, record_at(1), noti);
          }
          if (list_change != 0) {
            model_accesslist(expected, record_at(1), bytes);
          }
          ASSERT_EQ(set("B", change_input(noti_change, noti, list_change, bytes), 22), 0u);
          expect_file(expected, std::to_string(noti_change) + " " + std::to_string(list_change));
          EXPECT_FALSE(is_aged(kFile)) << "the record is written back all the same";
        }
      }
    }
  }
}

TEST_P(RecordUpdateTest, OtherModesReadNothingAndRewriteTheRecord) {
  for (const int mode : {0, 1, 16, 17, 18, 23, 24, 255, -1, -19, INT_MAX, INT_MIN}) {
    store_filled(Fill::kRandom);
    EXPECT_EQ(set("B", Input(std::string(1, '\xff')), mode), 0u) << mode;
    expect_file(before_, std::to_string(mode));
    EXPECT_FALSE(is_aged(kFile)) << "the record is written back";
    EXPECT_TRUE(log_contains(kWritten));
  }
}

TEST_P(RecordUpdateTest, UnknownNameGives12AndLeavesTheFile) {
  store_filled(Fill::kRandom);
  for (const int mode : {19, 20, 21, 22, 0}) {
    EXPECT_EQ(set("D", Input(std::string(sizeof(ParamAttrChange), '\xff')), mode), 12u);
    EXPECT_EQ(log_count("setSingleParamAttrByParamName() fail ret=12!\n"),
              GetParam() == Way::kCall ? 1u : 0u);
    EXPECT_FALSE(log_contains(kWritten));
  }
  expect_untouched();
}

TEST_P(RecordUpdateTest, FirstOfTwoRecordsOfOneNameIsChanged) {
  store(filled_file({"A", "B", "B"}, Fill::kZeros));
  std::string expected = before_;
  model_noti(expected, record_at(1), 9);
  EXPECT_EQ(set("B", Input(std::string(1, 9)), 20), 0u);
  expect_file(expected);
}

TEST_P(RecordUpdateTest, LogTellsPreparationThenWrite) {
  store_filled(Fill::kRandom);
  EXPECT_EQ(set("B", Input(std::string(1, 9)), 20), 0u);
  EXPECT_EQ(attr_log(), (std::vector<std::string>{kExists, kWritten}));
}

INSTANTIATE_TEST_SUITE_P(Ways, RecordUpdateTest, ::testing::Values(Way::kCall, Way::kStep),
                         [](const auto &row) { return row.param == Way::kCall ? "Call" : "Step"; });

class RecordUpdateStepTest : public AttrTest {
 protected:
  void SetUp() override {
    AttrTest::SetUp();
    if (!HasFatalFailure()) {
      store(filled_file({"A", "B"}, Fill::kRandom));
    }
  }
};

TEST_F(RecordUpdateStepTest, CallGives10ForNullWithItsText) {
  const uint8_t noti = 1;
  EXPECT_EQ(zrcfg_setsingleparamattr(nullptr, "A", &noti, 20, 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamattr(kUrl, nullptr, &noti, 20, 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamattr(kUrl, "A", nullptr, 20, 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamattr(kUrl, "A", nullptr, 0, 0), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(4, kNullText));
  expect_untouched();
}

TEST_F(RecordUpdateStepTest, StepGives10ForNull) {
  const OpenedImage image;
  const uint8_t noti = 1;
  EXPECT_EQ(setSingleParamAttrByParamName(nullptr, "A", &noti, 20), 10u);
  EXPECT_EQ(setSingleParamAttrByParamName(image.get(), nullptr, &noti, 20), 10u);
  EXPECT_EQ(setSingleParamAttrByParamName(image.get(), "A", nullptr, 20), 10u);
  expect_untouched();
}

// The image is a snapshot: what another writer has stored in the record since is overwritten.
TEST_F(RecordUpdateStepTest, WritesTheImagesRecordAndChangesTheImage) {
  const OpenedImage image;
  const std::string since = filled_file({"A", "B"}, Fill::kOnes);
  write_property(kDir, since);
  const uint8_t noti = 6;
  EXPECT_EQ(setSingleParamAttrByParamName(image.get(), "B", &noti, 20), 0u);
  std::string record = before_.substr(record_at(1), kParamBytes);
  model_noti(record, 0, 6);
  std::string expected = since;
  expected.replace(record_at(1), kParamBytes, record);
  expect_file(expected);
  EXPECT_EQ(image.bytes(kHeadBytes + kParamBytes, 120), record.substr(0, 120));
  EXPECT_EQ(setSingleParamAttrByParamName_ext(image.get(), "B", 4, "1"), 0u);
  model_text(record, 0, 4, "1", 1);
  expected.replace(record_at(1), kParamBytes, record);
  expect_file(expected);
}

}  // namespace
}  // namespace zrcfg_test
