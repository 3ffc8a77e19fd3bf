// Upgrades of a damaged store, and what else may be wrong with the old one.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "tests/mkstore/upgrade_run.h"

namespace fs = std::filesystem;

namespace {

constexpr size_t kValuesAt = 188 + 2 * 124;

const std::string kModel =
    object("Root.",
           writable("A", "<string/><default type=\"object\" value=\"first\"/>") + writable("B")) +
    object("Root.T.{i}.", writable("P"), kWritable);

// A store of kModel with one instance and values that are not the first ones.
class DamagedStoreTest : public UpgradeTest {
 protected:
  DamagedStoreTest() {
    write("instances", "Root.T.1.\n");
    write("values", "Root.A=a\nRoot.B=b\nRoot.T.1.P=p\n");
    build_old(kModel);
  }

  void expect_damage(const std::string &reason) const {
    SCOPED_TRACE(reason);
    expect_upgrade(kModel, {"damaged object Root.: " + reason},
                   "2 objects, 1 instances, 1 values; 0 dropped, 0 refused, 1 damaged, 0 added");
    EXPECT_EQ(value("Root", "A"), "first");
    EXPECT_EQ(value("Root", "B"), "\r");
    EXPECT_EQ(value("Root/T/1", "P"), "p");
  }

  void expect_values(const std::string &a, const std::string &b) const {
    expect_upgrade(kModel, {},
                   "3 objects, 1 instances, 3 values; 0 dropped, 0 refused, 0 damaged, 0 added");
    EXPECT_EQ(value("Root", "A"), a);
    EXPECT_EQ(value("Root", "B"), b);
  }
};

TEST_F(DamagedStoreTest, FilesThatCannotBeReliedOn) {
  const std::string whole = read_bytes(old_file("Root"));
  const auto damage = [&](const std::string &bytes, const std::string &reason) {
    write("old/Root/property.conf", bytes);
    expect_damage(reason);
  };
  const std::string bad_length = "the length word is missing or out of range";
  damage("", bad_length);
  damage(whole.substr(0, 3), bad_length);
  damage(std::string("\x00\x00\x00\x10", 4) + whole.substr(4), bad_length);
  damage(std::string("\xFF\xFF\xFF\xFF", 4) + whole.substr(4), bad_length);
  damage(whole.substr(0, 4), "the file ends within header or records");
  damage(whole.substr(0, kValuesAt - 1), "the file ends within header or records");
  damage(std::string("\x00\x00\x01\xB3", 4) + whole.substr(4),
         "the length word is not that of whole records");
  damage(whole.substr(0, kValuesAt), "fewer values than records");
  damage(whole.substr(0, kValuesAt) + "a\n", "fewer values than records");
  damage(whole.substr(0, kValuesAt) + "\na\nb\n", "an empty line among the values");
  damage(whole.substr(0, kValuesAt) + "a\n\nb\n", "an empty line among the values");
  damage(whole.substr(0, kValuesAt) + std::string("a\n\0b\n", 5), "a zero byte among the values");
  damage(whole.substr(0, kValuesAt) + std::string("a\nb\0b\n", 6), "a zero byte among the values");
  std::string many = std::string("\x00\x00\x7C\xB8", 4) + whole.substr(4, 184);  // 256 records
  for (int i = 0; i < 256; ++i) {
    many += whole.substr(188, 124);
  }
  damage(many + std::string(512, '\n'), "more than 255 records");
}

TEST_F(DamagedStoreTest, FilesThatAreNone) {
  fs::remove(old_file("Root"));
  expect_damage("it has no property file");
  fs::create_directory(old_file("Root"));
  expect_damage("its property file is not a regular file");
  fs::remove(old_file("Root"));
  fs::create_symlink("/dev/zero", old_file("Root"));
  expect_damage("its property file is not a regular file");
  fs::remove(old_file("Root"));
  ASSERT_EQ(mkfifo(old_file("Root").c_str(), 0600), 0);
  expect_damage("its property file is not a regular file");
  fs::remove(old_file("Root"));
  write("old/Root/property.conf", "x");
  fs::resize_file(old_file("Root"), (uintmax_t{32} << 20) + 1);
  // The tree is not compared here, because it would be read into memory.
  write_model(kModel);
  const RunResult result =
      run({"--model", path("model.xml"), "--upgrade", path("old"), path("out")});
  EXPECT_EQ(result.out.substr(0, result.out.find('\n')),
            "damaged object Root.: the property file is too large");
}

TEST_F(DamagedStoreTest, FilesWhoseValuesAreBeyondDoubt) {
  edit_old("Root", [](std::string &bytes) { bytes += "surplus\n"; });
  expect_values("a", "b");
  edit_old("Root", [](std::string &bytes) { bytes = bytes.substr(0, kValuesAt) + "aa\nbb"; });
  expect_values("aa", "bb");
  edit_old("Root", [](std::string &bytes) { bytes = bytes.substr(0, kValuesAt) + "\rx\nb\n"; });
  expect_values("\r", "b");
}

TEST_F(DamagedStoreTest, LongValueIsRefusedAlone) {
  edit_old("Root", [](std::string &bytes) {
    bytes = bytes.substr(0, kValuesAt) + std::string(256, 'a') + "\nb\n";
  });
  expect_upgrade(kModel,
                 {"refused value Root.A: \"" + std::string(256, 'a') +
                  "\": the value has 256 characters, more than 255"},
                 "3 objects, 1 instances, 2 values; 0 dropped, 1 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "A"), "first");
  EXPECT_EQ(value("Root", "B"), "b");
}

TEST_F(DamagedStoreTest, FirstOfTwoRecordsOfOneNameCounts) {
  poke_record("Root", "B", 8, "A");
  expect_upgrade(kModel, {"dropped parameter Root.A: \"b\": a second parameter of this name"},
                 "3 objects, 1 instances, 2 values; 1 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "A"), "a");
  EXPECT_EQ(value("Root", "B"), "\r");
}

TEST_F(DamagedStoreTest, NamesOfAnyBytes) {
  poke_record("Root", "A", 8, std::string("\x1B[1m\"\\", 6));
  poke_record("Root", "B", 8, std::string(64, 'b'));
  expect_upgrade(kModel,
                 {"dropped parameter Root.\\x1B[1m\\\"\\\\: \"a\": not in the model",
                  "dropped parameter Root." + std::string(64, 'b') + ": \"b\": not in the model"},
                 "3 objects, 1 instances, 1 values; 2 dropped, 0 refused, 0 damaged, 0 added");
}

TEST_F(DamagedStoreTest, DirectoriesThatAreNoInstances) {
  for (const char *name : {"01", "256", "99999999999999999999", "x", "2 ", ".hidden", "a\tb"}) {
    copy_old("Root/T/1", std::string("Root/T/") + name);
  }
  fs::create_directory(path("old/Root/T/3"));
  fs::create_symlink("1", path("old/Root/T/4"));
  write("old/Root/T/5", "a file");
  const std::string limit = ": above max_instance, which is 255";
  expect_upgrade(kModel,
                 {"dropped instance Root.T.01.: not an instance number",
                  "dropped instance Root.T.256." + limit,
                  "dropped instance Root.T.99999999999999999999." + limit,
                  "dropped object Root.T.2 .: not in the model",
                  "dropped object Root.T.a\\x09b.: not in the model",
                  "dropped object Root.T.x.: not in the model",
                  "damaged object Root.T.3.: it has no property file"},
                 "3 objects, 1 instances, 3 values; 6 dropped, 0 refused, 1 damaged, 0 added");
  EXPECT_EQ(value("Root/T/3", "P"), "\r");
  EXPECT_FALSE(fs::exists(path("out/Root/T/4")));
  EXPECT_FALSE(fs::exists(path("out/Root/T/5")));
}

TEST_F(DamagedStoreTest, NumbersBelowSingleObjectsAndInstances) {
  copy_old("Root/T/1", "Root/5");
  copy_old("Root/5", "Root/T/1/0");
  copy_old("Root/5", "Root/T/1/2");
  expect_upgrade(kModel,
                 {"dropped instance Root.5.: not a table in the model",
                  "dropped instance Root.T.1.2.: not a table in the model"},
                 "3 objects, 1 instances, 3 values; 2 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "A") + value("Root", "B") + value("Root/T/1", "P"), "abp");
}

// Whatever bytes the old files have, the new store is well formed and the old one untouched.
TEST_F(DamagedStoreTest, RandomBytes) {
  const std::string whole = read_bytes(old_file("Root"));
  std::mt19937 random(1);
  for (int turn = 0; turn < 150; ++turn) {
    std::string bytes = whole;
    for (unsigned i = random() % 4; i > 0; --i) {
      const size_t at = random() % 3 == 0 ? random() % 4 : random() % bytes.size();
      bytes[at] = static_cast<char>(random() % 3 == 0 ? 0 : random() % 256);
    }
    bytes.resize(random() % 2 == 0 ? bytes.size() : random() % (bytes.size() + 1));
    write("old/Root/property.conf", bytes);
    const RunResult result = upgrade(kModel);
    ASSERT_EQ(result.code, 0) << result.err;
    const ReadFile file = read("Root");
    ASSERT_TRUE(file.well_formed) << turn;
    ASSERT_EQ(file.records.size(), 2u);
    ASSERT_EQ(value("Root/T/1", "P"), "p");
  }
}

TEST_F(DamagedStoreTest, StrictWritesNothingThatIsNotWhole) {
  const RunResult kept = upgrade(kModel, {"--strict"});
  EXPECT_EQ(kept.code, 0) << kept.err;
  const auto tree = tree_of(path("out"));
  fs::remove(old_file("Root"));
  const RunResult lost = upgrade(kModel, {"--strict"});
  EXPECT_EQ(lost.code, 1);
  EXPECT_EQ(lost.out.substr(0, lost.out.find('\n')),
            "damaged object Root.: it has no property file");
  EXPECT_EQ(lost.err, "zrcfg-mkstore: " + path("out") + ": not written, because 1 things of " +
                          path("old") + " are lost\n");
  EXPECT_EQ(tree_of(path("out")), tree);
  EXPECT_EQ(leftovers(), std::vector<std::string>({"old", "out"}));
}

TEST_F(DamagedStoreTest, StrictNeedsAnUpgrade) {
  EXPECT_EQ(run({"--model", path("model.xml"), "--strict", path("out")}).code, 2);
}

TEST_F(DamagedStoreTest, StoresMustBeApart) {
  fs::create_symlink("old", path("link"));
  fs::create_directories(path("around/inner"));
  fs::copy(path("old/Root"), path("around/inner/Root"), fs::copy_options::recursive);
  const auto before = tree_of(path("old"));
  const auto refused = [&](const std::string &old, const std::string &out) {
    const RunResult result = run({"--model", path("model.xml"), "--upgrade", path(old), path(out)});
    EXPECT_EQ(result.code, 1) << old << " " << out;
    EXPECT_EQ(result.err, "zrcfg-mkstore: " + path(out) +
                              ": the new store and the old one cannot be in one directory\n");
  };
  refused("old", "old");
  refused("old", "old/");
  refused("old/", "old/../old");
  refused("link", "old");
  refused("old", "link");
  refused("old", "old/new");
  refused("old", "old/Root/T");
  refused("around/inner", "around");
  EXPECT_EQ(tree_of(path("old")), before);
}

TEST_F(DamagedStoreTest, StoreMustBeOne) {
  const auto refused = [&](const std::string &old, const std::string &reason) {
    const RunResult result =
        run({"--model", path("model.xml"), "--upgrade", path(old), path("out")});
    EXPECT_EQ(result.code, 1) << old;
    EXPECT_EQ(result.err, "zrcfg-mkstore: " + path(old) + ": " + reason + "\n");
  };
  refused("none", "cannot be examined: No such file or directory");
  refused("model.xml", "cannot be read: Not a directory");
  fs::create_directories(path("empty/log"));
  refused("empty", "is not a store, for no directory in it has a property file");
  fs::create_directories(path("other/Device"));
  fs::copy_file(path("old/Root/property.conf"), path("other/Device/property.conf"));
  refused("other", "is a store of another model, for none of its roots is in the new one");
  EXPECT_FALSE(fs::exists(path("out")));
}

}  // namespace
