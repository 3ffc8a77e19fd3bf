// Tests that the address slots of an open object can be followed by device code (32-bit targets).
#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "attr/attr_requests.h"
#include "attr/attr_update.h"
#include "core/single_value.h"
#include "tests/device/slot_walker.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr char kDir[] = "Gateway/Device/1/";
constexpr char kUrl[] = "Gateway.Device.1.";

std::vector<std::string> numbered_names(size_t count) {
  std::vector<std::string> names;
  for (size_t i = 0; i < count; ++i) {
    names.push_back("Parameter" + std::to_string(i));
  }
  return names;
}

PropertyFile file_of(size_t count) {
  return property_file(numbered_names(count), std::vector<std::string>(count, "value"));
}

class AddressSlotTest : public StoreTest {
 protected:
  void TearDown() override {
    if (image_ != nullptr) {
      EXPECT_EQ(destroyObj(image_, lock_fd_), 0u);
    }
    StoreTest::TearDown();
  }

  void open(uint32_t rw_type = ZRCFG_LOCK_SHARED) {
    ASSERT_EQ(createObjByPath(&image_, kDir, &lock_fd_, rw_type, 0), 0u);
  }

  // Every record in file order, the path, and nothing else.
  void expect_walk(const std::vector<std::string> &names) {
    SlotWalk walk;
    walk_slots(image_, &walk);
    EXPECT_STREQ(walk.path, kDir);
    EXPECT_EQ(walk.param_num, static_cast<int>(names.size() % 256));
    ASSERT_EQ(walk.count, static_cast<int>(names.size()));
    for (size_t i = 0; i < names.size(); ++i) {
      EXPECT_EQ(slot_record_name(walk.records[i]), names[i]);
      EXPECT_EQ(walk.records[i],
                static_cast<const unsigned char *>(image_) + kHeadBytes + i * kParamBytes);
    }
  }

  ZrcfgObject *image_ = nullptr;
  int lock_fd_ = -1;
};

TEST_F(AddressSlotTest, LeadsThroughEveryRecord) {
  write_property(kDir, file_of(5));
  open();
  expect_walk(numbered_names(5));
}

TEST_F(AddressSlotTest, LeadsThroughAFullObject) {
  write_property(kDir, file_of(255));
  open();
  expect_walk(numbered_names(255));
}

TEST_F(AddressSlotTest, EndsAtOnceWithoutRecords) {
  write_property(kDir, file_of(0));
  open();
  expect_walk({});
}

TEST_F(AddressSlotTest, LeadsThroughMoreRecordsThanTheCountSays) {
  write_property(kDir, file_of(258));
  open();
  SlotWalk walk;
  walk_slots(image_, &walk);
  EXPECT_EQ(walk.param_num, 2);
  EXPECT_EQ(walk.count, 258);
  EXPECT_STREQ(walk.path, kDir);
}

TEST_F(AddressSlotTest, DoesNotTakeWhatTheFileHoldsInTheSlots) {
  PropertyFile file = file_of(2);
  file.header.url_slot = 0xDEADBEEF;
  file.header.param_list_slot = 0xDEADBEEF;
  file.params[0].next_slot = 0xDEADBEEF;
  file.params[1].next_slot = 0xDEADBEEF;
  write_property(kDir, file);
  open();
  expect_walk(numbered_names(2));
}

TEST_F(AddressSlotTest, HoldsWhereTheFileEndsWithinTheRecords) {
  const std::string whole = file_of(3).bytes();
  write_property(kDir, whole.substr(0, 4 + kHeadBytes + kParamBytes));
  open();
  expect_walk({"Parameter0", "", ""});
}

TEST_F(AddressSlotTest, StandsAfterEveryUpdateOnTheImage) {
  write_property(kDir, file_of(3));
  open(ZRCFG_LOCK_EXCLUSIVE);
  ASSERT_EQ(setSingleParamAttrByParamName_ext(image_, "Parameter1", 3, "7"), 0u);
  expect_walk(numbered_names(3));
  const uint8_t noti = 2;
  ASSERT_EQ(setSingleParamAttrByParamName(image_, "Parameter2", &noti, ZRCFG_ATTR_SET_NOTI), 0u);
  expect_walk(numbered_names(3));
  ParamAttrChange change = {};
  change.noti_change = 1;
  change.noti = 3;
  ASSERT_EQ(setAllParamAttr(image_, &change, ZRCFG_NO_LOCK), 0u);
  expect_walk(numbered_names(3));
  uint8_t changed = 0;
  char old_value[ZRCFG_VALUE_SIZE] = "";
  ASSERT_EQ(
      set_single_param_value_by_param_name(image_, "Parameter0", "other", &changed, old_value), 0u);
  expect_walk(numbered_names(3));
}

// The addresses that an update leaves in the file belong to a process that is gone.
TEST_F(AddressSlotTest, StandsOnAFileThatUpdatesHaveWritten) {
  write_property(kDir, file_of(3));
  ASSERT_EQ(zrcfg_setsingleparamattr_ext(kUrl, "Parameter1", 3, "7", 0), 0u);
  ASSERT_EQ(zrcfg_setsingleobjattr_ext(kUrl, 5, "9", 0), 0u);
  open();
  expect_walk(numbered_names(3));
  EXPECT_EQ(static_cast<const unsigned char *>(image_)[5], 9);
}

TEST_F(AddressSlotTest, ServesTheRecordPredicatesByAddress) {
  PropertyFile file = file_of(3);
  file.params[1].hide = 1;
  write_property(kDir, file);
  open();
  SlotWalk walk;
  walk_slots(image_, &walk);
  ASSERT_EQ(walk.count, 3);
  EXPECT_EQ(paramIsHide(walk.records[0]), 0);
  EXPECT_EQ(paramIsHide(walk.records[1]), 1);
  EXPECT_EQ(paramIsHide(walk.records[2]), 0);
  EXPECT_EQ(objIsHide(image_), 0);
}

}  // namespace
}  // namespace zrcfg_test
