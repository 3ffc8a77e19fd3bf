// Tests of what every writer does before it writes: the file must be there and must open.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "attr/attr_requests.h"
#include "attr/attr_update.h"
#include "tests/attr/attr_support.h"
#include "tests/support/lock_holder.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kMissing[] = "getPropertyFile() fail!\n";
constexpr char kSetAll[] = "setAllParamAttr";

// A work step that sets `noti` of parameter A to 9.
struct Writer {
  const char *name;
  uint32_t (*set)(ZrcfgObject *image);
};

uint32_t by_record(ZrcfgObject *image) {
  const uint8_t noti = 9;
  return setSingleParamAttrByParamName(image, "A", &noti, 20);
}

uint32_t by_text(ZrcfgObject *image) {
  return setSingleParamAttrByParamName_ext(image, "A", 3, "9");
}

uint32_t by_list(ZrcfgObject *image) {
  AttrRequests requests;
  requests.add("A", std::string(1, 9));
  return modiMultiParamAttr(image, requests.list(), 20, 0);
}

uint32_t by_all(ZrcfgObject *image) {
  ParamAttrChange change = {};
  change.noti_change = 1;
  change.noti = 9;
  return setAllParamAttr(image, &change, 0);
}

class PreparationTest : public AttrTest, public ::testing::WithParamInterface<Writer> {
 protected:
  void SetUp() override {
    AttrTest::SetUp();
    if (!HasFatalFailure()) {
      store(filled_file({"A"}, Fill::kRandom));
    }
  }

  // The log without the lines that one of the steps has in addition.
  static std::vector<std::string> log() {
    std::vector<std::string> lines = attr_log();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string &line) { return line.rfind(kSetAll, 0) == 0; }),
                lines.end());
    return lines;
  }

  void expect_set() {
    std::string expected = before_;
    model_noti(expected, record_at(0), 9);
    expect_file(expected);
  }
};

TEST_P(PreparationTest, FileThatIsThereIsUsed) {
  const OpenedImage image;
  EXPECT_EQ(GetParam().set(image.get()), 0u);
  EXPECT_EQ(log().front(), kExists);
  expect_set();
}

TEST_P(PreparationTest, FileThatIsGoneGives8AndIsNotMade) {
  const OpenedImage image;
  ASSERT_EQ(unlink(property_path(kDir).c_str()), 0);
  EXPECT_EQ(GetParam().set(image.get()), 8u);
  EXPECT_THAT(log(), ElementsAre(kMissing));
  EXPECT_FALSE(store_entry_exists(kFile));
}

TEST_P(PreparationTest, FileThatCannotBeOpenedGives8) {
  const OpenedImage image;
  make_unopenable(kFile);
  EXPECT_EQ(GetParam().set(image.get()), 8u);
  EXPECT_THAT(log(), ElementsAre(kExists, kUnable));
}

TEST_P(PreparationTest, FileThatMayOnlyBeReadGives8) {
  const OpenedImage image;
  {
    const UserWithMode reader(kFile, 0444);
    EXPECT_EQ(GetParam().set(image.get()), 8u);
  }
  EXPECT_THAT(log(), ElementsAre(kExists, kUnable));
  expect_untouched();
}

// The lock belongs to the caller of the step; a file that is in place is not locked again.
TEST_P(PreparationTest, LocksOfOthersDoNotMatterToTheStep) {
  const OpenedImage image;
  const LockHolder holder(kFile, Held::kExclusive);
  EXPECT_EQ(GetParam().set(image.get()), 0u);
  expect_set();
  EXPECT_FALSE(shared_lockable(kFile)) << "the holder was disturbed";
}

TEST_P(PreparationTest, FileOfAnInstanceLiesInItsOwnDirectory) {
  const std::string bytes = filled_file({"A"}, Fill::kZeros);
  write_property("Table/0/", bytes);
  write_property("Table/7/", bytes);
  const OpenedImage image("Table/7/");
  EXPECT_EQ(GetParam().set(image.get()), 0u);
  std::string expected = bytes;
  model_noti(expected, record_at(0), 9);
  expect_bytes(without_slots(read_property("Table/7/")), without_slots(expected), "7");
  expect_bytes(read_property("Table/0/"), bytes, "0");
}

INSTANTIATE_TEST_SUITE_P(Writers, PreparationTest,
                         ::testing::Values(Writer{"ByRecord", by_record}, Writer{"ByText", by_text},
                                           Writer{"ByList", by_list}, Writer{"ByAll", by_all}),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
