// The creation of instances: number, copy, counter, roll-back, and every step's lines.
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "support/lock_holder.h"
#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

constexpr char kOpening[] = "objUrl =  Gateway.Table.\n";
constexpr char kRw[] = "obj->ubv.boolval.rw=1\n";
constexpr char kFull[] = "exceed max number instance.\n";
constexpr char kNoTemplate[] =
    "instance0_obj_path=Gateway/Table/0 not exist, no 0 instance,is not dynamic!\n";
constexpr char kCounterFailed[] = "modifyParentNodeNumOfEntry() fail ret=";

std::string use_it(int number) {
  return "Gateway/Table/" + std::to_string(number) + " is not exist, use it.\n";
}

std::string refused(int number) {
  return std::to_string(number) + " exceed max number instance or Gateway/Table/" +
         std::to_string(number) + " is exist.\n";
}

class AddInstanceTest : public LifecycleTest {
 protected:
  uint32_t add(int timeout = 0) {
    clear_log();
    index_ = kUnwritten;
    return zrcfg_addobject(kTableUrl, &index_, timeout);
  }
  uint32_t add_at(int index, int timeout = 0) {
    clear_log();
    return zrcfg_addobject_with_index(kTableUrl, index, timeout);
  }
  Tree added(int number, const std::string &counter) const {
    const std::string dir = "Gateway/Table/" + std::to_string(number);
    return with_counter(with_copy(tree_, "Gateway/Table/0", dir), counter);
  }
  uint32_t index_ = kUnwritten;
};

TEST_F(AddInstanceTest, LowestFreeNumberIsTakenThenTheTableIsFull) {
  EXPECT_EQ(add(), 0u);
  EXPECT_EQ(index_, 2u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, use_it(2), kCounterLine}));
  expect_tree(added(2, "3"));
  remember();
  EXPECT_EQ(add(), 4u);
  EXPECT_EQ(index_, kUnwritten);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, kFull}));
  expect_unchanged();
}

TEST_F(AddInstanceTest, FreedNumbersAreUsedAgainBeforeHigherOnes) {
  ASSERT_EQ(zrcfg_delobject(kTableUrl, 1, 0), 0u);
  remember();
  EXPECT_EQ(add(), 0u);
  EXPECT_EQ(index_, 1u);
  expect_tree(added(1, "2"));
}

TEST_F(AddInstanceTest, LimitItselfIsANumber) {
  TableFields fields;
  fields.max_instance = 2;
  set_table(fields);
  EXPECT_EQ(add(), 0u);
  EXPECT_EQ(index_, 2u);
  expect_tree(added(2, "3"));
}

TEST_F(AddInstanceTest, GivenNumberIsCreated) {
  EXPECT_EQ(add_at(2), 0u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, kCounterLine}));
  expect_tree(added(2, "3"));
}

TEST_F(AddInstanceTest, GivenNumberOutsideTheLimitOrTakenGives4) {
  for (const int index : {0, -1, INT_MIN, 4, 256, 258, INT_MAX, 1, 3}) {
    EXPECT_EQ(add_at(index), 4u) << index;
    EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, refused(index)}));
    expect_unchanged();
  }
}

TEST_F(AddInstanceTest, LimitOf0RefusesEveryCreation) {
  TableFields fields;
  fields.max_instance = 0;
  set_table(fields);
  EXPECT_EQ(add(), 4u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, kFull}));
  for (const int index : {0, 1, 2}) {
    EXPECT_EQ(add_at(index), 4u);
  }
  expect_unchanged();
}

TEST_F(AddInstanceTest, LimitOf255IsTheHighestNumber) {
  TableFields fields;
  fields.max_instance = 255;
  set_table(fields);
  EXPECT_EQ(add_at(256), 4u);
  EXPECT_EQ(add_at(255), 0u);
  for (int i = 2; i < 255; ++i) {
    make_store_dir("Gateway/Table/" + std::to_string(i) + "/");
  }
  EXPECT_EQ(add(), 4u);
  ASSERT_EQ(rmdir("/var/Gateway/Table/254"), 0);
  remember();
  EXPECT_EQ(add(), 0u);
  EXPECT_EQ(index_, 254u);
  expect_tree(added(254, "4"));
}

TEST_F(AddInstanceTest, EveryNonzeroKindIsDynamic) {
  for (const unsigned rw : {1u, 2u, 3u}) {
    LifecycleTest::SetUp();
    TableFields fields;
    fields.rw = rw;
    set_table(fields);
    EXPECT_EQ(add(), 0u) << rw;
    EXPECT_EQ(lifecycle_log().at(1), "obj->ubv.boolval.rw=" + std::to_string(rw) + "\n");
    expect_tree(added(2, "3"));
  }
}

TEST_F(AddInstanceTest, FixedTableGives2WithoutAFurtherLine) {
  TableFields fields;
  fields.rw = 0;
  set_table(fields);
  const Lines lines = {kOpening, "obj->ubv.boolval.rw=0\n"};
  EXPECT_EQ(add(), 2u);
  EXPECT_EQ(lifecycle_log(), lines);
  EXPECT_EQ(index_, kUnwritten);
  EXPECT_EQ(add_at(2), 2u);
  EXPECT_EQ(lifecycle_log(), lines);
  expect_unchanged();
}

TEST_F(AddInstanceTest, MissingTemplateGives9WithALockAnd2Without) {
  std::filesystem::remove_all("/var/Gateway/Table/0");
  remember();
  EXPECT_EQ(add(), 9u);
  EXPECT_EQ(add_at(2), 9u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, "createObjByPath() fail ret=9!\n"}));
  EXPECT_EQ(add(ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, kNoTemplate}));
  EXPECT_EQ(index_, kUnwritten);
  EXPECT_EQ(add_at(2, ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, kNoTemplate}));
  EXPECT_EQ(add_at(0, ZRCFG_NO_LOCK), 2u) << "the template comes before the number";
  expect_unchanged();
}

TEST_F(AddInstanceTest, MissingTemplateOfAFixedTableGives9WithALockAnd2Without) {
  std::filesystem::remove_all("/var/Gateway/Table/0");
  TableFields fields;
  fields.rw = 0;
  set_table(fields);
  EXPECT_EQ(add(), 9u);
  EXPECT_EQ(add(ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, "obj->ubv.boolval.rw=0\n"}));
  expect_unchanged();
}

TEST_F(AddInstanceTest, MissingTemplateUnderAnOuterOneGives2WithALock) {
  write_property("Outer/0/", property_file({"X"}, {"x"}));
  write_property("Outer/1/Table/", table_file({}));
  remember();
  EXPECT_EQ(zrcfg_addobject("Outer.1.Table.", &index_, 0), 2u);
  EXPECT_EQ(lifecycle_log().back(),
            "instance0_obj_path=Outer/1/Table/0 not exist, no 0 instance,is not dynamic!\n");
  EXPECT_EQ(zrcfg_addobject_with_index("Outer.1.Table.", 1, 0), 2u);
  expect_unchanged();
}

TEST_F(AddInstanceTest, TemplateThatIsAFileIsNone) {
  std::filesystem::remove_all("/var/Gateway/Table/0");
  write_store_file("Gateway/Table/0", "a file");
  remember();
  EXPECT_EQ(add(ZRCFG_NO_LOCK), 2u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, kNoTemplate}));
  expect_unchanged();
}

TEST_F(AddInstanceTest, TemplateWithoutPropertyFileIsLockedByNone) {
  unlink("/var/Gateway/Table/0/property.conf");
  remember();
  EXPECT_EQ(add(), 9u);
  expect_unchanged();
  EXPECT_EQ(add(ZRCFG_NO_LOCK), 0u);
  EXPECT_EQ(index_, 2u);
  expect_tree(added(2, "3"));
}

TEST_F(AddInstanceTest, EmptyDirectoryCountsAsAnInstance) {
  make_store_dir("Gateway/Table/2/");
  remember();
  EXPECT_EQ(add(), 4u);
  EXPECT_EQ(add_at(2), 4u);
  expect_unchanged();
}

TEST_F(AddInstanceTest, NamesThatAreNoNumbersDoNotCount) {
  for (const char *name : {"02", "2x", "-2", "+2", "2.", " 2"}) {
    make_store_dir(std::string(kTable) + name + "/");
  }
  remember();
  EXPECT_EQ(add(), 0u);
  EXPECT_EQ(index_, 2u);
  expect_tree(added(2, "3"));
}

TEST_F(AddInstanceTest, CounterThatIsMissingGives5AndTheInstanceIsRemovedAgain) {
  TableFields fields;
  for (const char *pnoe : {"Gateway/NoSuchNumberOfEntries", "TableNumberOfEntries", "",
                           "Gateway/TableNumberOfEntries/", "Gateway/tableNumberOfEntries"}) {
    fields.pnoe = pnoe;
    set_table(fields);
    const std::string text = pnoe;
    const size_t slash = text.rfind('/');
    const std::string name = slash == std::string::npos ? "" : text.substr(slash + 1);
    EXPECT_EQ(add(), 5u) << pnoe;
    EXPECT_EQ(index_, 2u) << "the number was stored before";
    EXPECT_EQ(lifecycle_log(),
              (Lines{kOpening, kRw, use_it(2), "obj_path=Gateway/ pnoe = " + name + "\n",
                     "setSingleParamValueByParamName() fail ret=5!\n",
                     std::string(kCounterFailed) + "5!\n"}));
    expect_unchanged();
    EXPECT_EQ(add_at(2), 5u);
    EXPECT_EQ(lifecycle_log().back(), std::string(kCounterFailed) + "5!\n");
    expect_unchanged();
  }
}

TEST_F(AddInstanceTest, ParentThatCannotBeLockedGives9AndTheInstanceIsRemovedAgain) {
  const LockHolder holder(kParentLock, Held::kShared);
  EXPECT_EQ(add(), 9u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, use_it(2), "createObjByPath() fail ret=9!\n",
                                    std::string(kCounterFailed) + "9!\n"}));
  expect_unchanged();
  EXPECT_EQ(add_at(2, 20), 9u);
  expect_unchanged();
}

TEST_F(AddInstanceTest, ParentWithoutPropertyFileGives9Or8AndTheInstanceIsRemovedAgain) {
  unlink("/var/Gateway/property.conf");
  remember();
  EXPECT_EQ(add(), 9u);
  expect_unchanged();
  EXPECT_EQ(add(ZRCFG_NO_LOCK), 8u);
  EXPECT_EQ(lifecycle_log(), (Lines{kOpening, kRw, use_it(2), "createObjByPath() fail ret=8!\n",
                                    std::string(kCounterFailed) + "8!\n"}));
  expect_unchanged();
}

TEST_F(AddInstanceTest, CounterNameFillsItsFieldWithoutTerminator) {
  const std::string name(62, 'N');
  PropertyFile parent = property_file({name}, {"7"});
  write_property("Gateway/", parent);
  TableFields fields;
  fields.pnoe = "G/" + name;  // 64 characters
  set_table(fields);
  EXPECT_EQ(add(), 0u);
  EXPECT_EQ(value_section(read_property("Gateway/")), "8\n");
  EXPECT_EQ(lifecycle_log().back(), "obj_path=Gateway/ pnoe = " + name + "\n");
  ASSERT_EQ(zrcfg_delobject(kTableUrl, 2, 0), 0u);
  expect_unchanged();
}

TEST_F(AddInstanceTest, FileInThePlaceOfAnInstanceIsNoInstanceAndStays) {
  write_store_file("Gateway/Table/2", "a file");
  remember();
  EXPECT_EQ(add(), 0u);
  EXPECT_EQ(index_, 2u);
  expect_tree(with_counter(tree_, "3"));
}

TEST_F(AddInstanceTest, TemplateThatMayNotBeReadIsNone) {
  const ModeChange table("Gateway/Table", 0777);
  {
    const ModeChange closed("Gateway/Table/0", 0311);
    const OrdinaryUser user;
    EXPECT_EQ(add(ZRCFG_NO_LOCK), 2u);
  }
  expect_unchanged();
}

TEST_F(AddInstanceTest, CounterThatMayNotBeWrittenGives7AndTheInstanceIsRemovedAgain) {
  const ModeChange table("Gateway/Table", 0777);
  const ModeChange parent("Gateway/property.conf", 0444);
  {
    const OrdinaryUser user;
    EXPECT_EQ(add(), 7u);
    EXPECT_EQ(lifecycle_log().back(), std::string(kCounterFailed) + "7!\n");
  }
  expect_unchanged();
}

TEST_F(AddInstanceTest, ParentOfMoreThan255RecordsGives10AndTheInstanceIsRemovedAgain) {
  PropertyFile parent = property_file({"TableNumberOfEntries"}, {"2"});
  for (int i = 1; i < 257; ++i) {
    parent.add("P" + std::to_string(i), "v");
  }
  write_property("Gateway/", parent);
  remember();
  EXPECT_EQ(add(), 10u);
  expect_unchanged();
}

TEST_F(AddInstanceTest, TableAtTheRootHasNoParent) {
  for (const char *dir : {"Table/", "Table/0/"}) {
    write_property(dir, table_file({}));
  }
  remember();
  EXPECT_EQ(zrcfg_addobject("Table.", &index_, 0), 9u);
  expect_unchanged();
  EXPECT_EQ(zrcfg_addobject("Table.", &index_, ZRCFG_NO_LOCK), 8u);
  expect_unchanged();
}

}  // namespace
}  // namespace zrcfg_test
