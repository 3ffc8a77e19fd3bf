// An old store in a scratch directory, what happens to it in use, and one upgrade of it.
#include "tests/mkstore/upgrade_run.h"

#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr size_t kHeaderAt = 4;
constexpr size_t kRecordsAt = 188;
constexpr size_t kRecordSize = 124;

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

size_t position_of(const ReadFile &file, const std::string &name) {
  for (size_t i = 0; i < file.records.size(); ++i) {
    if (file.records[i].name == name) {
      return i;
    }
  }
  ADD_FAILURE() << "no parameter " << name;
  return 0;
}

}  // namespace

std::string writable(const std::string &name, const std::string &syntax) {
  return parameter(name, syntax, kWritable);
}

std::string table(const std::string &limits, const std::string &inside) {
  return object("Root.", parameter("TCount", kNumber)) +
         object("Root.T.{i}.", inside,
                "access=\"readWrite\" numEntriesParameter=\"TCount\" " + limits);
}

std::map<std::string, std::string> tree_of(const std::string &directory) {
  std::map<std::string, std::string> tree;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(directory)) {
    const std::string name = fs::relative(entry.path(), directory).string();
    tree[name] =
        fs::is_regular_file(entry.symlink_status()) ? read_bytes(entry.path().string()) : "no file";
  }
  return tree;
}

void UpgradeTest::build_old(const std::string &elements) const {
  write_model(elements);
  const RunResult result = build();
  ASSERT_EQ(result.code, 0) << result.err;
  fs::rename(path("out"), path("old"));
  for (const char *list : {"instances", "values", "attributes"}) {
    fs::remove(path(list));
  }
}

RunResult UpgradeTest::upgrade(const std::string &elements,
                               const std::vector<std::string> &options) const {
  write_model(elements);
  std::vector<std::string> arguments = {"--model", path("model.xml"), "--upgrade", path("old")};
  for (const std::string name : {"instances", "values", "attributes"}) {
    if (fs::exists(path(name))) {
      arguments.push_back("--" + name);
      arguments.push_back(path(name));
    }
  }
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.push_back(path("out"));
  const auto before = tree_of(path("old"));
  const RunResult result = run(arguments);
  EXPECT_EQ(tree_of(path("old")), before) << "the old store was changed";
  return result;
}

void UpgradeTest::expect_upgrade(const std::string &elements, const std::vector<std::string> &lines,
                                 const std::string &totals) const {
  const RunResult result = upgrade(elements);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  std::vector<std::string> seen = lines_of(result.out);
  ASSERT_GE(seen.size(), 3u) << result.out;
  EXPECT_EQ(seen.back(), "carried over: " + totals);
  seen.resize(seen.size() - 3);
  EXPECT_EQ(seen, lines);
  for (const auto &entry : fs::recursive_directory_iterator(path("out"))) {
    EXPECT_TRUE(!entry.is_directory() || read_property_file(entry.path().string()).well_formed)
        << entry.path();
  }
}

void UpgradeTest::edit_old(const std::string &object,
                           const std::function<void(std::string &)> &edit) const {
  std::string bytes = read_bytes(old_file(object));
  edit(bytes);
  write("old/" + object + "/property.conf", bytes);
}

void UpgradeTest::set_old(const std::string &object, const std::string &name,
                          const std::string &line) const {
  const ReadFile file = read_old(object);
  ASSERT_TRUE(file.well_formed) << object;
  const size_t position = position_of(file, name);
  std::string bytes = file.bytes.substr(0, kRecordsAt + kRecordSize * file.records.size());
  for (size_t i = 0; i < file.records.size(); ++i) {
    bytes += (i == position ? line : file.records[i].line) + "\n";
  }
  write("old/" + object + "/property.conf", bytes);
}

void UpgradeTest::poke_header(const std::string &object, size_t offset,
                              const std::string &bytes) const {
  edit_old(object,
           [&](std::string &file) { file.replace(kHeaderAt + offset, bytes.size(), bytes); });
}

void UpgradeTest::poke_record(const std::string &object, const std::string &name, size_t offset,
                              const std::string &bytes) const {
  const size_t position = position_of(read_old(object), name);
  edit_old(object, [&](std::string &file) {
    file.replace(kRecordsAt + kRecordSize * position + offset, bytes.size(), bytes);
  });
}

void UpgradeTest::delete_old(const std::string &object) const {
  fs::remove_all(path("old/" + object));
}

void UpgradeTest::copy_old(const std::string &from, const std::string &to) const {
  fs::copy(path("old/" + from), path("old/" + to), fs::copy_options::recursive);
}
