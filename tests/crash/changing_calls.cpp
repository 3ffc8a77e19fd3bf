// Every exported call that changes the store, with one use of it, and the store that it is used on.
#include "tests/crash/changing_calls.h"

#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <set>

#include "attr/attr_requests.h"
#include "attr/attr_update.h"
#include "core/single_value.h"
#include "core/store_file.h"
#include "lifecycle/dir_tree.h"
#include "lifecycle/entry_counter.h"
#include "lifecycle/export_values.h"
#include "values/bulk_values.h"
#include "values/checked_single_value.h"
#include "values/value_table.h"

namespace zrcfg_test {
namespace {

constexpr char kName[] = "P000";
constexpr char kBorderName[] = "P130";
constexpr char kShort[] = "short";
// 200 characters.
constexpr char kLonger[] =
    "a value that is longer than the one before, by what a page has room for, or a little less "
    "......"
    ".............................................................................................."
    "....";
constexpr int kAnyMode = 0;
constexpr int kAccessList = 10;
constexpr char kList[] = "a list of access";
constexpr uint32_t kFailed = 99;

uint32_t zero_if(bool done) {
  return done ? 0 : kFailed;
}

// Runs a work step on the open image of the big object.
template <typename Work>
uint32_t on_image(Work work) {
  ZrcfgObject *image = nullptr;
  int fd = -1;
  if (createObjByPath(&image, kBigDir, &fd, ZRCFG_LOCK_SHARED, ZRCFG_NO_LOCK) != 0) {
    return kFailed;
  }
  const auto result = work(image);
  destroyObj(image, fd);
  return static_cast<uint32_t>(result);
}

ParamValueEntry *value_list() {
  static char value[256];
  static ParamValueEntry node;
  strcpy(value, kShort);
  memset(static_cast<void *>(&node), 0, sizeof node);
  strcpy(node.name, kName);
  node.value = value;
  return &node;
}

// Refused values are what the roll-back puts back, so the node carries one.
ParamValueEntry *roll_back_list() {
  ParamValueEntry *const node = value_list();
  strcpy(node->old_value, kShort);
  static uint32_t fault = 7;
  node->changed = 1;
  node->fault = &fault;
  return node;
}

uint32_t store_table(ZrcfgObject *image) {
  char *table = nullptr;
  if (constructParamValues(image, &table) != 0) {
    return kFailed;
  }
  const std::unique_ptr<char, decltype(&free)> owner(table, free);
  strcpy(table, kShort);
  return static_cast<uint32_t>(setParamValuesToMem(image, table));
}

ParamAttr new_attributes() {
  ParamAttr attr = {};
  attr.noti = 5;
  memcpy(attr.accesslist, kList, sizeof attr.accesslist);
  return attr;
}

ParamAttrChange new_change() {
  ParamAttrChange change = {};
  change.noti_change = 1;
  change.noti = 5;
  change.access_list_change = 1;
  memcpy(change.accesslist, kList, sizeof change.accesslist);
  return change;
}

// Runs a call with a list that names two parameters in front of and one behind a page border.
template <typename Work>
uint32_t with_attr_list(Work work) {
  ParamAttr attr = new_attributes();
  MultiAttrNode nodes[2];
  memset(static_cast<void *>(nodes), 0, sizeof nodes);
  strcpy(nodes[0].name, kBorderName);
  strcpy(nodes[1].name, "P139");
  nodes[0].next = &nodes[1];
  nodes[0].pAttr = &attr;
  nodes[1].pAttr = &attr;
  return work(&nodes[0]);
}

std::vector<ChangingCall> value_calls() {
  const auto call = [](const char *name, uint32_t (*run)()) -> ChangingCall {
    return {name, group::kValues, std::string(kBigDir) + "property.conf", "", kBigSection, "9",
            run};
  };
  return {
      call("zrcfg_setsingleparamval",
           [] { return zrcfg_setsingleparamval(kBigUrl, kName, kShort, 0); }),
      call("zrcfg_setsingleparamval_ext",
           [] {
             uint8_t changed = 0;
             return zrcfg_setsingleparamval_ext(kBigUrl, kName, kShort, 0, &changed);
           }),
      call("zrcfg_setsingleparamval_ext_get_old_value",
           [] {
             uint8_t changed = 0;
             char old_value[256] = "";
             return zrcfg_setsingleparamval_ext_get_old_value(kBigUrl, kName, kShort, 0, &changed,
                                                              old_value);
           }),
      call("zrcfg_setsingleparamval_ext_get_old_value_check",
           [] {
             char changed = 0;
             char old_value[256] = "";
             return static_cast<uint32_t>(zrcfg_setsingleparamval_ext_get_old_value_check(
                 kBigUrl, kName, kShort, 0, &changed, old_value));
           }),
      call("zrcfg_setmultiparamval",
           [] { return static_cast<uint32_t>(zrcfg_setmultiparamval(kBigUrl, value_list(), 0)); }),
      call("zrcfg_setmultiparamval_ext",
           [] {
             return static_cast<uint32_t>(zrcfg_setmultiparamval_ext(kBigUrl, roll_back_list(), 0));
           }),
      call("zrcfg_setmultiparamval_check",
           [] {
             return static_cast<uint32_t>(zrcfg_setmultiparamval_check(kBigUrl, value_list(), 0));
           }),
      call("zrcfg_exportsingleparamval",
           [] {
             uint8_t flag = 0;
             return zrcfg_exportsingleparamval(kBigUrl, kName, kShort, kAnyMode, &flag);
           }),
      call("zrcfg_exportmultiparamval",
           [] { return zrcfg_exportmultiparamval(kBigUrl, value_list(), 0, kAnyMode); }),
      call("setSingleParamValueByParamName",
           [] {
             return on_image([](ZrcfgObject *image) {
               return setSingleParamValueByParamName(image, kName, kShort, nullptr);
             });
           }),
      call("set_single_param_value_by_param_name",
           [] {
             return on_image([](ZrcfgObject *image) {
               char old_value[256] = "";
               return set_single_param_value_by_param_name(image, kName, kShort, nullptr,
                                                           old_value);
             });
           }),
      call("set_single_param_value_by_param_name_check",
           [] {
             return on_image([](ZrcfgObject *image) {
               char changed = 0;
               char old_value[256] = "";
               return set_single_param_value_by_param_name_check(image, kName, kShort, &changed,
                                                                 old_value);
             });
           }),
      call("export_SetParamVal",
           [] {
             return on_image([](ZrcfgObject *image) {
               uint8_t flag = 0;
               return export_SetParamVal(image, kName, kShort, kAnyMode, &flag);
             });
           }),
      call("setParamValuesToMem", [] { return on_image(store_table); }),
      {"zrcfg_setsingleparamval of a longer value", group::kLongerValues,
       std::string(kBigDir) + "property.conf", "", kBigSection, "9",
       [] { return zrcfg_setsingleparamval(kBigUrl, kName, kLonger, 0); }},
  };
}

std::vector<ChangingCall> attribute_calls() {
  const std::string file = std::string(kBigDir) + "property.conf";
  const auto call = [&](const char *name, size_t at, uint32_t (*run)(),
                        const char *group = group::kAttributes) -> ChangingCall {
    return {name, group, file, "", static_cast<long long>(at), "9", run};
  };
  return {
      call("zrcfg_setsingleparamattr", kBorderRecord,
           [] {
             const ParamAttr attr = new_attributes();
             return zrcfg_setsingleparamattr(kBigUrl, kBorderName, &attr, ZRCFG_ATTR_SET_ALL, 0);
           }),
      call(
          "zrcfg_setsingleparamattr_ext", kBorderRecord,
          [] { return zrcfg_setsingleparamattr_ext(kBigUrl, kBorderName, kAccessList, kList, 0); }),
      call("zrcfg_singleparamattr_set_ext", kBorderRecord,
           [] {
             return zero_if(
                 zrcfg_singleparamattr_set_ext("Gateway.Big.P130", kAccessList, kList, 0) == 0);
           }),
      call(
          "zrcfg_setmultiparamattr", kBorderRecord,
          [] {
            return with_attr_list([](MultiAttrNode *list) {
              return zrcfg_setmultiparamattr(kBigUrl, list, ZRCFG_ATTR_SET_ALL, 0);
            });
          },
          group::kListedAttributes),
      call("zrcfg_setallParamattr", 4 + kHeadBytes,
           [] {
             const ParamAttrChange change = new_change();
             return zrcfg_setallParamattr(kBigUrl, &change, 0);
           }),
      call("setSingleParamAttrByParamName", kBorderRecord,
           [] {
             return on_image([](ZrcfgObject *image) {
               const ParamAttr attr = new_attributes();
               return setSingleParamAttrByParamName(image, kBorderName, &attr, ZRCFG_ATTR_SET_ALL);
             });
           }),
      call("setSingleParamAttrByParamName_ext", kBorderRecord,
           [] {
             return on_image([](ZrcfgObject *image) {
               return setSingleParamAttrByParamName_ext(image, kBorderName, kAccessList, kList);
             });
           }),
      call(
          "modiMultiParamAttr", kBorderRecord,
          [] {
            return on_image([](ZrcfgObject *image) {
              return with_attr_list([&](MultiAttrNode *list) {
                return modiMultiParamAttr(image, list, ZRCFG_ATTR_SET_ALL, 0);
              });
            });
          },
          group::kListedAttributes),
      call("setAllParamAttr", 4 + kHeadBytes,
           [] {
             return on_image([](ZrcfgObject *image) {
               const ParamAttrChange change = new_change();
               return setAllParamAttr(image, &change, 0);
             });
           }),
      {"zrcfg_setsingleobjattr_ext", group::kObjectAttribute, file, "", 4, "9",
       [] { return zrcfg_setsingleobjattr_ext(kBigUrl, 5, "77", 0); }},
  };
}

std::vector<ChangingCall> instance_calls() {
  const std::string one = "Gateway/Table/1";
  const std::string two = "Gateway/Table/2";
  const auto call = [](const char *name, const char *group, const std::string &instance,
                       const char *counter, uint32_t (*run)()) -> ChangingCall {
    return {name, group, "", instance, 0, counter, run};
  };
  return {
      call("zrcfg_addobject", group::kAdd, two, "9",
           [] {
             uint32_t index = 0;
             return zrcfg_addobject(kTableUrl, &index, 0);
           }),
      call("zrcfg_addobject_with_index", group::kAdd, two, "9",
           [] { return zrcfg_addobject_with_index(kTableUrl, 2, 0); }),
      call("zrcfg_exportaddobject", group::kAdd, two, "9",
           [] {
             uint8_t flag = 0;
             return zrcfg_exportaddobject("Gateway.Table.2.", 0, kAnyMode, &flag);
           }),
      call("zrcfg_addobject_static", group::kAddStatic, "Gateway/Fixed/2", "9",
           [] { return zrcfg_addobject_static(kFixedUrl, 2, 1, 0); }),
      call("zrcfg_delobject", group::kDelete, one, "10",
           [] { return zrcfg_delobject(kTableUrl, 1, 0); }),
      call("zrcfg_exportdelobject", group::kDelete, one, "10",
           [] {
             uint8_t flag = 0;
             return zrcfg_exportdelobject("Gateway.Table.1.", 0, kAnyMode, &flag);
           }),
      call("zrcfg_delobject_static", group::kDeleteStatic, "Gateway/Fixed/1", "9",
           [] { return zrcfg_delobject_static(kFixedUrl, 1, 0); }),
      call("zrcfg_exportaddobject of an instance that is there", group::kReplace, one, "9",
           [] {
             uint8_t flag = 0;
             return zrcfg_exportaddobject("Gateway.Table.1.", ZRCFG_NO_LOCK, kAnyMode, &flag);
           }),
      {"modifyParentNodeNumOfEntry", group::kCounter, kParentLock, "", 0, "10",
       [] { return modifyParentNodeNumOfEntry(kTable, "/TableNumberOfEntries", 1, 0); }},
  };
}

std::vector<ChangingCall> file_calls() {
  const auto call = [](const char *name, const char *group, uint32_t (*run)()) -> ChangingCall {
    return {name, group, "", "", 0, "9", run};
  };
  return {
      call("fileCopy", group::kTree,
           [] { return zero_if(fileCopy("Gateway/Big/property.conf", "copy") == 0); }),
      call("createDir", group::kTree, [] { return zero_if(createDir("a/b/c") == 0); }),
      call("dirCopy", group::kTree,
           [] { return zero_if(dirCopy("Gateway/Fixed", "Gateway/Copy") == 0); }),
      call("dirDel", group::kTree, [] { return zero_if(dirDel("Gateway/Fixed") == 0); }),
      call("open_create", group::kEntry,
           [] { return zero_if(close(open_create("new", O_WRONLY | O_CREAT)) == 0); }),
      call("MKDIR", group::kEntry, [] { return zero_if(MKDIR("new", 0755) == 0); }),
      call("REMOVE", group::kEntry, [] { return zero_if(REMOVE("Other/property.conf") == 0); }),
      call("RMDIR", group::kEntry, [] { return zero_if(RMDIR("Gateway/Table/0/Sub/Bare") == 0); }),
  };
}

}  // namespace

void PrintTo(const ChangingCall &call, std::ostream *out) {
  *out << call.name;
}

const std::vector<ChangingCall> &changing_calls() {
  static const std::vector<ChangingCall> all = [] {
    std::vector<ChangingCall> calls;
    for (const auto &part : {value_calls(), attribute_calls(), instance_calls(), file_calls()}) {
      calls.insert(calls.end(), part.begin(), part.end());
    }
    return calls;
  }();
  return all;
}

std::vector<ChangingCall> one_call_a_group() {
  std::vector<ChangingCall> calls;
  std::set<std::string> groups;
  for (const ChangingCall &call : changing_calls()) {
    if (groups.insert(call.group).second) {
      calls.push_back(call);
    }
  }
  return calls;
}

std::string case_name(std::string text) {
  std::replace(text.begin(), text.end(), ' ', '_');
  return text;
}

std::string big_name(unsigned position) {
  char name[8];
  snprintf(name, sizeof name, "P%03u", position % 1000);
  return name;
}

PropertyFile big_file() {
  PropertyFile file;
  for (unsigned i = 0; i < kBigParams; ++i) {
    file.add(big_name(i), big_name(i) + std::string(96, static_cast<char>('a' + i % 26)));
  }
  return file;
}

void CrashTest::SetUp() {
  set_up("9");
}

void CrashTest::set_up(const std::string &counter) {
  LifecycleTest::SetUp();
  write_property(kBigDir, big_file());
  write_property("Gateway/Table/0/", big_file());
  TableFields roomy;
  roomy.max_instance = 6;
  set_table(roomy);
  set_counter(counter);
}

}  // namespace zrcfg_test
