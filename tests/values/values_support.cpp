// What the tests of bulk values share: request lists with marked outputs, value tables, the log.
#include "tests/values/values_support.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "values/value_table.h"

namespace zrcfg_test {
namespace {

constexpr size_t kSlot = 256;

const std::vector<std::string> &promised_beginnings() {
  static const std::vector<std::string> beginnings = {
      "Input parameters can't be NULL",
      "Input value length",
      "pObjUrl ",
      "objUrl = ",
      "createObjByPath() fail",
      "constructParamValues() fail",
      "getParamValues() fail",
      "getParamValueList() fail",
      "modiMultiParamValues() fail",
      "modi_multi_param_values_ext() fail",
      "modi_multi_param_values_check() fail",
      "setParamValuesToMem() fail",
      "set_single_param_value_by_param_name() fail",
      "unable to open",
      "pBuf is NULL",
      "pValue is ",
      "pWriteBuf malloc failed",
      "ptr is NULL",
      "i=",
      "param=",
      "param->name",
      "param name = ",
      "param(",
      "pList",
      "value is changed",
      "value NULL",
      "all error params",
      "Same value",
      "objIsHid()",
      "paramIsHid()",
      "this node has no params",
      "Head=",
      "Tail=",
      "no need check param",
      "malloc pattern",
      "get filter",
      "regcomp error",
      "regexec error",
      "Find the param!",
      "read finish",
      "zrfile_uci_get_config",
  };
  return beginnings;
}

bool is_promised(const std::string &text) {
  const std::vector<std::string> &all = promised_beginnings();
  return text.find(" matches ") != std::string::npos ||
         std::any_of(all.begin(), all.end(), [&text](const std::string &beginning) {
           return text.compare(0, beginning.size(), beginning) == 0;
         });
}

}  // namespace

Requests::Item &Requests::add(const std::string &name) {
  items_.emplace_back();
  Item &item = items_.back();
  memset(static_cast<void *>(&item.node), kMark, sizeof item.node);
  item.name = name;
  // Pads with zero bytes; a name of 64 characters stays without terminator.
  std::string field = name;
  field.resize(sizeof item.node.name, '\0');
  memcpy(item.node.name, field.data(), field.size());
  item.fault = kNoFault;
  item.node.fault = &item.fault;
  return item;
}

Requests &Requests::get(const std::string &name) {
  Item &item = add(name);
  item.reads = true;
  item.node.value = item.buffer.data();
  return *this;
}

Requests &Requests::set(const std::string &name, const std::string &value) {
  Item &item = add(name);
  item.reads = false;
  item.value = value;
  item.node.value = item.value.data();
  return *this;
}

Requests &Requests::filled(const std::string &name, const std::string &old_value, uint32_t changed,
                           uint32_t fault) {
  set(name, "new");
  Item &item = items_.back();
  // Behind the text the field stays marked, as far as 256 characters leave room for a terminator.
  memcpy(item.node.old_value, old_value.c_str(), std::min(old_value.size() + 1, kSlot));
  item.node.changed = changed;
  item.fault = fault;
  return *this;
}

ParamValueEntry *Requests::list() {
  for (size_t i = 0; i < items_.size(); ++i) {
    items_[i].node.next = i + 1 < items_.size() ? &items_[i + 1].node : nullptr;
  }
  return items_.empty() ? nullptr : &items_[0].node;
}

std::string Requests::got(size_t i) const {
  const GuardedBuffer &buffer = items_.at(i).buffer;
  return buffer.untouched() ? "untouched" : buffer.text();
}

std::string Requests::old_value(size_t i) const {
  const char *const text = items_.at(i).node.old_value;
  return std::string(text, strnlen(text, kSlot));
}

std::string Requests::attribute_bytes(size_t i) const {
  const char *const node = reinterpret_cast<const char *>(&items_.at(i).node);
  return std::string(node + offsetof(ParamValueEntry, inform_dbus) - 1, 4);
}

bool Requests::outputs_untouched(size_t i) const {
  const ParamValueEntry &node = items_.at(i).node;
  uint32_t marked = 0;
  memset(&marked, kMark, sizeof marked);
  return std::string(node.old_value, kSlot) == std::string(kSlot, kMark) &&
         node.changed == marked && attribute_bytes(i) == std::string(4, kMark);
}

bool Requests::all_outputs_untouched() const {
  for (size_t i = 0; i < items_.size(); ++i) {
    if (!outputs_untouched(i)) {
      return false;
    }
  }
  return true;
}

bool Requests::inputs_kept() const {
  return std::all_of(items_.begin(), items_.end(), [](const Item &item) {
    std::string field = item.name;
    field.resize(sizeof item.node.name, '\0');
    const bool value_kept =
        item.reads ? item.node.value != nullptr
                   : item.node.value == item.value.data() && item.value == item.node.value;
    return std::string(item.node.name, sizeof item.node.name) == field && value_kept &&
           item.node.fault == &item.fault;
  });
}

ValueTable::ValueTable(const OpenedImage &image) {
  if (constructParamValues(image.get(), &table_) != 0 || table_ == nullptr) {
    throw std::runtime_error("no value table");
  }
  clear_log();
}

ValueTable::~ValueTable() {
  free(table_);
}

std::string ValueTable::slot(size_t i) const {
  const char *const text = table_ + i * kSlot;
  return std::string(text, strnlen(text, kSlot));
}

std::vector<std::string> ValueTable::slots(size_t count) const {
  std::vector<std::string> texts;
  for (size_t i = 0; i < count; ++i) {
    texts.push_back(slot(i));
  }
  return texts;
}

void ValueTable::put(size_t i, const std::string &value) {
  memcpy(table_ + i * kSlot, value.c_str(), std::min(value.size() + 1, kSlot));
}

std::vector<std::string> value_log() {
  std::vector<std::string> lines = log_texts();
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [](const std::string &text) { return !is_promised(text); }),
              lines.end());
  return lines;
}

std::vector<std::string> applied_log(const std::string &name, const std::string &value, bool same) {
  std::vector<std::string> lines = {"param->name = " + name + " value = " + value + "\n"};
  if (same) {
    lines.push_back("Same value,don't write!Multi\n");
  }
  for (const char *field : {"flash_rw", "noti", "inform_dbus", "namechange", "inform_tr069"}) {
    lines.push_back(std::string("pList's ") + field + "= 0\n");
  }
  return lines;
}

std::vector<std::string> table_log(const std::vector<std::string> &lines) {
  std::vector<std::string> texts;
  for (size_t i = 0; i < lines.size(); ++i) {
    texts.push_back("i=" + std::to_string(i) + ",ptr=" + lines[i] + "\n");
  }
  return texts;
}

std::vector<std::string> joined(const std::vector<std::vector<std::string>> &parts) {
  std::vector<std::string> all;
  for (const std::vector<std::string> &part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

std::map<std::string, std::string> store_files() {
  std::map<std::string, std::string> files;
  for (const auto &entry : std::filesystem::recursive_directory_iterator("/var")) {
    const std::string relative = entry.path().string().substr(sizeof "/var/" - 1);
    files[relative] = entry.is_regular_file() ? read_store_file(relative) : "";
  }
  return files;
}

std::string numbered_name(size_t i) {
  return "P" + std::to_string(i);
}

PropertyFile numbered_file(size_t count, size_t value_length) {
  PropertyFile file;
  for (size_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i) + ":";
    file.add(numbered_name(i), number + std::string(value_length - number.size(), 'v'));
  }
  return file;
}

void write_patterns(const std::map<unsigned, std::string> &patterns) {
  std::string text;
  for (const auto &[number, pattern] : patterns) {
    text += "config filter 'filter" + std::to_string(number) + "'\n\toption value '" + pattern +
            "'\n\n";
  }
  write_store_file(kPatternFile, text);
}

void ValuesTest::store(const PropertyFile &file) {
  file_ = file;
  write_property("Gateway/", property_file({"A", "B", "C"}, {"the parent's", "own", "values"}));
  write_property("Gateway/Device/Sub/", property_file({"A"}, {"of a sub-object"}));
  write_property(kDir, file_);
  age_file(kFile);
  files_ = store_files();
  clear_log();
}

void ValuesTest::store_section(const std::string &values) {
  PropertyFile file = property_file({"A", "B", "C"}, {"", "", ""});
  file.values = values;
  store(file);
}

void ValuesTest::expect_section(const std::string &values) {
  std::map<std::string, std::string> expected = files_;
  expected[kFile] = file_.head_bytes() + values;
  EXPECT_EQ(store_files(), expected);
}

void ValuesTest::expect_untouched() {
  expect_same_bytes();
  EXPECT_TRUE(is_aged(kFile)) << "the file was written";
}

void ValuesTest::expect_same_bytes() {
  EXPECT_EQ(store_files(), files_);
}

}  // namespace zrcfg_test
