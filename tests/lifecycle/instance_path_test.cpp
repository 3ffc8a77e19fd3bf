// Instances whose paths reach the limits: whole, or refused without a trace.
#include <climits>
#include <filesystem>

#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr size_t kLongestUrl = 255;
constexpr size_t kLongestCreated = 250;  // 255 with the root in front.
constexpr size_t kLongestBuilt = 255;    // What a buffer of 256 bytes holds.
const std::string kFileName = "property.conf";

// A table at a directory of a given length, its parent with a counter of 1 and its instance 1.
class InstancePathTest : public StoreTest {
 protected:
  void make_table(size_t length, unsigned rw) {
    StoreTest::SetUp();
    table_ = path_of(length);
    url_ = url_of(table_);
    parent_ = table_.substr(0, table_.rfind('/', table_.size() - 2) + 1);
    TableFields fields;
    fields.rw = rw;
    fields.max_instance = 255;
    fields.pnoe = "/Count";
    write_property(parent_, property_file({"Count"}, {"1"}));
    write_property(table_, table_file(fields));
    write_property(table_ + "0/", property_file({"V"}, {"template"}));
    write_property(table_ + "1/", property_file({"V"}, {"one"}));
    remember();
  }
  void remember() {
    tree_ = store_tree();
    clear_log();
  }
  Tree with_count(Tree tree, const std::string &count) const {
    tree[parent_ + kFileName] = file_entry(property_file({"Count"}, {count}).bytes());
    return tree;
  }
  Tree copied(int to) const { return with_copy(tree_, table_ + "0", table_ + std::to_string(to)); }

  std::string table_;
  std::string url_;
  std::string parent_;
  Tree tree_;
};

size_t digits_of(int number) {
  return std::to_string(number).size();
}

TEST_F(InstancePathTest, CreationGives17WhereTheFilesDoNotFitAndNothingRemains) {
  for (const int index : {2, 10, 255}) {
    for (size_t length = 225; length <= kLongestUrl; length += length < 240 ? 1 : 5) {
      make_table(length, 1);
      const size_t longest = length + digits_of(index) + 1 + kFileName.size();
      const bool fits = longest <= kLongestCreated;
      EXPECT_EQ(zrcfg_addobject_with_index(url_.c_str(), index, 0), fits ? 0u : 17u) << length;
      EXPECT_EQ(store_tree(), fits ? with_count(copied(index), "2") : tree_) << length;
      EXPECT_EQ(log_count("dirCopy() fail!\n"), fits ? 0u : 1u);
    }
  }
}

TEST_F(InstancePathTest, ChosenNumberIsStoredAlsoWhereTheFilesDoNotFit) {
  make_table(236, 1);
  uint32_t index = 77;
  EXPECT_EQ(zrcfg_addobject(url_.c_str(), &index, 0), 17u);
  EXPECT_EQ(index, 2u);
  EXPECT_EQ(store_tree(), tree_);
  make_table(235, 1);
  EXPECT_EQ(zrcfg_addobject(url_.c_str(), &index, 0), 0u);
  EXPECT_EQ(store_tree(), with_count(copied(2), "2"));
}

// One digit more makes the difference for the same table.
TEST_F(InstancePathTest, LongerNumberMayNotFitWhereAShorterDoes) {
  make_table(235, 1);
  EXPECT_EQ(zrcfg_addobject_with_index(url_.c_str(), 10, 0), 17u);
  EXPECT_EQ(store_tree(), tree_);
  EXPECT_EQ(zrcfg_addobject_with_index(url_.c_str(), 9, 0), 0u);
}

TEST_F(InstancePathTest, DeepPartOfTheTemplateThatDoesNotFitRefusesTheWholeCopy) {
  make_table(200, 1);
  const std::string deep = table_ + "0/Sub/";
  const size_t room = kLongestCreated - deep.size() - 1;
  for (const size_t width : {room, room + 1, room + 2}) {
    make_table(200, 1);
    write_property(deep, "x");
    // The number 2 is as long as the template's 0, so the copy's paths are as long as these.
    write_store_file(deep + std::string(width + 1, 'f'), "x");
    remember();
    const bool fits = width == room;
    EXPECT_EQ(zrcfg_addobject_with_index(url_.c_str(), 2, 0), fits ? 0u : 17u) << width;
    EXPECT_EQ(store_tree(), fits ? with_count(copied(2), "2") : tree_) << width;
  }
}

TEST_F(InstancePathTest, DirectoryOfTheTemplateThatCannotBeReachedRefusesTheWholeCopy) {
  make_table(200, 1);
  std::string dir = table_ + "0/";
  for (int i = 0; i < 3; ++i) {
    dir += std::string(60, 'd') + "/";
  }
  make_store_dir(dir);
  remember();
  EXPECT_EQ(zrcfg_addobject_with_index(url_.c_str(), 2, 0), 17u);
  EXPECT_EQ(store_tree(), tree_);
}

TEST_F(InstancePathTest, ExportedCreationObeysTheSameLimit) {
  for (const size_t length : {234u, 235u, 236u, 250u, 254u, 255u}) {
    make_table(length, 1);
    const bool fits = length <= 235;
    uint8_t flag = 0x5a;
    EXPECT_EQ(zrcfg_exportaddobject((url_ + "2.").c_str(), 0, 0, &flag), fits ? 0u : 17u) << length;
    EXPECT_EQ(flag, fits ? 1 : 0x5a);
    EXPECT_EQ(store_tree(), fits ? with_count(copied(2), "2") : tree_) << length;
  }
}

TEST_F(InstancePathTest, EveryInstanceOfATableCanBeDeleted) {
  for (const int index : {1, 12, 255}) {
    for (const size_t length : {235u, 241u, 242u, 250u, 253u, 254u, 255u}) {
      make_table(length, 1);
      const std::string dir = table_ + std::to_string(index);
      write_property(dir + "/", property_file({"V"}, {"one"}));
      remember();
      EXPECT_EQ(zrcfg_delobject(url_.c_str(), index, 0), 0u) << length;
      EXPECT_EQ(store_tree(), with_count(without(tree_, dir), "0")) << length;
    }
  }
}

TEST_F(InstancePathTest, EveryInstanceOfATableCanBeDeletedByExport) {
  for (const size_t length : {235u, 250u, 255u}) {
    make_table(length, 1);
    uint8_t flag = 0x5a;
    EXPECT_EQ(zrcfg_exportdelobject((url_ + "1").c_str(), 0, 0, &flag), 0u) << length;
    EXPECT_EQ(flag, 1);
    EXPECT_EQ(store_tree(), with_count(without(tree_, table_ + "1"), "0")) << length;
  }
}

TEST_F(InstancePathTest, TableUrlOf256CharactersGives1ByExport) {
  const std::string url = url_of(path_of(256));
  uint8_t flag = 0x5a;
  for (const char *number : {"1", "1.", "123456"}) {
    clear_log();
    EXPECT_EQ(zrcfg_exportaddobject((url + number).c_str(), 0, 0, &flag), 1u);
    EXPECT_EQ(lifecycle_log().back(), "objUrl len=256 out of range!\n");
    EXPECT_EQ(zrcfg_exportdelobject((url + number).c_str(), 0, 0, &flag), 1u);
    EXPECT_EQ(lifecycle_log().back(), "objUrl len=256 out of range!\n");
  }
  EXPECT_EQ(flag, 0x5a);
  EXPECT_EQ(store_tree(), Tree());
}

TEST_F(InstancePathTest, StaticCreationGives4WhereThePathDoesNotFitAnd17WhereTheFilesDoNot) {
  for (const int index : {2, 12, 123, INT_MAX}) {
    for (size_t length = 225; length <= 254; ++length) {
      make_table(length, 0);
      const size_t path = length + digits_of(index);
      const bool fits = path + 1 + kFileName.size() <= kLongestCreated;
      const uint32_t expected = path > kLongestBuilt ? 4 : fits ? 0 : 17;
      EXPECT_EQ(zrcfg_addobject_static(url_.c_str(), index, 0, 0), expected) << length;
      EXPECT_EQ(store_tree(), fits ? copied(index) : tree_) << length;
    }
  }
}

// Neither the source nor the new instance fits a buffer then.
TEST_F(InstancePathTest, StaticCreationUnderTheLongestUrlIsRefused) {
  make_table(255, 0);
  const uint32_t result = zrcfg_addobject_static(url_.c_str(), 2, 0, 0);
  EXPECT_TRUE(result == 4 || result == 2) << result;
  EXPECT_EQ(store_tree(), tree_);
}

TEST_F(InstancePathTest, StaticCreationWithASourceThatDoesNotFitIsRefused) {
  make_table(254, 0);
  write_property(table_ + "12/", "x");
  remember();
  const uint32_t result = zrcfg_addobject_static(url_.c_str(), 2, 12, 0);
  EXPECT_TRUE(result == 2 || result == 4 || result == 17) << result;
  EXPECT_EQ(store_tree(), tree_);
}

TEST_F(InstancePathTest, StaticDeletionGives1WhereThePathDoesNotFit) {
  for (const int index : {1, 12, 123}) {
    for (const size_t length : {235u, 251u, 252u, 253u, 254u, 255u}) {
      make_table(length, 0);
      const std::string dir = table_ + std::to_string(index);
      write_property(dir + "/", property_file({"V"}, {"one"}));
      remember();
      const bool fits = dir.size() <= kLongestBuilt;
      EXPECT_EQ(zrcfg_delobject_static(url_.c_str(), index, 0), fits ? 0u : 1u) << length;
      EXPECT_EQ(store_tree(), fits ? without(tree_, dir) : tree_) << length;
    }
  }
}

// A cut number would be that of another instance.
TEST_F(InstancePathTest, StaticCallsNeverWorkUnderACutNumber) {
  make_table(254, 0);
  write_property(table_ + "9/", "x");
  remember();
  EXPECT_EQ(zrcfg_delobject_static(url_.c_str(), 95, 0), 1u);
  EXPECT_EQ(zrcfg_addobject_static(url_.c_str(), 85, 1, 0), 4u);
  EXPECT_EQ(store_tree(), tree_);
}

TEST_F(InstancePathTest, LoopOfLinksInTheTemplateRefusesTheCopy) {
  make_table(100, 1);
  make_link(".", table_ + "0/a_link_to_the_template_itself");
  remember();
  const uint32_t result = zrcfg_addobject_with_index(url_.c_str(), 2, 0);
  EXPECT_EQ(result, 17u);
  EXPECT_EQ(store_tree(), tree_);
}

}  // namespace
}  // namespace zrcfg_test
