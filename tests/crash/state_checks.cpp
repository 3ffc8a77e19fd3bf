// What callers see of an interrupted change, and how it is mended.
#include "tests/crash/state_checks.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "tests/crash/crash_state.h"

namespace zrcfg_test {
namespace {

constexpr char kLastName[] = "P139";
constexpr uint32_t kNoFile = 8;
constexpr uint32_t kLinesMissing = 10;

std::string old_value(unsigned position) {
  return big_file().params[position].value;
}

// The first value that the big object has in a tree.
std::string first_value(const Tree &tree) {
  const std::string file = file_bytes(tree, std::string(kBigDir) + "property.conf");
  return file.substr(kBigSection, file.find('\n', kBigSection) - kBigSection);
}

struct Reading {
  uint32_t result;
  std::string value;
};

Reading read_value(const std::string &url, const std::string &name) {
  char value[256] = "";
  const uint32_t result = zrcfg_getsingleparamval(url.c_str(), name.c_str(), value, 0);
  return {result, value};
}

void expect_value(const std::string &url, const std::string &name, const std::string &expected) {
  const Reading reading = read_value(url, name);
  EXPECT_EQ(reading.result, 0u) << url << name;
  EXPECT_EQ(reading.value, expected) << url << name;
}

// The list of all values, through the call that lists them.
void expect_listed(const std::vector<std::string> &expected) {
  ParamValueListNode *head = nullptr;
  ASSERT_EQ(zrcfg_getallparamval(kBigUrl, &head, nullptr, 0), 0);
  std::vector<std::string> values;
  while (head != nullptr) {
    const std::unique_ptr<ParamValueListNode, decltype(&free)> node(head, free);
    values.emplace_back(node->value);
    head = node->next;
  }
  EXPECT_EQ(values, expected);
}

void expect_whole_values(const std::string &first_value) {
  std::vector<std::string> expected;
  for (unsigned i = 0; i < kBigParams; ++i) {
    expected.push_back(i == 0 ? first_value : old_value(i));
    expect_value(kBigUrl, big_name(i), expected.back());
  }
  expect_listed(expected);
}

// Whatever is read, no call does worse than fail.
void expect_readable_values() {
  for (unsigned i = 0; i < kBigParams; ++i) {
    const uint32_t result = read_value(kBigUrl, big_name(i)).result;
    EXPECT_TRUE(result == 0 || result == kLinesMissing) << result;
  }
}

// A record across the border has fields of both; each of the attributes here lies on one side, but
// for the list.
void expect_attributes(const std::string &state, const ChangingCall &call) {
  expect_whole_values(old_value(0));
  ParamAttr attr = {};
  EXPECT_EQ(zrcfg_getsingleparamattr(kBigUrl, big_name(kBorderParam).c_str(), &attr, 0), 0u);
  const bool by_text = std::strstr(call.name, "_ext") != nullptr;
  if (state == "old" || state == "new") {
    EXPECT_EQ(attr.noti, state == "new" && !by_text ? 5 : 0);
    EXPECT_EQ(attr.accesslist[0], state == "new" ? 'a' : '\0');
    EXPECT_EQ(attr.accesslist[14], state == "new" ? 's' : '\0');
  }
}

void expect_object_attribute(const std::string &state) {
  expect_whole_values(old_value(0));
  ObjAttr attr = {};
  EXPECT_EQ(zrcfg_getobjattr(kBigUrl, &attr, 0), 0u);
  EXPECT_EQ(attr.max_instance, state == "new" ? 77 : 0);
}

std::string instance_url(const ChangingCall &call) {
  return url_of(call.instance + "/");
}

// One value of the instance and what it is in a whole one.
void expect_part_of_instance(const ChangingCall &call, const Tree &before, const Tree &after) {
  const std::string name =
      call.group == group::kAddStatic || call.group == group::kDeleteStatic ? "F" : "A";
  for (const std::string &wanted : {name, std::string("P139")}) {
    const Reading reading = read_value(instance_url(call), wanted);
    const bool failed =
        reading.result == kNoFile || reading.result == kLinesMissing || reading.result == 9;
    EXPECT_TRUE(failed || reading.result == 0) << reading.result;
    const auto known = [&](const Tree &tree) {
      const auto file = tree.find(call.instance + "/property.conf");
      return file != tree.end() && file->second.find(reading.value) != std::string::npos;
    };
    EXPECT_TRUE(failed || known(before) || known(after)) << reading.value;
  }
}

void expect_instance(const ChangingCall &call, const std::string &state, const Tree &before,
                     const Tree &after) {
  expect_part_of_instance(call, before, after);
  const bool there = store_entry_exists(call.instance);
  const bool gone_states = state == "overcounted" || state == "gap";
  EXPECT_TRUE(!gone_states || !there);
  const std::string file = call.instance + "/property.conf";
  if (state == "uncounted" && read_store_file(file) == big_file().bytes()) {
    expect_value(instance_url(call), big_name(0), old_value(0));
    expect_value(instance_url(call), kLastName, old_value(kBigParams - 1));
  }
  if (state == "part" || state == "uncounted") {
    EXPECT_EQ(zrcfg_addobject_with_index(kTableUrl, call.instance.back() - '0', 0), 4u);
  }
  if (gone_states) {
    EXPECT_EQ(read_value(instance_url(call), "A").result, kNoFile);
    EXPECT_EQ(zrcfg_delobject(kTableUrl, call.instance.back() - '0', 0), 1u);
  }
}

int counter_value() {
  return atoi(read_value("Gateway.", "TableNumberOfEntries").value.c_str());
}

// The instances that there are, template aside.
int instance_count() {
  int count = 0;
  SubObjName *list = nullptr;
  EXPECT_EQ(zrcfg_getallsubobj(kTableUrl, &list), 0u);
  while (list != nullptr) {
    const std::unique_ptr<SubObjName, decltype(&free)> node(list, free);
    list = node->next;
    ++count;
  }
  return count;
}

std::string replaced(std::string text, const std::string &from, const std::string &to) {
  const size_t at = text.find(from);
  return at == std::string::npos ? text + " lacks " + from : text.replace(at, from.size(), to);
}

// The next change of another value of the same object leaves a file without anything behind the
// last line.
void expect_tail_cut(const ChangingCall &call, const Tree &after) {
  const bool big = call.file == std::string(kBigDir) + "property.conf";
  const std::string file = big ? std::string(kBigDir) + "property.conf" : kParentLock;
  const std::string value = big ? old_value(kBigParams - 1) : "the gateway";
  EXPECT_EQ(
      zrcfg_setsingleparamval(big ? kBigUrl : "Gateway.", big ? kLastName : "Name", "next", 0), 0u);
  EXPECT_EQ(tree_without_slots().at(file), replaced(after.at(file), value, "next"));
}

// One list call with all values of the object whose file the call changes.
void expect_all_values_set_anew(const ChangingCall &call, const Tree &after) {
  const std::string bytes = file_bytes(after, call.file);
  const size_t count = (value_offset(bytes) - 4 - kHeadBytes) / kParamBytes;
  std::vector<ParamValueEntry> nodes(count);
  std::vector<std::string> values(count);
  size_t line = value_offset(bytes);
  for (size_t i = 0; i < count; ++i) {
    const size_t feed = bytes.find('\n', line);
    values[i] = bytes[line] == '\r' ? "" : bytes.substr(line, feed - line);
    line = feed + 1;
    memset(static_cast<void *>(&nodes[i]), 0, sizeof nodes[i]);
    strcpy(nodes[i].name, bytes.c_str() + 4 + kHeadBytes + i * kParamBytes + 8);
    nodes[i].value = &values[i][0];
    nodes[i].next = i + 1 < count ? &nodes[i + 1] : nullptr;
  }
  const std::string dir = call.file.substr(0, call.file.rfind('/') + 1);
  EXPECT_EQ(zrcfg_setmultiparamval(url_of(dir).c_str(), nodes.data(), 0), 0);
  EXPECT_EQ(tree_without_slots(), after);
}

void expect_repeatable(const ChangingCall &call, const Tree &after) {
  EXPECT_EQ(call.run(), 0u);
  EXPECT_EQ(tree_without_slots(), after);
}

void expect_deleted_and_added(const ChangingCall &call, const Tree &after) {
  const int number = call.instance.back() - '0';
  const bool is_static = call.group == group::kAddStatic;
  EXPECT_EQ(is_static ? zrcfg_delobject_static(kFixedUrl, number, 0)
                      : zrcfg_delobject(kTableUrl, number, 0),
            0u);
  expect_repeatable(call, after);
}

// Nothing that the library's calls do brings counter and instances together again.
void expect_miscounted(const std::string &state, int difference) {
  const int expected = state == "overcounted" ? difference + 1 : difference - 1;
  EXPECT_EQ(counter_value() - instance_count(), expected);
  uint32_t index = 0;
  EXPECT_EQ(zrcfg_addobject(kTableUrl, &index, 0), 0u);
  EXPECT_EQ(zrcfg_delobject(kTableUrl, static_cast<int>(index), 0), 0u);
  EXPECT_EQ(counter_value() - instance_count(), expected);
}

}  // namespace

void expect_readers_see(const ChangingCall &call, const std::string &state, const Tree &before,
                        const Tree &after) {
  if (call.group == group::kValues || call.group == group::kLongerValues) {
    if (state == "old") {
      expect_whole_values(old_value(0));
    } else if (state == "new" || state == "tail") {
      expect_whole_values(first_value(after));
    } else {
      expect_readable_values();
    }
  } else if (sets_attributes(call)) {
    expect_attributes(state, call);
  } else if (call.group == group::kObjectAttribute) {
    expect_object_attribute(state);
  } else if (!call.instance.empty()) {
    expect_instance(call, state, before, after);
  }
  if (state == "tail" && call.group != group::kValues) {
    EXPECT_EQ(counter_value(), 9);
    expect_value("Gateway.", "FixedNumberOfEntries", "1");
  }
}

void expect_others_unhurt() {
  if (store_entry_exists("Other/property.conf")) {
    EXPECT_EQ(zrcfg_setsingleparamval("Other.", "O", "another", 0), 0u);
    expect_value("Other.", "O", "another");
    EXPECT_EQ(zrcfg_setsingleparamattr_ext("Other.", "O", 3, "7", 0), 0u);
  }
  EXPECT_EQ(zrcfg_setsingleparamval("Gateway.", "Name", "another", 0), 0u);
  expect_value("Gateway.", "Name", "another");
  const int counter = counter_value();
  uint32_t index = 0;
  EXPECT_EQ(zrcfg_addobject(kTableUrl, &index, 0), 0u);
  EXPECT_EQ(counter_value(), counter + 1);
  EXPECT_EQ(zrcfg_delobject(kTableUrl, static_cast<int>(index), 0), 0u);
  EXPECT_EQ(counter_value(), counter);
}

void expect_mended(const ChangingCall &call, const std::string &state, const std::string &mender,
                   const Tree &after) {
  SCOPED_TRACE(mender);
  if (state == "tail") {
    EXPECT_TRUE(
        starts_with(mender, "nobody needs to; the next change of one of the object's values"));
    expect_tail_cut(call, after);
  } else if (state == "new") {
    EXPECT_EQ(mender, "nobody needs to");
    EXPECT_EQ(tree_without_slots(), after);
  } else if (mender == "nobody needs to" || mender == "the same change once more" ||
             mender == "add the instance once more") {
    expect_repeatable(call, after);
  } else if (starts_with(mender, "the caller sets all values")) {
    expect_all_values_set_anew(call, after);
  } else if (mender == "delete the instance once more" &&
             (call.group == group::kDelete || call.group == group::kDeleteStatic)) {
    expect_repeatable(call, after);
  } else if (mender == "delete the instance once more" ||
             mender == "delete the instance and add it again") {
    expect_deleted_and_added(call, after);
  } else {
    EXPECT_EQ(mender, "`zrcfg check --repair`");
    // The fixture's counter stands above the number of instances.
    const int difference = call.counter[0] == '9' ? 7 : 8;
    expect_miscounted(state, difference);
  }
}

}  // namespace zrcfg_test
