// The parent's counter: whose it is, how it is counted, what a failure gives.
#include <unistd.h>

#include <filesystem>

#include "lifecycle/entry_counter.h"
#include "support/lock_holder.h"
#include "tests/core/core_support.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr char kPnoe[] = "Gateway/TableNumberOfEntries";
constexpr int kAdd = 0;
constexpr int kDelete = 1;

struct StepRow {
  std::string stored;
  std::string added;
  std::string deleted;
};

void PrintTo(const StepRow &row, std::ostream *out) {
  *out << row.stored;
}

class CounterStepTest : public LifecycleTest, public ::testing::WithParamInterface<StepRow> {
 protected:
  void expect_step(int is_del, const std::string &expected) {
    set_counter(GetParam().stored);
    age_file(kParentLock);
    EXPECT_EQ(modifyParentNodeNumOfEntry(kTable, kPnoe, is_del, 0), 0u);
    EXPECT_EQ(lifecycle_log(), Lines{"obj_path=Gateway/ pnoe = TableNumberOfEntries\n"});
    expect_tree(with_counter(tree_, expected));
    EXPECT_EQ(is_aged(kParentLock), expected == GetParam().stored)
        << "an equal value is not written";
  }
};

TEST_P(CounterStepTest, AddingOneStep) {
  expect_step(kAdd, GetParam().added);
}

TEST_P(CounterStepTest, DeletingOneStepForEveryNonzeroFlag) {
  for (const int is_del : {kDelete, 2, -1, 256}) {
    expect_step(is_del, GetParam().deleted);
  }
}

const StepRow kSteps[] = {
    {"0", "1", "0"},
    {"1", "2", "0"},
    {"7", "8", "6"},
    {"9", "10", "8"},
    {"10", "11", "9"},
    {"255", "256", "254"},
    {"", "1", "0"},
    {"abc", "1", "0"},
    {"x7", "1", "0"},
    {"7x", "8", "6"},
    {"7 8", "8", "6"},
    {"007", "8", "6"},
    {"0x10", "1", "0"},
    {" 7", "8", "6"},
    {"\t7", "8", "6"},
    {"+7", "8", "6"},
    {"+-7", "1", "0"},
    {"3.9", "4", "2"},
    {"-0", "1", "0"},
    {"-1", "0", "-2"},
    {"-3", "-2", "-4"},
    {"2147483646", "2147483647", "2147483645"},
    {"-2147483647", "-2147483646", "-2147483648"},
    {std::string(254, '0') + "5", "6", "4"},
    {std::string(255, 'x'), "1", "0"},
    {std::string(254, ' ') + "5", "6", "4"},
    {"\r7", "1", "0"},
};

// Texts beyond the limits of 32 bits count as the limit. What the step beyond a limit gives is the
// device's affair: it stays there or goes round.
TEST_F(LifecycleTest, CounterTextsSaturateAtTheLimitsOf32Bits) {
  const std::string highest = "2147483647";
  const std::string lowest = "-2147483648";
  for (const std::string &text :
       {highest, std::string("2147483648"), std::string(26, '9'), std::string(255, '9')}) {
    set_counter(text);
    ASSERT_EQ(modifyParentNodeNumOfEntry(kTable, kPnoe, kDelete, 0), 0u);
    expect_tree(with_counter(tree_, "2147483646"));
    set_counter(text);
    ASSERT_EQ(modifyParentNodeNumOfEntry(kTable, kPnoe, kAdd, 0), 0u);
    const Tree found = store_tree();
    EXPECT_TRUE(found == with_counter(tree_, highest) || found == with_counter(tree_, lowest));
  }
  for (const std::string &text : {lowest, std::string("-2147483649"), "-" + std::string(26, '9')}) {
    set_counter(text);
    ASSERT_EQ(modifyParentNodeNumOfEntry(kTable, kPnoe, kAdd, 0), 0u);
    expect_tree(with_counter(tree_, "-2147483647"));
    set_counter(text);
    ASSERT_EQ(modifyParentNodeNumOfEntry(kTable, kPnoe, kDelete, 0), 0u);
    const Tree found = store_tree();
    EXPECT_TRUE(found == with_counter(tree_, highest) || found == with_counter(tree_, lowest));
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, CounterStepTest, ::testing::ValuesIn(kSteps),
                         [](const auto &row) { return std::to_string(row.index); });

class EntryCounterTest : public LifecycleTest {
 protected:
  uint32_t step(const char *path, const char *pnoe, int is_del = kAdd, int timeout = 0) {
    clear_log();
    return modifyParentNodeNumOfEntry(path, pnoe, is_del, timeout);
  }
};

TEST_F(EntryCounterTest, EmptyPathGives13) {
  EXPECT_EQ(step("", kPnoe), 13u);
  EXPECT_EQ(step("", kPnoe, kDelete), 13u);
  EXPECT_EQ(lifecycle_log(), Lines());
  expect_unchanged();
}

TEST_F(EntryCounterTest, NullGives10) {
  EXPECT_EQ(step(nullptr, kPnoe), 10u);
  EXPECT_EQ(step(kTable, nullptr), 10u);
  expect_unchanged();
}

TEST_F(EntryCounterTest, ParentIsWhatPrecedesTheLastName) {
  for (const char *path : {"Gateway/Table/", "Gateway/Table", "Gateway/x"}) {
    LifecycleTest::SetUp();
    EXPECT_EQ(step(path, kPnoe), 0u) << path;
    expect_tree(with_counter(tree_, "3"));
  }
}

TEST_F(EntryCounterTest, ParentMayBeAnInstanceUnderItsTemplatesLock) {
  {
    const LockHolder holder(kTemplateLock, Held::kShared);
    EXPECT_EQ(step("Gateway/Table/1/Sub/", "/B"), 9u);
    expect_unchanged();
  }
  const LockHolder other("Gateway/Table/1/property.conf", Held::kExclusive);
  EXPECT_EQ(step("Gateway/Table/1/Sub/", "/B"), 0u);
  Tree expected = tree_;
  expected["Gateway/Table/1/property.conf"] =
      file_entry(property_file({"A", "B"}, {"one", "2"}).bytes());
  expect_tree(expected);
}

TEST_F(EntryCounterTest, OnlyOneFinalSlashIsDropped) {
  EXPECT_EQ(step("Gateway//", kPnoe), 0u);
  expect_tree(with_counter(tree_, "3"));
}

// Without a slash the path itself is what the file's name is put behind.
TEST_F(EntryCounterTest, PathWithoutFurtherSlashIsUsedAsItIs) {
  const PropertyFile file = property_file({"N"}, {"4"});
  write_store_file("Tableproperty.conf", file.bytes());
  remember();
  for (const char *path : {"Table/", "Table"}) {
    EXPECT_EQ(step(path, "/N"), 0u) << path;
    EXPECT_EQ(lifecycle_log(), Lines{"obj_path=Table pnoe = N\n"});
  }
  Tree expected = tree_;
  expected["Tableproperty.conf"] = file_entry(property_file({"N"}, {"6"}).bytes());
  expect_tree(expected);
  for (const char *path : {"None/", "None"}) {
    EXPECT_EQ(step(path, "/N"), 9u) << path;
    EXPECT_EQ(step(path, "/N", kAdd, ZRCFG_NO_LOCK), 8u) << path;
    EXPECT_EQ(lifecycle_log(), Lines{"createObjByPath() fail ret=8!\n"});
  }
  expect_tree(expected);
}

TEST_F(EntryCounterTest, NameIsWhatFollowsTheLastSlash) {
  for (const char *pnoe : {"/TableNumberOfEntries", "x/TableNumberOfEntries",
                           "a/b/c/TableNumberOfEntries", "//TableNumberOfEntries"}) {
    LifecycleTest::SetUp();
    EXPECT_EQ(step(kTable, pnoe), 0u) << pnoe;
    expect_tree(with_counter(tree_, "3"));
  }
}

TEST_F(EntryCounterTest, NameThatNoParameterHasGives5) {
  for (const char *pnoe : {"TableNumberOfEntries", "", "/", "x/", "x/None",
                           "x/TableNumberOfEntries/", "x.TableNumberOfEntries"}) {
    EXPECT_EQ(step(kTable, pnoe), 5u) << pnoe;
    EXPECT_EQ(lifecycle_log().back(), "setSingleParamValueByParamName() fail ret=5!\n");
    EXPECT_EQ(step(kTable, pnoe, kDelete), 5u) << pnoe;
  }
  expect_unchanged();
}

TEST_F(EntryCounterTest, EndlessNamesAreRefused) {
  for (const size_t length : {64u, 71u, 72u, 73u, 200u, 100000u}) {
    EXPECT_EQ(step(kTable, ("x/" + std::string(length, 'N')).c_str()), 5u) << length;
  }
  expect_unchanged();
}

TEST_F(EntryCounterTest, EndlessPathsAreRefused) {
  for (const size_t length : {256u, 300u, 100000u}) {
    EXPECT_NE(step(path_of(length).c_str(), kPnoe), 0u) << length;
  }
  expect_unchanged();
}

TEST_F(EntryCounterTest, PathOf255CharactersIsServed) {
  const std::string dir = path_of(255);
  const std::string parent = dir.substr(0, dir.rfind('/', dir.size() - 2) + 1);
  write_property(parent, property_file({"N"}, {"4"}));
  EXPECT_EQ(step(dir.c_str(), "/N"), 0u);
  EXPECT_EQ(value_section(read_property(parent)), "5\n");
}

TEST_F(EntryCounterTest, MissingParentGives9WithALockAnd8Without) {
  EXPECT_EQ(step("None/Table/", kPnoe), 9u);
  EXPECT_EQ(lifecycle_log(), Lines{"createObjByPath() fail ret=9!\n"});
  EXPECT_EQ(step("None/Table/", kPnoe, kAdd, ZRCFG_NO_LOCK), 8u);
  EXPECT_EQ(lifecycle_log(), Lines{"createObjByPath() fail ret=8!\n"});
  expect_unchanged();
}

TEST_F(EntryCounterTest, LockIsTheParentsAndExclusive) {
  {
    const LockHolder holder(kParentLock, Held::kShared);
    EXPECT_EQ(step(kTable, kPnoe), 9u);
    EXPECT_EQ(step(kTable, kPnoe, kAdd, 9), 9u);
    expect_unchanged();
    EXPECT_EQ(step(kTable, kPnoe, kAdd, ZRCFG_NO_LOCK), 0u);
  }
  const LockHolder table("Gateway/Table/property.conf", Held::kExclusive);
  const LockHolder instances(kTemplateLock, Held::kExclusive);
  EXPECT_EQ(step(kTable, kPnoe), 0u);
  expect_tree(with_counter(tree_, "4"));
}

TEST_F(EntryCounterTest, FewerValuesThanTheCountersPlaceGive10) {
  PropertyFile parent = property_file({"Name", "TableNumberOfEntries"}, {"x", "1"});
  parent.values = "x\n";
  write_property("Gateway/", parent);
  remember();
  EXPECT_EQ(step(kTable, kPnoe), 10u);
  EXPECT_EQ(lifecycle_log(), (Lines{"obj_path=Gateway/ pnoe = TableNumberOfEntries\n",
                                    "getSingleParamValueByParamName() fail ret=10!\n"}));
  expect_unchanged();
}

TEST_F(EntryCounterTest, ParentWithoutParametersGives5Or10) {
  write_property("Gateway/", PropertyFile());
  remember();
  const uint32_t result = step(kTable, kPnoe);
  EXPECT_TRUE(result == 5 || result == 10) << result;
  expect_unchanged();
}

TEST_F(EntryCounterTest, DriftedCounterStaysOffByTheSameAmount) {
  set_counter("40");
  uint32_t index = 0;
  EXPECT_EQ(zrcfg_addobject(kTableUrl, &index, 0), 0u);
  EXPECT_EQ(zrcfg_delobject(kTableUrl, 1, 0), 0u);
  EXPECT_EQ(zrcfg_delobject(kTableUrl, 3, 0), 0u);
  EXPECT_NE(value_section(read_property("Gateway/")).find("\n39\n"), std::string::npos);
}

}  // namespace
}  // namespace zrcfg_test
