// What each exported call may return, and may have written to its outputs, when the system fails.
#include "tests/faults/documented_failures.h"

#include <map>
#include <vector>

namespace zrcfg_test {
namespace {

struct Row {
  DocumentedFailure failure;
  std::vector<std::string> symbols;
};

const std::vector<Row> &rows() {
  static const std::vector<Row> all = {
      // Reading: no property file, no lock, not to be read; lists: no memory.
      {{{8, 9, 10}, {}},
       {"zrcfg_getsingleparamval", "zrcfg_getsingleparamattr", "zrcfg_getsingleparamattr_ext",
        "zrcfg_getmultiparamattr", "zrcfg_getobjattr", "zrcfg_GetMaxWanNum", "zrcfg_GetMaxConNum",
        "createObjByPath"}},
      {{{7, 8, 9, 10}, {}}, {"zrcfg_paramvalue_check"}},
      {{{8, 9, 10, 15}, {}},
       {"zrcfg_getmultiparamval", "zrcfg_getallparamval", "zrcfg_getallparamattr",
        "zrcfg_getallnodeinfo"}},
      {{{1, 9, 15}, {}}, {"zrcfg_getallsubobj"}},
      {{{-1}, {}},
       {"zrcfg_allnode_get", "zrcfg_singleparamattr_set_ext", "zrcfg_getwanconindexbyusrindex",
        "zrcfg_uci_get_config", "check_param_value_valid_regex"}},
      // The index is 0 after a failure.
      {{{-1}, {"word"}}, {"zrcfg_getusrindexbywanconindex", "zrcfg_getusrindexfromxmlurl"}},
      // Writing values. The flag is 1 after every failure behind the opening, and the old value is
      // that of the file.
      {{{7, 8, 9, 10, 15}, {}}, {"zrcfg_setsingleparamval", "modifyParentNodeNumOfEntry"}},
      {{{7, 8, 9, 10, 15}, {"flag"}}, {"zrcfg_setsingleparamval_ext"}},
      {{{7, 8, 9, 10, 15}, {"flag", "old_value"}}, {"zrcfg_setsingleparamval_ext_get_old_value"}},
      {{{7, 8, 9, 10, 15}, {"old_value"}}, {"zrcfg_setsingleparamval_ext_get_old_value_check"}},
      {{{7, 8, 9, 10, 15}, {"node"}},
       {"zrcfg_setmultiparamval", "zrcfg_setmultiparamval_check", "zrcfg_setmultiparamval_ext",
        "zrcfg_exportmultiparamval"}},
      {{{8, 10, 0xFFFFFFFF}, {}}, {"zrcfg_exportsingleparamval"}},
      // Work steps on an object that is open.
      {{{7, 10}, {}}, {"getSingleParamValueByParamName"}},
      {{{7, 10, 15}, {}},
       {"constructParamValues", "constructParamValueList", "export_SetParamVal"}},
      {{{7, 10, 15}, {"table"}}, {"setParamValuesToMem"}},
      {{{7, 10, 15}, {"flag"}}, {"setSingleParamValueByParamName"}},
      {{{7, 10, 15}, {"flag", "old_value"}}, {"set_single_param_value_by_param_name"}},
      {{{7, 10, 15}, {"old_value"}}, {"set_single_param_value_by_param_name_check"}},
      {{{15}, {}}, {"constructNodeInfoList", "constructObjList", "constructParamAttrList"}},
      // Writing attributes.
      {{{8, 9, 10}, {}},
       {"zrcfg_setsingleparamattr", "zrcfg_setsingleparamattr_ext", "zrcfg_setmultiparamattr",
        "zrcfg_setallParamattr", "zrcfg_setsingleobjattr_ext"}},
      {{{8, 9}, {}},
       {"setSingleParamAttrByParamName", "setSingleParamAttrByParamName_ext", "modiMultiParamAttr",
        "setAllParamAttr"}},
      // Instances. The number that was chosen stays.
      {{{2, 4, 7, 8, 9, 10, 15, 17}, {"word"}}, {"zrcfg_addobject"}},
      {{{2, 4, 7, 8, 9, 10, 15, 17}, {}}, {"zrcfg_addobject_with_index", "zrcfg_exportaddobject"}},
      {{{1, 2, 7, 8, 9, 10, 15, 18}, {}}, {"zrcfg_delobject", "zrcfg_exportdelobject"}},
      {{{2, 4, 8, 9, 10, 17}, {}}, {"zrcfg_addobject_static"}},
      {{{1, 8, 9, 10, 18}, {}}, {"zrcfg_delobject_static"}},
      // Locks, files, directories. The descriptor of an opening is its result.
      {{{0xFFFFFFFF}, {}}, {"zrcfg_lockurl"}},
      {{{8, 9}, {}}, {"cfgGetLock"}},
      {{{-1}, {}}, {"getLock", "fileCopy", "createDir", "dirCopy", "dirDel", "isDir"}},
      {{{-1}, {}}, {"OPEN", "ACCESS", "STAT", "LSTAT", "MKDIR", "REMOVE", "RMDIR", "open_create"}},
      {{{-1}, {"text"}}, {"getLockFile"}},
      {{{8}, {"text"}}, {"getPropertyFile"}},
      {{{1}, {}}, {"CheckObjExist", "isLocked", "zrcfg_islock"}},
      {{{0}, {}}, {"isDirExist", "zrcfg_isobjectexist"}},
  };
  return all;
}

}  // namespace

const DocumentedFailure &documented_failure(const std::string &symbol) {
  static const std::map<std::string, DocumentedFailure> by_symbol = [] {
    std::map<std::string, DocumentedFailure> table;
    for (const Row &row : rows()) {
      for (const std::string &name : row.symbols) {
        table.emplace(name, row.failure);
      }
    }
    return table;
  }();
  static const DocumentedFailure none;
  const auto found = by_symbol.find(symbol);
  return found == by_symbol.end() ? none : found->second;
}

}  // namespace zrcfg_test
