// What the tests of attributes share: request lists, the log, the fixture.
#include "tests/attr/attr_support.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>

namespace zrcfg_test {
namespace {

constexpr size_t kWordAt = sizeof(MultiAttrNode::name) + sizeof(void *);

const std::vector<std::string> &promised_beginnings() {
  static const std::vector<std::string> beginnings = {
      "Input parameters",
      "objUrl = ",
      "pObjUrl len",
      "createObjByPath() fail",
      "objIsHid()",
      "this node has no params",
      "paramIsHid()",
      "param is NULL",
      "ptr is NULL",
      "Head=",
      "Tail=",
      "getParamAttrList() fail",
      "outputToMultiParamAttrList() fail",
      "param->",
      "param=",
      "param's attr",
      "getPropertyFile() fail",
      "unable to open",
      "getLock fail",
      "fileCopy()",
      "setSingleParamAttrByParamName",
      "zrcfg_setsingleparamattr_ext return",
      "setAllParamAttr",
      "fwrite failed",
      "zrcfg_setsingleobjattr_ext()",
      "obj's attr",
      "pAttr->devfunc",
      "path=",
      "input param is null",
      "tempLen=0",
      "error,find no dot",
  };
  return beginnings;
}

bool is_promised(const std::string &text) {
  // The text without a line feed belongs to the opening.
  if (text.compare(0, 14, "property_file=") == 0) {
    return text.back() == '\n';
  }
  const std::vector<std::string> &all = promised_beginnings();
  return std::any_of(all.begin(), all.end(), [&text](const std::string &beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
  });
}

std::map<std::string, std::string> other_files() {
  std::map<std::string, std::string> files;
  for (const auto &entry : std::filesystem::recursive_directory_iterator("/var")) {
    const std::string relative = entry.path().string().substr(sizeof "/var/" - 1);
    if (relative != kFile) {
      files[relative] = entry.is_regular_file() ? read_store_file(relative) : "";
    }
  }
  return files;
}

}  // namespace

AttrRequests &AttrRequests::add(const std::string &name, const std::string &bytes) {
  add_without_buffer(name);
  Item &item = items_.back();
  item.bytes = bytes;
  item.buffer.reset(new char[bytes.size()]);
  memcpy(item.buffer.get(), bytes.data(), bytes.size());
  item.node.pAttr = item.buffer.get();
  return *this;
}

AttrRequests &AttrRequests::add_without_buffer(const std::string &name) {
  items_.emplace_back();
  Item &item = items_.back();
  memset(static_cast<void *>(&item.node), kMark, sizeof item.node);
  // Pads with zero bytes; a name of 64 characters stays without terminator.
  std::string field = name;
  field.resize(sizeof item.node.name, '\0');
  memcpy(item.node.name, field.data(), field.size());
  item.node.pAttr = nullptr;
  return *this;
}

MultiAttrNode *AttrRequests::list() {
  for (size_t i = 0; i < items_.size(); ++i) {
    items_[i].node.next = i + 1 < items_.size() ? &items_[i + 1].node : nullptr;
    items_[i].before = node_bytes(i);
  }
  return items_.empty() ? nullptr : &items_[0].node;
}

std::string AttrRequests::buffer(size_t i) const {
  const Item &item = items_.at(i);
  return item.buffer ? std::string(item.buffer.get(), item.bytes.size()) : std::string();
}

std::string AttrRequests::node_bytes(size_t i) const {
  return std::string(reinterpret_cast<const char *>(&items_.at(i).node), sizeof(MultiAttrNode));
}

bool AttrRequests::node_untouched(size_t i) const {
  return node_bytes(i) == items_.at(i).before;
}

bool AttrRequests::all_untouched() const {
  for (size_t i = 0; i < items_.size(); ++i) {
    if (!node_untouched(i) || !buffer_untouched(i)) {
      return false;
    }
  }
  return true;
}

std::string AttrRequests::word(size_t i) const {
  return node_bytes(i).substr(kWordAt, 4);
}

bool AttrRequests::rest_untouched(size_t i) const {
  std::string now = node_bytes(i);
  now.replace(kWordAt, 4, items_.at(i).before, kWordAt, 4);
  return now == items_.at(i).before;
}

std::vector<std::string> attr_log() {
  std::vector<std::string> lines = log_texts();
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [](const std::string &text) { return !is_promised(text); }),
              lines.end());
  return lines;
}

void AttrTest::store(const std::string &bytes) {
  before_ = bytes;
  write_property("Gateway/", filled_file({"A", "B"}, Fill::kRandom, 77));
  write_property("Gateway/Device/Sub/", filled_file({"A", "B"}, Fill::kRandom, 78));
  write_property(kDir, bytes);
  age_file(kFile);
  others_ = other_files();
  clear_log();
}

void AttrTest::expect_file(const std::string &bytes, const std::string &what) {
  expect_bytes(without_slots(read_property(kDir)), without_slots(bytes), what);
  EXPECT_EQ(other_files(), others_) << "another file was changed " << what;
}

void AttrTest::expect_untouched() {
  expect_bytes(read_property(kDir), before_, "");
  EXPECT_EQ(other_files(), others_);
  EXPECT_TRUE(is_aged(kFile)) << "the file was written";
}

}  // namespace zrcfg_test
