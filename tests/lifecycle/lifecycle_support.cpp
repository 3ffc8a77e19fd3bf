// What the tests of trees, instances and export share: a store with tables, its tree, the log.
#include "tests/lifecycle/lifecycle_support.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

constexpr size_t kLongestName = 60;

const Lines &promised_beginnings() {
  static const Lines beginnings = {
      "Input parameters can't be NULL",
      "objUrl = ",
      "objUrl=",
      "objUrl len=",
      "pObjUrl ",
      "pUrl = ",
      "obj_path=",
      "obj_path = ",
      "res = ",
      "ret =",
      "createObjByPath() fail",
      "dirCopy() fail",
      "dirDel() fail",
      "modifyParentNodeNumOfEntry() fail",
      "getSingleParamValueByParamName() fail",
      "setSingleParamValueByParamName() fail",
      "export",
      "after zrcfg_export",
      "obj->ubv",
      "param->ubv",
      "instance0_obj_path=",
      "dst_obj_path=",
      "exceed max number",
      "add static",
      "del static",
      "write_flag=",
      "pList's ",
  };
  return beginnings;
}

bool is_promised(const std::string &text) {
  const Lines &all = promised_beginnings();
  return text.find(" is not exist, use it.") != std::string::npos ||
         text.find(" exceed max number instance or ") != std::string::npos ||
         std::any_of(all.begin(), all.end(), [&text](const std::string &beginning) {
           return text.compare(0, beginning.size(), beginning) == 0;
         });
}

std::string entry_text(const fs::directory_entry &entry, const std::string &relative) {
  if (entry.is_symlink()) {
    return "link to " + fs::read_symlink(entry.path()).string();
  }
  if (entry.is_directory()) {
    return kDirEntry;
  }
  return entry.is_regular_file() ? file_entry(read_store_file(relative)) : "other";
}

bool is_at_or_below(const std::string &path, const std::string &dir) {
  return path.compare(0, dir.size(), dir) == 0 &&
         (path.size() == dir.size() || path[dir.size()] == '/');
}

PropertyFile gateway_file(const std::string &counter) {
  return property_file({"Name", "TableNumberOfEntries", "Empty", "FixedNumberOfEntries"},
                       {"the gateway", counter, "", "1"});
}

}  // namespace

Tree store_tree() {
  Tree tree;
  for (const auto &entry : fs::recursive_directory_iterator("/var")) {
    const std::string relative = entry.path().string().substr(sizeof "/var/" - 1);
    tree[relative] = entry_text(entry, relative);
  }
  return tree;
}

Tree tree_without_slots() {
  static const std::string kFileName = "property.conf";
  Tree tree = store_tree();
  for (auto &[path, entry] : tree) {
    const size_t length = path.size();
    if (length >= kFileName.size() && path.substr(length - kFileName.size()) == kFileName) {
      entry = file_entry(without_slots(entry.substr(file_entry("").size())));
    }
  }
  return tree;
}

std::string file_entry(const std::string &bytes) {
  return "file " + bytes;
}

Tree subtree(const Tree &tree, const std::string &dir) {
  Tree found;
  for (const auto &[path, entry] : tree) {
    if (is_at_or_below(path, dir)) {
      found[path] = entry;
    }
  }
  return found;
}

Tree without(const Tree &tree, const std::string &dir) {
  Tree left;
  for (const auto &[path, entry] : tree) {
    if (!is_at_or_below(path, dir)) {
      left[path] = entry;
    }
  }
  return left;
}

Tree with_copy(const Tree &tree, const std::string &from, const std::string &to) {
  Tree result = tree;
  for (const auto &[path, entry] : subtree(tree, from)) {
    result[to + path.substr(from.size())] = entry;
  }
  return result;
}

std::string printed(const std::function<void()> &call) {
  ::testing::internal::CaptureStdout();
  call();
  return ::testing::internal::GetCapturedStdout();
}

Lines lifecycle_log() {
  Lines lines = log_texts();
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [](const std::string &text) { return !is_promised(text); }),
              lines.end());
  return lines;
}

DescriptorLimit::DescriptorLimit(unsigned more) : before_(0) {
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
    throw std::runtime_error("no limit of descriptors");
  }
  before_ = limit.rlim_cur;
  const int highest = open_descriptors().rbegin()->first;
  for (int fd = dup(STDIN_FILENO); fd != -1; fd = dup(STDIN_FILENO)) {
    fillers_.push_back(fd);
    if (fd > highest) {
      break;
    }
  }
  limit.rlim_cur = static_cast<rlim_t>(highest) + 2 + more;
  if (setrlimit(RLIMIT_NOFILE, &limit) != 0) {
    throw std::runtime_error("cannot limit descriptors");
  }
}

DescriptorLimit::~DescriptorLimit() {
  for (const int fd : fillers_) {
    close(fd);
  }
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
    limit.rlim_cur = before_;
    if (setrlimit(RLIMIT_NOFILE, &limit) == 0) {
      return;
    }
  }
  ADD_FAILURE() << "cannot restore the limit of descriptors";
}

void make_link(const std::string &target, const std::string &relative) {
  fs::create_symlink(target, store_path(relative));
}

std::string path_of(size_t length) {
  std::string path;
  while (length - path.size() > 2 * kLongestName) {
    path += std::string(kLongestName - 1, 'p') + "/";
  }
  const size_t half = (length - path.size()) / 2;
  path += std::string(half - 1, 'q') + "/";
  return path + std::string(length - path.size() - 1, 'r') + "/";
}

std::string url_of(std::string dir) {
  std::replace(dir.begin(), dir.end(), '/', '.');
  return dir;
}

PropertyFile table_file(const TableFields &fields) {
  PropertyFile file = property_file({"Own"}, {"the table's own value"});
  file.header.rw = static_cast<uint8_t>(fields.rw);
  file.header.max_instance = static_cast<uint8_t>(fields.max_instance);
  file.header.key = static_cast<uint8_t>(fields.key);
  file.header.pnoe = fields.pnoe;
  return file;
}

void LifecycleTest::SetUp() {
  StoreTest::SetUp();
  const PropertyFile instance = property_file({"A", "B"}, {"template", ""});
  write_property("Gateway/", gateway_file("2"));
  write_property(kTable, table_file({}));
  write_property("Gateway/Table/0/", instance);
  write_property("Gateway/Table/0/Sub/", property_file({"S"}, {"of a sub-object"}));
  write_property("Gateway/Table/0/Sub/0/", table_file({}));
  make_store_dir("Gateway/Table/0/Sub/Bare/");
  write_store_file("Gateway/Table/0/blocks",
                   std::string(1024, 'x') + std::string(1500, '\0') + "e");
  write_store_file("Gateway/Table/0/nothing", "");
  write_property("Gateway/Table/1/", property_file({"A", "B"}, {"one", "1"}));
  write_property("Gateway/Table/1/Sub/", property_file({"S"}, {"of one"}));
  write_property("Gateway/Table/3/", property_file({"A", "B"}, {"three", "3"}));
  TableFields fixed;
  fixed.rw = 0;
  fixed.pnoe = "Gateway/FixedNumberOfEntries";
  write_property(kFixed, table_file(fixed));
  write_property("Gateway/Fixed/1/", property_file({"F"}, {"first"}));
  write_property("Gateway/Fixed/1/Sub/", property_file({"S"}, {"below the first"}));
  write_property("Other/", property_file({"O"}, {"aside"}));
  remember();
}

void LifecycleTest::set_table(const TableFields &fields) {
  write_property(kTable, table_file(fields));
  remember();
}

void LifecycleTest::set_fixed(const TableFields &fields) {
  write_property(kFixed, table_file(fields));
  remember();
}

void LifecycleTest::set_counter(const std::string &value) {
  write_property("Gateway/", gateway_file(value));
  remember();
}

void LifecycleTest::remember() {
  tree_ = store_tree();
  clear_log();
}

void LifecycleTest::expect_unchanged() const {
  EXPECT_EQ(store_tree(), tree_);
}

void LifecycleTest::expect_tree(const Tree &expected) const {
  EXPECT_EQ(store_tree(), expected);
}

Tree LifecycleTest::with_counter(Tree tree, const std::string &value) const {
  tree[kParentLock] = file_entry(gateway_file(value).bytes());
  return tree;
}

}  // namespace zrcfg_test
