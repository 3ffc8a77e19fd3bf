// The operations that have budgets, on a store of a given size.
#include "tests/budget/operations.h"

#include <stdlib.h>
#include <string.h>

#include "tests/support/property_builder.h"

namespace zrcfg_test {
namespace {

constexpr char kTable[] = "Gate.Port.";
constexpr char kObject[] = "Gate.Port.2.";
constexpr int kWritten = 10;

std::string name_of(int record) {
  return "Parameter" + std::to_string(record);
}

PropertyFile object_of(int records) {
  PropertyFile file;
  for (int i = 0; i < records; ++i) {
    file.add(name_of(i), "value of " + std::to_string(i)).rw = 1;
  }
  return file;
}

void make_instance(const std::string &dir, int records) {
  write_property(dir, object_of(records));
  for (const char *child : {"Stats/", "Client/", "Link/", "Link/Rate/"}) {
    write_property(dir + child, object_of(8));
  }
}

// The lists are made once for each size, so that only the calls are counted.
ParamValueEntry *list_to_read(const StoreSize &size) {
  static BudgetList list(size.requests, size.records, "");
  return list.head();
}

ParamValueEntry *list_to_write(const StoreSize &size, unsigned turn) {
  static BudgetList lists[] = {BudgetList(kWritten, size.records, "a value"),
                               BudgetList(kWritten, size.records, "one longer")};
  return lists[turn % 2].head();
}

std::string &last_name(const StoreSize &size) {
  static std::string name;
  if (name.empty()) {
    name = name_of(size.records - 1);
  }
  return name;
}

bool read_one(const StoreSize &size, unsigned) {
  char value[ZRCFG_VALUE_SIZE] = "";
  return zrcfg_getsingleparamval(kObject, last_name(size).c_str(), value, 0) == 0 &&
         value[0] != '\0';
}

bool write_changed(const StoreSize &size, unsigned turn) {
  uint8_t changed = 0;
  return zrcfg_setsingleparamval_ext(kObject, last_name(size).c_str(),
                                     turn % 2 == 0 ? "a longer value" : "a value", 0,
                                     &changed) == 0 &&
         changed == 1;
}

bool write_unchanged(const StoreSize &, unsigned) {
  uint8_t changed = 1;
  return zrcfg_setsingleparamval_ext("Gate.Port.1.", "Parameter0", "value of 0", 0, &changed) ==
             0 &&
         changed == 0;
}

bool read_list(const StoreSize &size, unsigned) {
  return zrcfg_getmultiparamval(kObject, list_to_read(size), 0) == 0;
}

bool list_values(const StoreSize &, unsigned) {
  ParamValueListNode *node = nullptr;
  ParamValueListNode *tail = nullptr;
  if (zrcfg_getallparamval(kObject, &node, &tail, 0) != 0) {
    return false;
  }
  while (node != nullptr) {
    ParamValueListNode *const next = node->next;
    free(node);
    node = next;
  }
  return true;
}

bool write_list(const StoreSize &size, unsigned turn) {
  return zrcfg_setmultiparamval("Gate.Port.1.", list_to_write(size, turn), 0) == 0;
}

bool enumerate(const StoreSize &, unsigned) {
  NODE_INFO *head = nullptr;
  return zrcfg_allnode_get("Gate.", 1, &head, 0) == 0 && zrcfg_allnode_free(head) == 0;
}

bool add_and_delete(const StoreSize &, unsigned) {
  uint32_t index = 0;
  return zrcfg_addobject(kTable, &index, 0) == 0 &&
         zrcfg_delobject(kTable, static_cast<int>(index), 0) == 0;
}

}  // namespace

BudgetList::BudgetList(int count, int records, const std::string &value)
    : nodes_(static_cast<size_t>(count)), values_(static_cast<size_t>(count)) {
  for (size_t i = 0; i < nodes_.size(); ++i) {
    memset(static_cast<void *>(&nodes_[i]), 0, sizeof nodes_[i]);
    // Not in the order of the file, as lists of people's choice are not.
    const int record = static_cast<int>(i) * 101 % records;
    strncpy(nodes_[i].name, name_of(record).c_str(), ZRCFG_NAME_SIZE - 1);
    values_[i] = value;
    values_[i].resize(ZRCFG_VALUE_SIZE);
    nodes_[i].value = &values_[i][0];
    nodes_[i].next = i + 1 < nodes_.size() ? &nodes_[i + 1] : nullptr;
  }
}

void make_budget_store(const StoreSize &size) {
  PropertyFile gate = object_of(3);
  gate.add("PortNumberOfEntries", std::to_string(size.instances));
  write_property("Gate/", gate);
  PropertyFile table;
  table.header.rw = 1;
  table.header.max_instance = 255;
  table.header.pnoe = "Gate/PortNumberOfEntries";
  write_property("Gate/Port/", table);
  for (int i = 0; i <= size.instances; ++i) {
    make_instance("Gate/Port/" + std::to_string(i) + "/", size.records);
  }
}

const std::vector<BudgetOperation> kBudgetOperations = {
    {"W1", read_one},     {"W2", write_changed}, {"W3", write_unchanged}, {"W4", read_list},
    {"W4l", list_values}, {"W5", write_list},    {"W6", enumerate},       {"W7", add_and_delete}};

}  // namespace zrcfg_test
