// Tests of what listings leave out: hidden items and those of other kinds of device.
#include <gmock/gmock.h>

#include <string>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

class VisibilityTest : public StoreTest {};

int header_hidden(uint8_t hide, uint8_t device_type) {
  HeaderFields header;
  header.hide = hide;
  header.device_type = device_type;
  return objIsHide(header_bytes(header).data());
}

int param_hidden(uint8_t hide, uint8_t device_type) {
  ParamFields param;
  param.hide = hide;
  param.device_type = device_type;
  return paramIsHide(param_bytes(param).data());
}

TEST_F(VisibilityTest, OnlyDeviceType40IsHiddenWithoutTheHideBit) {
  for (unsigned type = 0; type < 256; ++type) {
    const auto device_type = static_cast<uint8_t>(type);
    EXPECT_EQ(header_hidden(0, device_type), type == 0x40 ? 1 : 0) << type;
    EXPECT_EQ(param_hidden(0, device_type), type == 0x40 ? 1 : 0) << type;
  }
}

TEST_F(VisibilityTest, HideBitHidesForEveryDeviceType) {
  for (unsigned type = 0; type < 256; ++type) {
    const auto device_type = static_cast<uint8_t>(type);
    EXPECT_EQ(header_hidden(1, device_type), 1) << type;
    EXPECT_EQ(param_hidden(1, device_type), 1) << type;
  }
}

TEST_F(VisibilityTest, NullIsHidden) {
  EXPECT_EQ(objIsHide(nullptr), 1);
  EXPECT_EQ(paramIsHide(nullptr), 1);
}

TEST_F(VisibilityTest, OtherBitsOfAHeaderDoNotHide) {
  std::string header(184, '\xff');
  header[8] = '\x7f';
  EXPECT_EQ(objIsHide(header.data()), 0);
  std::string clear(184, '\0');
  clear[8] = '\x80';
  EXPECT_EQ(objIsHide(clear.data()), 1);
}

TEST_F(VisibilityTest, OtherBitsOfARecordDoNotHide) {
  std::string record(124, '\xff');
  record[5] = '\xfb';
  EXPECT_EQ(paramIsHide(record.data()), 0);
  std::string clear(124, '\0');
  clear[5] = '\x04';
  EXPECT_EQ(paramIsHide(clear.data()), 1);
}

TEST_F(VisibilityTest, ArgumentsAreNotModified) {
  std::string bytes(184, '\x44');
  objIsHide(bytes.data());
  paramIsHide(bytes.data());
  EXPECT_EQ(bytes, std::string(184, '\x44'));
}

TEST_F(VisibilityTest, HiddenHeaderLogsTypeThenHide) {
  header_hidden(1, 0x40);
  EXPECT_THAT(fixed_log(), ElementsAre("device_type = 64\n", "hide = 1\n"));
}

TEST_F(VisibilityTest, HeaderOfOtherDevicesLogsTypeThenMask) {
  header_hidden(0, 0x40);
  EXPECT_THAT(fixed_log(), ElementsAre("device_type = 64\n", "device_type mask calc is 0!\n"));
}

TEST_F(VisibilityTest, VisibleHeaderLogsItsTypeAlone) {
  header_hidden(0, 0x01);
  EXPECT_THAT(fixed_log(), ElementsAre("device_type = 1\n"));
}

TEST_F(VisibilityTest, HiddenRecordLogsTypeThenHide) {
  param_hidden(1, 0);
  EXPECT_THAT(fixed_log(), ElementsAre("device_type = 0\n", "hide = 1\n"));
}

TEST_F(VisibilityTest, RecordOfOtherDevicesLogsTypeThenMask) {
  param_hidden(0, 0x40);
  EXPECT_THAT(fixed_log(), ElementsAre("device_type = 64\n", "device_type mask calc is 0!\n"));
}

TEST_F(VisibilityTest, DeviceTypeIsLoggedAsASignedNumber) {
  header_hidden(0, 0xc0);
  param_hidden(0, 0xff);
  EXPECT_THAT(fixed_log(), ElementsAre("device_type = -64\n", "device_type = -1\n"));
}

TEST_F(VisibilityTest, OpenedObjectsAndTheirRecordsCanBeAsked) {
  PropertyFile file = property_file({"Shown", "Hidden"}, {"a", "b"});
  file.header.hide = 1;
  file.params[1].hide = 1;
  write_property(kDir, file);
  const OpenedImage image;
  const char *bytes = static_cast<const char *>(image.get());
  EXPECT_EQ(objIsHide(image.get()), 1);
  EXPECT_EQ(paramIsHide(bytes + 184), 0);
  EXPECT_EQ(paramIsHide(bytes + 184 + 124), 1);
}

TEST_F(VisibilityTest, NamedParametersOfHiddenObjectsAreReadAndWritten) {
  PropertyFile file = property_file({"Name"}, {"old"});
  file.header.hide = 1;
  file.header.device_type = 0x40;
  file.params[0].hide = 1;
  file.params[0].device_type = 0x40;
  write_property(kDir, file);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name", "new", 0), 0u);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), "new");
}

}  // namespace
}  // namespace zrcfg_test
