// The deletion of instances: what is removed, the counter, and every step's lines.
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "support/lock_holder.h"
#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

constexpr char kOpening[] = "objUrl =  Gateway.Table.\n";
constexpr char kNoTemplate[] =
    "dst_obj_path=Gateway/Table/0 not exist, no 0 instance,is not dynamic!\n";
constexpr char kOpenMessage[] = "dirDel:273 open failed.\n";

class DeleteInstanceTest : public LifecycleTest {
 protected:
  uint32_t del(int index, int timeout = 0) {
    clear_log();
    uint32_t result = kUnwritten;
    output_ = printed([&] { result = zrcfg_delobject(kTableUrl, index, timeout); });
    return result;
  }
  std::string output_;
};

TEST_F(DeleteInstanceTest, InstanceIsRemovedAndTheCounterLowered) {
  EXPECT_EQ(del(1), 0u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kCounterLine}));
  EXPECT_EQ(output_, "");
  expect_tree(with_counter(without(tree_, "Gateway/Table/1"), "1"));
}

TEST_F(DeleteInstanceTest, TwoOfTwoLeavesTheOtherAndTheTemplate) {
  std::filesystem::remove_all("/var/Gateway/Table/3");
  write_property("Gateway/Table/2/", "x");
  remember();
  EXPECT_EQ(del(2), 0u);
  expect_tree(with_counter(without(tree_, "Gateway/Table/2"), "1"));
}

TEST_F(DeleteInstanceTest, CounterOf0Stays0) {
  set_counter("0");
  EXPECT_EQ(del(1), 0u);
  expect_tree(without(tree_, "Gateway/Table/1"));
}

TEST_F(DeleteInstanceTest, MissingInstanceGives1AndLeavesTheCounterAlone) {
  for (const int index : {2, 4, -1, 255, 256, INT_MAX, INT_MIN}) {
    EXPECT_EQ(del(index), 1u) << index;
    EXPECT_EQ(lifecycle_log(), Lines{kOpening});
  }
  expect_unchanged();
}

TEST_F(DeleteInstanceTest, NumbersOutsideTheLimitAreDeletedToo) {
  for (const int index : {-1, 7, 256, INT_MAX, INT_MIN}) {
    LifecycleTest::SetUp();
    const std::string dir = "Gateway/Table/" + std::to_string(index);
    make_store_dir(dir + "/");
    write_store_file(dir + "/file", "x");
    EXPECT_EQ(del(index), 0u) << index;
    expect_tree(with_counter(tree_, "1"));
  }
}

TEST_F(DeleteInstanceTest, Number0RemovesTheTemplateAndEndsCreations) {
  EXPECT_EQ(del(0), 0u);
  expect_tree(with_counter(without(tree_, "Gateway/Table/0"), "1"));
  remember();
  uint32_t index = kUnwritten;
  EXPECT_EQ(zrcfg_addobject(kTableUrl, &index, 0), 9u);
  EXPECT_EQ(zrcfg_addobject(kTableUrl, &index, ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(del(1), 9u);
  EXPECT_EQ(del(1, ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kNoTemplate}));
  EXPECT_EQ(del(0, ZRCFG_NO_LOCK), 2u);
  expect_unchanged();
}

TEST_F(DeleteInstanceTest, MissingTemplateUnderAnOuterOneGives2WithALock) {
  write_property("Outer/0/", property_file({"X"}, {"x"}));
  write_property("Outer/1/Table/", table_file({}));
  write_property("Outer/1/Table/1/", table_file({}));
  remember();
  EXPECT_EQ(zrcfg_delobject("Outer.1.Table.", 1, 0), 2u);
  EXPECT_EQ(lifecycle_log().back(),
            "dst_obj_path=Outer/1/Table/0 not exist, no 0 instance,is not dynamic!\n");
  expect_unchanged();
}

TEST_F(DeleteInstanceTest, FixedTableGives2WithoutALine) {
  TableFields fields;
  fields.rw = 0;
  set_table(fields);
  for (const int timeout : {0, ZRCFG_NO_LOCK}) {
    EXPECT_EQ(del(1, timeout), 2u);
    EXPECT_EQ(lifecycle_log(), Lines{kOpening});
  }
  EXPECT_EQ(del(7), 2u);
  expect_unchanged();
}

TEST_F(DeleteInstanceTest, FileInThePlaceOfAnInstanceIsNoInstance) {
  write_store_file("Gateway/Table/2", "a file");
  remember();
  EXPECT_EQ(del(2), 1u);
  expect_unchanged();
}

TEST_F(DeleteInstanceTest, InstanceStaysDeletedWhenTheCounterCannotBeLowered) {
  TableFields fields;
  fields.pnoe = "Gateway/None";
  set_table(fields);
  EXPECT_EQ(del(1), 5u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, "obj_path=Gateway/ pnoe = None\n",
                                    "setSingleParamValueByParamName() fail ret=5!\n",
                                    "modifyParentNodeNumOfEntry() fail ret=5!\n"}));
  expect_tree(without(tree_, "Gateway/Table/1"));
  const LockHolder holder(kParentLock, Held::kExclusive);
  EXPECT_EQ(del(3), 9u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, "createObjByPath() fail ret=9!\n",
                                    "modifyParentNodeNumOfEntry() fail ret=9!\n"}));
  expect_tree(without(without(tree_, "Gateway/Table/1"), "Gateway/Table/3"));
}

// The directory is gone between the test for it and its removal, as far as a user can arrange it:
// one that may be searched for but not opened counts as missing.
TEST_F(DeleteInstanceTest, InstanceThatMayNotBeReadIsNone) {
  const ModeChange table("Gateway/Table", 0777);
  {
    const ModeChange closed("Gateway/Table/1", 0311);
    const OrdinaryUser user;
    EXPECT_EQ(del(1), 1u);
  }
  expect_unchanged();
}

TEST_F(DeleteInstanceTest, PartsThatMayNotBeRemovedLeaveTheResultAt0) {
  const ModeChange parent("Gateway/property.conf", 0666);
  {
    const ModeChange closed("Gateway/Table/1/Sub", 0555);
    const ModeChange open("Gateway/Table/1", 0777);
    const OrdinaryUser user;
    EXPECT_EQ(del(1), 0u);
  }
  Tree expected = with_counter(tree_, "1");
  expected.erase("Gateway/Table/1/property.conf");
  expect_tree(expected);
}

TEST_F(DeleteInstanceTest, EmptyInstanceIsDeleted) {
  make_store_dir("Gateway/Table/2/");
  EXPECT_EQ(del(2), 0u);
  expect_tree(with_counter(tree_, "1"));
}

TEST_F(DeleteInstanceTest, AddAndDeleteBringTheStoreBack) {
  for (int i = 0; i < 5; ++i) {
    uint32_t index = kUnwritten;
    ASSERT_EQ(zrcfg_addobject(kTableUrl, &index, ZRCFG_WAIT_FOREVER), 0u);
    EXPECT_EQ(index, 2u);
    ASSERT_EQ(del(2, ZRCFG_WAIT_FOREVER), 0u);
    expect_unchanged();
  }
}

// A deletion whose descriptors run out fails with a documented code and touches nothing else.
TEST_F(DeleteInstanceTest, FewDescriptorsGiveDocumentedResults) {
  for (unsigned free = 0; free < 8; ++free) {
    LifecycleTest::SetUp();
    uint32_t result = kUnwritten;
    const std::string output = printed([&] {
      const DescriptorLimit limit(free);
      result = zrcfg_delobject(kTableUrl, 1, 0);
    });
    EXPECT_TRUE(result == 0 || result == 1 || result == 2 || result == 8 || result == 9 ||
                result == 18)
        << result;
    EXPECT_TRUE(result != 18 || output == kOpenMessage) << output;
    EXPECT_EQ(result == 18, log_contains("dirDel() fail!\n"));
    const Tree found = store_tree();
    EXPECT_EQ(without(found, "Gateway/Table/1"),
              without(result == 0 ? with_counter(tree_, "1") : tree_, "Gateway/Table/1"))
        << free;
  }
}

}  // namespace
}  // namespace zrcfg_test
