// The calls that meet any bytes are all exported ones but those that open no property file.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

#include "fuzz/any_object.h"

namespace zrcfg_test {
namespace {

// Calls that read nothing of a property file: doors to the file system, paths, codecs, settings,
// the logger, and what other calls of the list go through.
const std::set<std::string> kReadNoFile = {
    "ACCESS", "ChangeUrlWithDirFormat", "CheckObjExist", "FOPEN", "LSTAT", "MKDIR", "OPEN",
    "OPENDIR", "REMOVE", "RMDIR", "STAT", "ascii_to_hex", "createDir", "dirCopy", "dirDel",
    "exportGetObjUrlAndIndex", "fileCopy", "free_nlist", "g_base64_char", "getLockFile",
    "getLockPath", "getPropertyFile", "get_obj_and_param_from_url", "hex_to_ascii",
    "init_zrcfg_logger", "isDir", "isDirExist", "is_digit", "objsort", "open_create",
    "setParamAttrCommonFunc", "uci_char_transform", "unload_ucifile", "xmlurl_transform",
    "zrcfg_allnode_free", "zrcfg_dencryp_string", "zrcfg_encryp_string",
    "zrcfg_get_crytoinfo_from_encryptmode", "zrcfg_get_encryptmode", "zrcfg_get_tr069_process_flag",
    "zrcfg_getobjidbyobjpath", "zrcfg_init_tr069_process_flag", "zrcfg_isobjectexist",
    "zrcfg_log_file_path", "zrcfg_log_is_inited", "zrcfg_log_out_mode", "zrcfg_log_size",
    "zrcfg_logger", "zrcfg_mut", "zrcfg_uci_get_config", "check_param_value_valid_regex",
    // Used by the helpers that the calls go through.
    "cfgGetLock", "constructParamValues", "destroyObj", "getLock", "isLocked", "objIsHide",
    "paramIsHide", "releaseLock", "setParamValuesToMem", "zrcfg_islock", "zrcfg_releaselock"};

TEST(CoveredCallsTest, EveryCallThatOpensAPropertyFileMeetsAnyBytes) {
  std::set<std::string> covered;
  for (const auto *calls : {&zrcfg_fuzz::any_value_calls(), &zrcfg_fuzz::any_attribute_calls(),
                            &zrcfg_fuzz::any_tree_calls()}) {
    for (const zrcfg_fuzz::AnyCall &call : *calls) {
      const std::string name = call.name;
      covered.insert(name.substr(0, name.find(',')));
    }
  }
  for (const char *name : zrcfg_fuzz::instance_call_names()) {
    covered.insert(name);
  }
  std::ifstream list(ZRCFG_SYMBOL_LIST);
  size_t symbols = 0;
  for (std::string name; std::getline(list, name); ++symbols) {
    EXPECT_EQ(covered.count(name) + kReadNoFile.count(name), 1u) << name;
  }
  EXPECT_EQ(symbols, covered.size() + kReadNoFile.size()) << "a name that is not exported";
}

}  // namespace
}  // namespace zrcfg_test
