// Tests of the single-value work steps, called directly on an open image.
#include "core/single_value.h"

#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

#include <string>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kCannotOpen[] = "unable to open Gateway/Device/property.conf file\n";

class SingleValueWorkerTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      file_ = property_file({"A", "B"}, {"one", "two"});
      write_property(kDir, file_);
    }
  }

  PropertyFile file_;
  uint8_t changed_ = 77;
  GuardedBuffer value_;
  GuardedBuffer old_;
};

TEST_F(SingleValueWorkerTest, ReadAndWriteWorkOnAnOpenImage) {
  const OpenedImage image;
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "B", value_.data()), 0u);
  EXPECT_EQ(value_.text(), "two");
  EXPECT_TRUE(value_.untouched_from(4));
  EXPECT_THAT(fixed_log(), ElementsAre("Find the param!param name=B!\n"));
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "B", "2", &changed_), 0u);
  EXPECT_EQ(changed_, 1);
  EXPECT_EQ(value_section(read_property(kDir)), "one\n2\n");
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), "A", "1", &changed_, old_.data()),
            0u);
  EXPECT_EQ(std::string(old_.data(), 255), "one" + std::string(252, '\0'));
  EXPECT_TRUE(old_.untouched_from(255));
  EXPECT_EQ(value_section(read_property(kDir)), "1\n2\n");
}

TEST_F(SingleValueWorkerTest, TheyTakeNoLock) {
  const OpenedImage image;
  const HeldLock held(kFile, LOCK_EX);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "A", value_.data()), 0u);
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 0u);
}

TEST_F(SingleValueWorkerTest, ValuesAreReadAfreshFromTheFile) {
  const OpenedImage image;
  file_.params[1].value = "changed by someone else";
  write_property(kDir, file_);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "B", value_.data()), 0u);
  EXPECT_EQ(value_.text(), "changed by someone else");
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "1\nchanged by someone else\n");
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 0u);
  EXPECT_EQ(changed_, 0) << "compared with the file, not with what was opened";
}

TEST_F(SingleValueWorkerTest, LengthWordIsReadAfreshAndRecordsAreTheImages) {
  const OpenedImage image;
  const PropertyFile grown = property_file({"X", "Y", "Z"}, {"x", "y", "z"});
  write_property(kDir, grown);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "B", value_.data()), 0u);
  EXPECT_EQ(value_.text(), "y");
  GuardedBuffer other;
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "Y", other.data()), 0u);
  EXPECT_TRUE(other.untouched());
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "B", "new", &changed_), 0u);
  EXPECT_EQ(read_property(kDir), grown.head_bytes() + "x\nnew\n")
      << "as many lines as the image has records";
}

TEST_F(SingleValueWorkerTest, MissingFileGives7) {
  const OpenedImage image;
  ASSERT_EQ(unlink(property_path(kDir).c_str()), 0);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "A", value_.data()), 7u);
  EXPECT_THAT(fixed_log(), ElementsAre(kCannotOpen));
  EXPECT_TRUE(value_.untouched());
  clear_log();
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 7u);
  EXPECT_THAT(fixed_log(), ElementsAre(kCannotOpen));
  EXPECT_EQ(changed_, 1);
  clear_log();
  changed_ = 77;
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), "A", "1", &changed_, old_.data()),
            7u);
  EXPECT_THAT(fixed_log(), ElementsAre(kCannotOpen));
  EXPECT_EQ(changed_, 1);
  EXPECT_TRUE(old_.untouched());
  EXPECT_FALSE(store_entry_exists(kFile)) << "nothing is created";
}

TEST_F(SingleValueWorkerTest, UnopenableFileGives7) {
  const OpenedImage image;
  make_unopenable(kFile);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "A", value_.data()), 7u);
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 7u);
  EXPECT_EQ(log_count(kCannotOpen), 2u);
}

TEST_F(SingleValueWorkerTest, FileThatGotMalformedGives10) {
  const OpenedImage image;
  for (const std::string &bytes : {std::string(), std::string("\0\0", 2), std::string(184, '\0')}) {
    write_property(kDir, bytes);
    EXPECT_EQ(getSingleParamValueByParamName(image.get(), "A", value_.data()), 10u);
    EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 10u);
    EXPECT_EQ(changed_, 1);
    EXPECT_EQ(read_property(kDir), bytes);
  }
  EXPECT_TRUE(value_.untouched());
}

TEST_F(SingleValueWorkerTest, FileThatGotShorterThanItsHeadGives10) {
  const OpenedImage image;
  write_property(kDir, file_.head_bytes().substr(0, 300));
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "A", value_.data()), 10u);
  EXPECT_TRUE(log_contains("i=0 err!\n"));
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 10u);
  EXPECT_EQ(read_property(kDir), file_.head_bytes().substr(0, 300));
}

TEST_F(SingleValueWorkerTest, UnknownNameGives5AndChanged1) {
  const OpenedImage image;
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "D", "1", &changed_), 5u);
  EXPECT_EQ(changed_, 1);
  changed_ = 77;
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), "D", "1", &changed_, old_.data()),
            5u);
  EXPECT_EQ(changed_, 1);
  EXPECT_TRUE(old_.untouched());
  EXPECT_EQ(read_property(kDir), file_.bytes());
}

TEST_F(SingleValueWorkerTest, LineFeedInTheValueGives7) {
  const OpenedImage image;
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1\n2", &changed_), 7u);
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), "A", "\n", &changed_, old_.data()),
            7u);
  EXPECT_EQ(read_property(kDir), file_.bytes());
}

TEST_F(SingleValueWorkerTest, OverlongValueGives15) {
  const OpenedImage image;
  const std::string value(256, 'v');
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", value.c_str(), &changed_), 15u);
  EXPECT_EQ(
      set_single_param_value_by_param_name(image.get(), "A", value.c_str(), &changed_, old_.data()),
      15u);
  EXPECT_EQ(read_property(kDir), file_.bytes());
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", value.substr(1).c_str(), &changed_),
            0u);
}

TEST_F(SingleValueWorkerTest, NullGives10) {
  const OpenedImage image;
  EXPECT_EQ(getSingleParamValueByParamName(nullptr, "A", value_.data()), 10u);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), nullptr, value_.data()), 10u);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "A", nullptr), 10u);
  EXPECT_EQ(setSingleParamValueByParamName(nullptr, "A", "1", &changed_), 10u);
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), nullptr, "1", &changed_), 10u);
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", nullptr, &changed_), 10u);
  EXPECT_EQ(set_single_param_value_by_param_name(nullptr, "A", "1", &changed_, old_.data()), 10u);
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), nullptr, "1", &changed_, old_.data()),
            10u);
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), "A", nullptr, &changed_, old_.data()),
            10u);
  EXPECT_EQ(read_property(kDir), file_.bytes());
}

TEST_F(SingleValueWorkerTest, NullFlagIsNotStored) {
  const OpenedImage image;
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", nullptr), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "1\ntwo\n");
}

TEST_F(SingleValueWorkerTest, LongestDirectoryIsServed) {
  const std::string dir = long_path(255, '/');
  write_property(dir, file_);
  const OpenedImage image(dir);
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "A", value_.data()), 0u);
  EXPECT_EQ(value_.text(), "one");
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "A", "1", &changed_), 0u);
  EXPECT_EQ(value_section(read_property(dir)), "1\ntwo\n");
}

}  // namespace
}  // namespace zrcfg_test
