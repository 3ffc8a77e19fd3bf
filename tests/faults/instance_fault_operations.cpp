// The calls on instances and the export, put under faults on the store with tables.
#include "tests/faults/instance_fault_operations.h"

#include <string.h>

#include "lifecycle/entry_counter.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr uint32_t kMinusOne = 0xFFFFFFFFu;
constexpr char kTableUrl[] = "Gateway.Table.";
constexpr char kFixedUrl[] = "Gateway.Fixed.";
constexpr int kAllModes = 0;

uint32_t run_add() {
  uint32_t index = 0;
  return zrcfg_addobject(kTableUrl, &index, 0);
}

uint32_t run_add_with_index() {
  return zrcfg_addobject_with_index(kTableUrl, 2, 0);
}

uint32_t run_delete() {
  return zrcfg_delobject(kTableUrl, 1, 0);
}

uint32_t run_add_static() {
  return zrcfg_addobject_static(kFixedUrl, 2, 1, 0);
}

uint32_t run_delete_static() {
  return zrcfg_delobject_static(kFixedUrl, 1, 0);
}

uint32_t run_export_add() {
  uint8_t flag = 0;
  return zrcfg_exportaddobject("Gateway.Table.2.", 0, kAllModes, &flag);
}

uint32_t run_export_replace() {
  uint8_t flag = 0;
  return zrcfg_exportaddobject("Gateway.Table.1.", ZRCFG_NO_LOCK, kAllModes, &flag);
}

uint32_t run_export_delete() {
  uint8_t flag = 0;
  return zrcfg_exportdelobject("Gateway.Table.1.", 0, kAllModes, &flag);
}

uint32_t run_counter() {
  return modifyParentNodeNumOfEntry("Gateway/Table/", "/TableNumberOfEntries", 0, 0);
}

uint32_t run_export_single() {
  uint8_t flag = 0x5a;
  const uint32_t result =
      zrcfg_exportsingleparamval("Gateway.", "TableNumberOfEntries", "3", kAllModes, &flag);
  // The flag is written on success only.
  return flag == (result == 0 ? 1 : 0x5a) ? result : 99;
}

uint32_t run_export_multi() {
  char value[] = "3";
  ParamValueEntry node;
  memset(static_cast<void *>(&node), 0, sizeof node);
  strcpy(node.name, "TableNumberOfEntries");
  node.value = value;
  return zrcfg_exportmultiparamval("Gateway.", &node, 0, kAllModes);
}

std::vector<InstanceOperation> make_operations() {
  const std::set<uint32_t> add = {2, 4, 7, 8, 9, 10, 15, 17};
  const std::set<uint32_t> del = {1, 2, 7, 8, 9, 10, 15, 18};
  const std::string one = "Gateway/Table/1";
  const std::string two = "Gateway/Table/2";
  return {
      {"Add", Effect::kCreates, two, true, add, run_add},
      {"AddWithIndex", Effect::kCreates, two, true, add, run_add_with_index},
      {"Delete", Effect::kDeletes, one, true, del, run_delete},
      {"AddStatic",
       Effect::kCreates,
       "Gateway/Fixed/2",
       false,
       {2, 4, 8, 9, 10, 17},
       run_add_static},
      {"DeleteStatic",
       Effect::kDeletes,
       "Gateway/Fixed/1",
       false,
       {1, 8, 9, 10, 18},
       run_delete_static},
      {"ExportAdd", Effect::kCreates, two, true, add, run_export_add},
      {"ExportReplace",
       Effect::kReplaces,
       one,
       true,
       {1, 2, 7, 8, 9, 10, 15, 17, 18},
       run_export_replace},
      {"ExportDelete", Effect::kDeletes, one, true, del, run_export_delete},
      {"Counter", Effect::kWrites, "", true, {7, 8, 9, 10, 15}, run_counter},
      {"ExportSingle", Effect::kWrites, "", true, {8, 10, kMinusOne}, run_export_single},
      {"ExportMulti", Effect::kWrites, "", true, {7, 8, 9, 10, 15}, run_export_multi},
  };
}

}  // namespace

const std::vector<InstanceOperation> &instance_operations() {
  static const std::vector<InstanceOperation> all = make_operations();
  return all;
}

}  // namespace zrcfg_test
