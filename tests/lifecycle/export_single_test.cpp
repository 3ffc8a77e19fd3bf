// The export of one value: selection by key, flag, texts, no lock.
#include <unistd.h>

#include <climits>

#include "lifecycle/export_values.h"
#include "support/lock_holder.h"
#include "tests/core/core_support.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr uint32_t kMinusOne = 0xFFFFFFFFu;
constexpr uint8_t kMark = 0x5a;

// Which keys a mode selects, as the table of modes has it.
bool selects(int mode, unsigned key) {
  switch (mode) {
    case 1:
      return (key & 1) != 0;
    case 2:
      return (key & 2) != 0;
    case 3:
      return (key & 4) != 0;
    default:
      return true;
  }
}

std::string flag_line(bool flag) {
  return std::string("write_flag=") + (flag ? "1" : "0") + "!\n";
}

class ExportSingleTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    for (unsigned key = 0; key < 16; ++key) {
      file_.add("Key" + std::to_string(key), "old" + std::to_string(key)).key =
          static_cast<uint8_t>(key);
    }
    write_property("Parent/", property_file({"Key15"}, {"aside"}));
    write_property(dir_, file_);
    remember();
  }
  void remember() {
    age_file(dir_ + "property.conf");
    tree_ = store_tree();
    clear_log();
  }
  uint32_t set(const char *name, const char *value, int mode) {
    return set_at("Parent.Object.", name, value, mode);
  }
  uint32_t set_at(const char *url, const char *name, const char *value, int mode) {
    clear_log();
    flag_ = kMark;
    return zrcfg_exportsingleparamval(url, name, value, mode, &flag_);
  }
  void expect_untouched() {
    EXPECT_EQ(store_tree(), tree_);
    EXPECT_TRUE(is_aged(dir_ + "property.conf")) << "the file was written";
  }
  Tree with_value(size_t i, const std::string &value) {
    PropertyFile changed = file_;
    changed.params.at(i).value = value;
    Tree tree = tree_;
    tree[dir_ + "property.conf"] = file_entry(changed.bytes());
    return tree;
  }

  const std::string dir_ = "Parent/Object/";
  PropertyFile file_;
  Tree tree_;
  uint8_t flag_ = kMark;
};

TEST_F(ExportSingleTest, ModeSelectsByTheBitOfTheKey) {
  for (const int mode : {1, 2, 3, 0, 4, 7, -1, 15, INT_MAX, INT_MIN}) {
    for (unsigned key = 0; key < 16; ++key) {
      write_property(dir_, file_);
      remember();
      const std::string name = "Key" + std::to_string(key);
      EXPECT_EQ(set(name.c_str(), "new", mode), 0u);
      const bool selected = selects(mode, key);
      EXPECT_EQ(flag_, selected ? 1 : 0) << mode << " " << key;
      Lines lines;
      if (mode == 1) {
        lines.push_back("param->ubv.boolval.key=" + std::to_string(key) + "\n");
      }
      lines.push_back(flag_line(selected));
      EXPECT_EQ(lifecycle_log(), lines);
      if (selected) {
        EXPECT_EQ(store_tree(), with_value(key, "new"));
      } else {
        expect_untouched();
      }
    }
  }
}

TEST_F(ExportSingleTest, UnknownParameterIsSkippedSilently) {
  for (const char *name : {"None", "", "key1", "Key1 ", "Key"}) {
    EXPECT_EQ(set(name, "new", 0), 0u) << name;
    EXPECT_EQ(flag_, 0);
    EXPECT_EQ(lifecycle_log(), Lines());
  }
  expect_untouched();
}

TEST_F(ExportSingleTest, EqualValueIsReportedAsWrittenThoughTheFileIsNot) {
  EXPECT_EQ(set("Key5", "old5", 0), 0u);
  EXPECT_EQ(flag_, 1);
  expect_untouched();
}

TEST_F(ExportSingleTest, EmptyValueIsStored) {
  EXPECT_EQ(set("Key5", "", 3), 0u);
  EXPECT_EQ(flag_, 1);
  EXPECT_EQ(store_tree(), with_value(5, ""));
}

TEST_F(ExportSingleTest, NullUrlGives10) {
  EXPECT_EQ(set_at(nullptr, "Key1", "new", 0), 10u);
  EXPECT_EQ(log_texts(), Lines{"Input parameters can't be NULL!\n"});
  EXPECT_EQ(flag_, kMark);
  EXPECT_EQ(set_at(nullptr, nullptr, nullptr, 0), 10u);
  expect_untouched();
}

TEST_F(ExportSingleTest, NullNameOrValueGivesMinusOne) {
  const Lines lines = {"Input parameters can't be NULL\n", "export_SetParamVal return =10!\n"};
  EXPECT_EQ(set(nullptr, "new", 0), kMinusOne);
  EXPECT_EQ(lifecycle_log(), lines);
  EXPECT_EQ(set("Key1", nullptr, 0), kMinusOne);
  EXPECT_EQ(lifecycle_log(), lines);
  EXPECT_EQ(flag_, kMark);
  expect_untouched();
}

TEST_F(ExportSingleTest, FlagMayBeNull) {
  EXPECT_EQ(zrcfg_exportsingleparamval("Parent.Object.", "Key5", "new", 3, nullptr), 0u);
  EXPECT_EQ(store_tree(), with_value(5, "new"));
  EXPECT_EQ(zrcfg_exportsingleparamval("Parent.Object.", "Key1", "new", 3, nullptr), 0u);
  EXPECT_EQ(zrcfg_exportsingleparamval("Parent.Object.", "None", "new", 3, nullptr), 0u);
  EXPECT_EQ(store_tree(), with_value(5, "new"));
}

TEST_F(ExportSingleTest, UrlOf256CharactersGives1AndOf255IsServed) {
  for (const size_t length : {256u, 1000u}) {
    const std::string url = url_of(path_of(length));
    EXPECT_EQ(set_at(url.c_str(), "Key1", "new", 0), 1u);
    EXPECT_EQ(lifecycle_log(), Lines{"pObjUrl len=" + std::to_string(length) + " out of range!\n"});
    EXPECT_EQ(set_at(url.c_str(), nullptr, "new", 0), 1u) << "the URL comes first";
  }
  EXPECT_EQ(flag_, kMark);
  expect_untouched();
  const std::string dir = path_of(255);
  write_property(dir, file_);
  EXPECT_EQ(set_at(url_of(dir).c_str(), "Key15", "new", 1), 0u);
  EXPECT_EQ(flag_, 1);
}

TEST_F(ExportSingleTest, MissingObjectGives8) {
  for (const char *url : {"None.", "Parent.Object", "Parent.None."}) {
    EXPECT_EQ(set_at(url, "Key1", "new", 0), 8u) << url;
    EXPECT_EQ(lifecycle_log(), Lines{"createObjByPath() fail ret=8!\n"});
  }
  EXPECT_EQ(flag_, kMark);
  expect_untouched();
}

TEST_F(ExportSingleTest, MalformedObjectGives10) {
  write_property(dir_, std::string(4, '\0'));
  EXPECT_EQ(set("Key1", "new", 0), 10u);
  EXPECT_EQ(lifecycle_log(), Lines{"createObjByPath() fail ret=10!\n"});
  EXPECT_EQ(flag_, kMark);
}

TEST_F(ExportSingleTest, NoLockIsTakenOrWaitedFor) {
  const LockHolder holder("Parent/Object/property.conf", Held::kExclusive);
  EXPECT_EQ(set("Key5", "new", 0), 0u);
  EXPECT_EQ(flag_, 1);
  EXPECT_TRUE(log_contains("no need to be locked.\n"));
  EXPECT_EQ(store_tree(), with_value(5, "new"));
}

TEST_F(ExportSingleTest, LineFeedGivesMinusOneWhateverItsParameter) {
  for (const char *value : {"\n", "a\nb", "new\n", "\r\n"}) {
    for (const char *name : {"Key5", "Key0", "None"}) {
      EXPECT_EQ(set(name, value, 1), kMinusOne) << name;
      EXPECT_EQ(flag_, kMark);
    }
    EXPECT_EQ(set_at("None.", "Key5", value, 1), kMinusOne) << "it comes before the object";
  }
  EXPECT_EQ(set_at(url_of(path_of(256)).c_str(), "Key5", "\n", 1), 1u);
  EXPECT_EQ(set_at(nullptr, "Key5", "\n", 1), 10u);
  expect_untouched();
}

TEST_F(ExportSingleTest, ValueOf255CharactersIsStoredAndALongerOneGivesMinusOne) {
  const std::string longest(255, 'v');
  EXPECT_EQ(set("Key5", longest.c_str(), 0), 0u);
  EXPECT_EQ(store_tree(), with_value(5, longest));
  write_property(dir_, file_);
  remember();
  for (const size_t length : {256u, 257u, 100000u}) {
    EXPECT_EQ(set("Key5", std::string(length, 'v').c_str(), 0), kMinusOne) << length;
    EXPECT_EQ(flag_, kMark);
    EXPECT_EQ(lifecycle_log().back().compare(0, 27, "export_SetParamVal return ="), 0);
    EXPECT_EQ(set("Key0", std::string(length, 'v').c_str(), 1), 0u) << "held back";
    EXPECT_EQ(flag_, 0);
  }
  expect_untouched();
}

TEST_F(ExportSingleTest, FailingWriteGivesMinusOneAndNamesItsCode) {
  PropertyFile file = file_;
  file.values = "";
  write_property(dir_, file);
  remember();
  EXPECT_EQ(set("Key5", "new", 0), kMinusOne);
  EXPECT_EQ(lifecycle_log(),
            (Lines{flag_line(true), "setSingleParamValueByParamName() fail ret=10!\n",
                   "export_SetParamVal return =10!\n"}));
  EXPECT_EQ(flag_, kMark);
  EXPECT_EQ(set("Key0", "new", 1), 0u);
  EXPECT_EQ(flag_, 0);
  expect_untouched();
}

TEST_F(ExportSingleTest, FileThatMayOnlyBeReadGivesMinusOne) {
  const ModeChange readable("Parent/Object/property.conf", 0444);
  {
    const OrdinaryUser user;
    EXPECT_EQ(set("Key5", "new", 0), kMinusOne);
    EXPECT_EQ(lifecycle_log().back(), "export_SetParamVal return =7!\n");
    EXPECT_EQ(flag_, kMark);
    EXPECT_EQ(set("Key0", "new", 1), 0u);
    EXPECT_EQ(set("Key5", "old5", 0), 0u) << "nothing to write";
  }
  expect_untouched();
}

TEST_F(ExportSingleTest, FilesOfMoreThan255RecordsServeTheLowByteOfTheirNumber) {
  PropertyFile file;
  for (int i = 0; i < 256; ++i) {
    file.add("P" + std::to_string(i), "v");
  }
  write_property(dir_, file);
  remember();
  EXPECT_EQ(set("P0", "new", 0), 0u) << "no parameter is served";
  EXPECT_EQ(flag_, 0);
  file.add("P256", "v");
  write_property(dir_, file);
  remember();
  EXPECT_EQ(set("P0", "new", 0), kMinusOne) << "the other values would be lost";
  EXPECT_EQ(flag_, kMark);
  EXPECT_EQ(set("P1", "new", 0), 0u) << "not among the served";
  EXPECT_EQ(flag_, 0);
  expect_untouched();
}

class ExportSetParamValTest : public ExportSingleTest {};

TEST_F(ExportSetParamValTest, NullsGive10) {
  const OpenedImage image(dir_);
  EXPECT_EQ(export_SetParamVal(nullptr, "Key5", "new", 0, &flag_), 10u);
  EXPECT_EQ(export_SetParamVal(image.get(), nullptr, "new", 0, &flag_), 10u);
  EXPECT_EQ(export_SetParamVal(image.get(), "Key5", nullptr, 0, &flag_), 10u);
  EXPECT_EQ(log_texts(), Lines(3, "Input parameters can't be NULL\n"));
  EXPECT_EQ(flag_, kMark);
  expect_untouched();
}

TEST_F(ExportSetParamValTest, WritesWhatTheModeSelects) {
  const OpenedImage image(dir_);
  EXPECT_EQ(export_SetParamVal(image.get(), "Key4", "new", 2, &flag_), 0u);
  EXPECT_EQ(flag_, 0);
  EXPECT_EQ(lifecycle_log(), Lines{flag_line(false)});
  expect_untouched();
  EXPECT_EQ(export_SetParamVal(image.get(), "Key4", "new", 3, &flag_), 0u);
  EXPECT_EQ(flag_, 1);
  EXPECT_EQ(store_tree(), with_value(4, "new"));
  EXPECT_EQ(export_SetParamVal(image.get(), "None", "new", 3, &flag_), 0u);
  EXPECT_EQ(flag_, 0);
  EXPECT_EQ(export_SetParamVal(image.get(), "Key4", "again", 3, nullptr), 0u);
  EXPECT_EQ(store_tree(), with_value(4, "again"));
}

TEST_F(ExportSetParamValTest, FailedWriteKeepsItsCodeAndTheFlag) {
  const OpenedImage image(dir_);
  EXPECT_EQ(export_SetParamVal(image.get(), "Key5", "a\nb", 0, &flag_), 7u);
  EXPECT_EQ(export_SetParamVal(image.get(), "Key5", std::string(256, 'v').c_str(), 0, &flag_), 15u);
  EXPECT_EQ(flag_, kMark);
  expect_untouched();
  make_unopenable("Parent/Object/property.conf");
  EXPECT_EQ(export_SetParamVal(image.get(), "Key5", "new", 0, &flag_), 7u);
  EXPECT_EQ(lifecycle_log().back(), "setSingleParamValueByParamName() fail ret=7!\n");
  EXPECT_EQ(flag_, kMark);
}

}  // namespace
}  // namespace zrcfg_test
