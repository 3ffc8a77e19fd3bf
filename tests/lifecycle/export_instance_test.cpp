// The export of instances: selection by key, replacement, texts, results.
#include <chrono>
#include <climits>
#include <filesystem>

#include "support/lock_holder.h"
#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

constexpr uint8_t kMark = 0x5a;
constexpr char kNested[] = "objUrl =  Gateway/Table/\n";
constexpr char kReplaced[] = "after zrcfg_exportaddobject in zrcfg_exportaddobject! ret=0\n";
constexpr char kWritten[] = "write_flag=1!\n";
constexpr char kHeldBack[] = "write_flag=0!\n";

class ExportInstanceTest : public LifecycleTest {
 protected:
  uint32_t add(const std::string &url, int mode = 0, int timeout = 0) {
    clear_log();
    flag_ = kMark;
    return zrcfg_exportaddobject(url.c_str(), timeout, mode, &flag_);
  }
  uint32_t del(const std::string &url, int mode = 0, int timeout = 0) {
    clear_log();
    flag_ = kMark;
    return zrcfg_exportdelobject(url.c_str(), timeout, mode, &flag_);
  }
  void set_key(unsigned key) {
    TableFields fields;
    fields.key = key;
    set_table(fields);
  }
  uint8_t flag_ = kMark;
};

Lines opening(const std::string &url, int index, unsigned rw = 1) {
  return {"pUrl =  " + url + "\n",
          "exportGetObjUrlAndIndex() url=" + url + ", Len=" + std::to_string(url.size()) + "\n",
          "objUrl=Gateway.Table.   index = " + std::to_string(index) + "\n",
          "obj->ubv.boolval.rw=" + std::to_string(rw) + "\n"};
}

std::string exists_line(int index) {
  return "obj_path=Gateway/Table/" + std::to_string(index) +
         " has exist!rm it first if you are going to add a new one!\n";
}

TEST_F(ExportInstanceTest, ModeSelectsByTheBitOfTheTablesKey) {
  for (const int mode : {1, 2, 3, 0, 4, 7, -1, INT_MAX, INT_MIN}) {
    for (unsigned key = 0; key < 16; ++key) {
      LifecycleTest::SetUp();
      set_key(key);
      const bool selected = mode < 1 || mode > 3 || ((key >> (mode - 1)) & 1) != 0;
      Lines lines = opening("Gateway.Table.2.", 2);
      if (mode == 1) {
        lines.push_back("obj->ubv.boolval.key=" + std::to_string(key) + "\n");
      }
      EXPECT_EQ(add("Gateway.Table.2.", mode), 0u);
      EXPECT_EQ(flag_, selected ? 1 : 0) << mode << " " << key;
      EXPECT_EQ(lifecycle_log(),
                lines + (selected ? Lines{kCounterLine, kWritten} : Lines{kHeldBack}));
      expect_tree(selected
                      ? with_counter(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"), "3")
                      : tree_);
      remember();
      EXPECT_EQ(del("Gateway.Table.1.", mode), 0u);
      EXPECT_EQ(flag_, selected ? 1 : 0);
      lines[0] = "pUrl =  Gateway.Table.1.\n";
      lines[1] = "exportGetObjUrlAndIndex() url=Gateway.Table.1., Len=16\n";
      lines[2] = "objUrl=Gateway.Table.   index = 1\n";
      EXPECT_EQ(lifecycle_log(),
                lines + (selected ? Lines{kCounterLine, kWritten} : Lines{kHeldBack}));
      expect_tree(selected ? with_counter(without(tree_, "Gateway/Table/1"), "2") : tree_);
    }
  }
}

TEST_F(ExportInstanceTest, FinalDotMakesNoDifferenceAndTextBehindTheNumberIsIgnored) {
  for (const char *url : {"Gateway.Table.2.", "Gateway.Table.2", "Gateway.Table.2x"}) {
    LifecycleTest::SetUp();
    EXPECT_EQ(add(url), 0u) << url;
    EXPECT_EQ(lifecycle_log(), opening(url, 2) + Lines({kCounterLine, kWritten}));
    EXPECT_TRUE(store_entry_exists("Gateway/Table/2/property.conf"));
    EXPECT_EQ(del(url), 0u) << url;
    expect_tree(tree_);
  }
}

TEST_F(ExportInstanceTest, UrlWithoutAnInstanceNumberGives1) {
  for (const char *url : {"", ".", "Gateway", "Gateway.Table.", "Gateway.Table.0",
                          "Gateway.Table.0.", "Gateway.Table.01.", "Gateway.Table.WANIPConnection.",
                          "Gateway.Table.-1.", "Gateway.Table..", "2."}) {
    const std::string text = url;
    const Lines lines = {
        "pUrl =  " + text + "\n",
        "exportGetObjUrlAndIndex() url=" + text + ", Len=" + std::to_string(text.size()) + "\n",
        "exportGetObjUrlAndIndex() fail!\n"};
    EXPECT_EQ(add(url), 1u) << url;
    EXPECT_EQ(lifecycle_log(), lines);
    EXPECT_EQ(del(url), 1u) << url;
    EXPECT_EQ(lifecycle_log(), lines);
    EXPECT_EQ(flag_, kMark);
  }
  expect_unchanged();
}

TEST_F(ExportInstanceTest, FixedTableGives2BeforeItsKeyIsLookedAt) {
  TableFields fields;
  fields.rw = 0;
  set_table(fields);
  for (const int mode : {0, 1, 3}) {
    EXPECT_EQ(add("Gateway.Table.2.", mode), 2u);
    EXPECT_EQ(lifecycle_log(), opening("Gateway.Table.2.", 2, 0));
    EXPECT_EQ(del("Gateway.Table.1.", mode), 2u);
    EXPECT_EQ(lifecycle_log(), opening("Gateway.Table.1.", 1, 0));
    EXPECT_EQ(flag_, kMark);
  }
  expect_unchanged();
}

TEST_F(ExportInstanceTest, MissingTemplateGives9WithALockAnd2WithoutUnlessHeldBack) {
  std::filesystem::remove_all("/var/Gateway/Table/0");
  remember();
  EXPECT_EQ(add("Gateway.Table.2."), 9u);
  EXPECT_EQ(del("Gateway.Table.1."), 9u);
  EXPECT_EQ(add("Gateway.Table.2.", 0, ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(lifecycle_log().back(),
            "instance0_obj_path=Gateway/Table/0 not exist, no 0 instance,is not dynamic!\n");
  EXPECT_EQ(del("Gateway.Table.1.", 0, ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(lifecycle_log().back(),
            "dst_obj_path=Gateway/Table/0 not exist, no 0 instance,is not dynamic!\n");
  EXPECT_EQ(flag_, kMark);
  EXPECT_EQ(add("Gateway.Table.2.", 1, ZRCFG_NO_LOCK), 0u) << "the key comes first";
  EXPECT_EQ(flag_, 0);
  EXPECT_EQ(del("Gateway.Table.1.", 1, ZRCFG_NO_LOCK), 0u);
  EXPECT_EQ(flag_, 0);
  expect_unchanged();
}

TEST_F(ExportInstanceTest, NumberAboveTheLimitGives4) {
  for (const char *number : {"4", "255", "256", "258", "2147483647", "99999999999"}) {
    EXPECT_EQ(add(std::string(kTableUrl) + number), 4u) << number;
    EXPECT_EQ(lifecycle_log().back(), "exceed max number instance.\n");
    EXPECT_EQ(flag_, kMark);
  }
  EXPECT_EQ(add("Gateway.Table.4.", 1), 0u) << "held back before";
  EXPECT_EQ(flag_, 0);
  expect_unchanged();
}

TEST_F(ExportInstanceTest, LimitItselfIsANumber) {
  TableFields fields;
  fields.max_instance = 2;
  set_table(fields);
  EXPECT_EQ(add("Gateway.Table.2."), 0u);
  expect_tree(with_counter(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"), "3"));
}

TEST_F(ExportInstanceTest, MissingInstanceGives1) {
  for (const char *number : {"2", "4", "255", "99999999999"}) {
    EXPECT_EQ(del(std::string(kTableUrl) + number), 1u) << number;
    EXPECT_EQ(lifecycle_log().back(), "obj->ubv.boolval.rw=1\n");
    EXPECT_EQ(flag_, kMark);
  }
  expect_unchanged();
}

TEST_F(ExportInstanceTest, ReplacementWithALockFailsWith9AfterItsThreeSeconds) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(add("Gateway.Table.1."), 9u);
  const auto spent = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(spent, std::chrono::milliseconds(2990));
  EXPECT_LT(spent, std::chrono::seconds(9));
  EXPECT_EQ(lifecycle_log(),
            opening("Gateway.Table.1.", 1) +
                Lines({exists_line(1), kNested, "createObjByPath() fail ret=9!\n", "ret =9!\n"}));
  EXPECT_EQ(flag_, kMark);
  expect_unchanged();
}

TEST_F(ExportInstanceTest, ReplacementWithoutALockPutsTheTemplateInPlace) {
  EXPECT_EQ(add("Gateway.Table.1.", 0, ZRCFG_NO_LOCK), 0u);
  EXPECT_EQ(flag_, 1);
  EXPECT_EQ(lifecycle_log(),
            opening("Gateway.Table.1.", 1) +
                Lines({exists_line(1), kNested, kCounterLine, kReplaced, kCounterLine, kWritten}));
  expect_tree(with_copy(without(tree_, "Gateway/Table/1"), "Gateway/Table/0", "Gateway/Table/1"));
}

TEST_F(ExportInstanceTest, ReplacementOfACounterThatStandsAt0CountsOne) {
  set_counter("0");
  EXPECT_EQ(add("Gateway.Table.1.", 0, ZRCFG_NO_LOCK), 0u);
  expect_tree(with_counter(
      with_copy(without(tree_, "Gateway/Table/1"), "Gateway/Table/0", "Gateway/Table/1"), "1"));
}

TEST_F(ExportInstanceTest, InstanceAboveTheLimitIsDeletedBeforeTheLimitIsLookedAt) {
  write_property("Gateway/Table/9/", "x");
  remember();
  EXPECT_EQ(add("Gateway.Table.9.", 0, ZRCFG_NO_LOCK), 4u);
  EXPECT_EQ(lifecycle_log(),
            opening("Gateway.Table.9.", 9) + Lines({exists_line(9), kNested, kCounterLine,
                                                    kReplaced, "exceed max number instance.\n"}));
  EXPECT_EQ(flag_, kMark);
  expect_tree(with_counter(without(tree_, "Gateway/Table/9"), "1"));
}

TEST_F(ExportInstanceTest, ReplacementThatCannotCountTheDeletionReturnsItsCode) {
  TableFields fields;
  fields.pnoe = "Gateway/None";
  set_table(fields);
  EXPECT_EQ(add("Gateway.Table.1.", 0, ZRCFG_NO_LOCK), 5u);
  EXPECT_EQ(lifecycle_log().back(), "ret =5!\n");
  EXPECT_EQ(flag_, kMark);
  expect_tree(without(tree_, "Gateway/Table/1"));
}

TEST_F(ExportInstanceTest, ReplacementWaitsForSomeoneElsesTemplateLock) {
  const LockHolder holder(kTemplateLock, Held::kShared);
  EXPECT_EQ(add("Gateway.Table.1.", 0, ZRCFG_NO_LOCK), 9u) << "the nested deletion takes its lock";
  EXPECT_EQ(lifecycle_log().back(), "ret =9!\n");
  expect_unchanged();
}

TEST_F(ExportInstanceTest, CounterFailureOfACreationRemovesTheInstanceAgain) {
  TableFields fields;
  fields.pnoe = "Gateway/None";
  set_table(fields);
  EXPECT_EQ(add("Gateway.Table.2."), 5u);
  EXPECT_EQ(lifecycle_log(), opening("Gateway.Table.2.", 2) +
                                 Lines({"obj_path=Gateway/ pnoe = None\n",
                                        "setSingleParamValueByParamName() fail ret=5!\n",
                                        "createObjByPath() fail ret=5!\n"}));
  EXPECT_EQ(flag_, kMark);
  expect_unchanged();
  const LockHolder holder(kParentLock, Held::kShared);
  EXPECT_EQ(add("Gateway.Table.2."), 9u);
  EXPECT_EQ(lifecycle_log(),
            opening("Gateway.Table.2.", 2) + Lines(2, "createObjByPath() fail ret=9!\n"));
  expect_unchanged();
}

TEST_F(ExportInstanceTest, CounterFailureOfADeletionLeavesTheInstanceDeleted) {
  TableFields fields;
  fields.pnoe = "Gateway/None";
  set_table(fields);
  EXPECT_EQ(del("Gateway.Table.1."), 5u);
  EXPECT_EQ(lifecycle_log().back(), "createObjByPath() fail ret=5!\n");
  EXPECT_EQ(flag_, kMark);
  expect_tree(without(tree_, "Gateway/Table/1"));
}

TEST_F(ExportInstanceTest, EmptyInstanceDirectoryExistsToo) {
  make_store_dir("Gateway/Table/2/");
  remember();
  EXPECT_EQ(add("Gateway.Table.2.", 0, ZRCFG_NO_LOCK), 0u);
  EXPECT_TRUE(log_contains(exists_line(2)));
  expect_tree(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"));
}

// An instance that may be emptied but not removed: the removal itself reports success.
TEST_F(ExportInstanceTest, RemainsOfADeletionAreNoFailure) {
  make_link("../../../Other", "Gateway/Table/1/link");
  remember();
  EXPECT_EQ(del("Gateway.Table.1."), 0u);
  EXPECT_EQ(flag_, 1);
  Tree expected = without(with_counter(tree_, "1"), "Gateway/Table/1");
  expected["Gateway/Table/1"] = kDirEntry;
  expected["Gateway/Table/1/link"] = tree_["Gateway/Table/1/link"];
  expected.erase("Other/property.conf");
  expect_tree(expected);
}

}  // namespace
}  // namespace zrcfg_test
