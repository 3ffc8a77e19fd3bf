// One use of every exported symbol that the folders' own headers declare.
#include <dirent.h>
#include <fcntl.h>
#include <string.h>
#include <uci.h>
#include <unistd.h>

#include "attr/attr_requests.h"
#include "attr/attr_update.h"
#include "attr/param_attr.h"
#include "config/base64.h"
#include "config/uci_option.h"
#include "core/object_path.h"
#include "core/single_value.h"
#include "core/store_file.h"
#include "enum/node_info.h"
#include "enum/sub_objects.h"
#include "enum/url_split.h"
#include "lifecycle/dir_tree.h"
#include "lifecycle/entry_counter.h"
#include "lifecycle/export_values.h"
#include "lifecycle/instance_url.h"
#include "lock/object_lock.h"
#include "log/zrcfg_log.h"
#include "tests/package/every_call.h"
#include "values/bulk_values.h"
#include "values/checked_single_value.h"
#include "values/value_list.h"
#include "values/value_table.h"

namespace zrcfg_test {
namespace {

constexpr char kFile[] = "Top/Tab/1/property.conf";

std::vector<EveryCall> file_calls() {
  return {
    ZRCFG_TEST_USE(FOPEN, FILE *const file = call(kFile, "rb"); ASSERT_NE(file, nullptr);
                   fclose(file);),
        ZRCFG_TEST_USE(OPENDIR, DIR *const dir = call("Top/"); ASSERT_NE(dir, nullptr);
                       closedir(dir);),
        ZRCFG_TEST_USE(OPEN, t.fd = call(kFile, O_RDONLY); EXPECT_GE(t.fd, 0); close(t.fd);),
        ZRCFG_TEST_USE(open_create, t.fd = call("Top/new", O_WRONLY | O_CREAT); EXPECT_GE(t.fd, 0);
                       close(t.fd);),
        ZRCFG_TEST_CALL(ACCESS, 0, kFile, F_OK),
        ZRCFG_TEST_USE(LSTAT, struct stat status; EXPECT_EQ(call(kFile, &status), 0);
                       EXPECT_TRUE(S_ISREG(status.st_mode));),
        ZRCFG_TEST_USE(STAT, struct stat status; EXPECT_EQ(call("Top", &status), 0);
                       EXPECT_TRUE(S_ISDIR(status.st_mode));),
        ZRCFG_TEST_CALL(MKDIR, 0, "Top/New", 0755), ZRCFG_TEST_CALL(REMOVE, 0, kFile),
        ZRCFG_TEST_USE(RMDIR, EXPECT_EQ(call("Top"), -1);), ZRCFG_TEST_CALL(isDir, 1, "Top"),
        ZRCFG_TEST_CALL(fileCopy, 0, kFile, "Top/copy"), ZRCFG_TEST_CALL(createDir, 0, "Top/a/b"),
        ZRCFG_TEST_CALL(dirCopy, 0, "Top/Tab", "Top/Tab2"), ZRCFG_TEST_CALL(dirDel, 0, "Top/Tab"),
        ZRCFG_TEST_CALL(isDirExist, 1, "Top/"),
        ZRCFG_TEST_USE(ChangeUrlWithDirFormat, strcpy(t.text, "A.B."); call(t.text);
                       EXPECT_STREQ(t.text, "A/B/");),
        ZRCFG_TEST_USE(getPropertyFile, EXPECT_EQ(call("Top/", t.text), 0u);
                       EXPECT_STREQ(t.text, "Top/property.conf");),
        ZRCFG_TEST_USE(getLockPath, EXPECT_EQ(call("Top/Tab/1/", t.text), 0);
                       EXPECT_STREQ(t.text, "Top/Tab/0/");),
        ZRCFG_TEST_USE(getLockFile, EXPECT_EQ(call("Top/Tab/1/", t.text), 0);
                       EXPECT_STREQ(t.text, "Top/Tab/0/property.conf");),
        ZRCFG_TEST_USE(cfgGetLock, EXPECT_EQ(call(kFile, &t.fd, 0, 1), 0u); releaseLock(t.fd);),
        ZRCFG_TEST_USE(getLock, EXPECT_EQ(call("Top/", &t.fd, 0, 1), 0); releaseLock(t.fd);),
        ZRCFG_TEST_CALL(releaseLock, 0, -1), ZRCFG_TEST_CALL(isLocked, 0, kFile),
  };
}

std::vector<EveryCall> value_blocks() {
  return {
    ZRCFG_TEST_USE(getSingleParamValueByParamName, EXPECT_EQ(call(t.image, "A", t.text), 0u);
                   EXPECT_STREQ(t.text, "one");),
        ZRCFG_TEST_CALL(setSingleParamValueByParamName, 0, t.image, "A", t.value, &t.flag),
        ZRCFG_TEST_USE(set_single_param_value_by_param_name,
                       EXPECT_EQ(call(t.image, "A", t.value, &t.flag, t.old_value), 0u);
                       EXPECT_STREQ(t.old_value, "one");),
        ZRCFG_TEST_USE(set_single_param_value_by_param_name_check, char changed = 0;
                       EXPECT_EQ(call(t.image, "A", t.value, &changed, t.old_value), 0);
                       EXPECT_EQ(changed, 1);),
        ZRCFG_TEST_USE(constructParamValues, EXPECT_EQ(call(t.image, &t.table), 0);
                       EXPECT_STREQ(t.table, "one");),
        ZRCFG_TEST_USE(setParamValuesToMem, ASSERT_EQ(constructParamValues(t.image, &t.table), 0);
                       EXPECT_EQ(call(t.image, t.table), 0);),
        ZRCFG_TEST_USE(
            outputToMultiParamValueList, ASSERT_EQ(constructParamValues(t.image, &t.table), 0);
            EXPECT_EQ(call(t.image, t.table, &t.value_node), 0); EXPECT_STREQ(t.value, "one");),
        ZRCFG_TEST_USE(modiMultiParamValues, ASSERT_EQ(constructParamValues(t.image, &t.table), 0);
                       EXPECT_EQ(call(t.image, t.table, &t.value_node), 0);
                       EXPECT_STREQ(t.table, "new");),
        ZRCFG_TEST_USE(modi_multi_param_values_ext,
                       ASSERT_EQ(constructParamValues(t.image, &t.table), 0);
                       EXPECT_EQ(call(t.image, t.table, &t.value_node, &t.flag), 0);
                       EXPECT_STREQ(t.table, "one");),
        ZRCFG_TEST_USE(
            modi_multi_param_values_check, ASSERT_EQ(constructParamValues(t.image, &t.table), 0);
            EXPECT_EQ(call(t.image, t.table, &t.value_node), 0); EXPECT_STREQ(t.table, "new");),
        ZRCFG_TEST_USE(constructParamValueList, ParamValueListNode *head = nullptr;
                       EXPECT_EQ(call("U.", t.image, &head, nullptr), 0); ASSERT_NE(head, nullptr);
                       free(head->next); free(head);),
        ZRCFG_TEST_CALL(export_SetParamVal, 0, t.image, "A", t.value, 0, &t.flag),
        ZRCFG_TEST_USE(
            export_modiMultiParamValues, ASSERT_EQ(constructParamValues(t.image, &t.table), 0);
            EXPECT_EQ(call(t.image, t.table, &t.value_node, 0), 0u); EXPECT_STREQ(t.table, "new");),
        ZRCFG_TEST_CALL(modifyParentNodeNumOfEntry, 0, "Top/Tab/", "Top/TabNumberOfEntries", 0, 0),
  };
}

std::vector<EveryCall> attribute_blocks() {
  return {
    ZRCFG_TEST_USE(outputToMultiParamAttrList, EXPECT_EQ(call(t.image, &t.attr_node, 16), 0u);
                   EXPECT_EQ(t.attr.noti, 3);),
        ZRCFG_TEST_USE(constructParamAttrList, ParamAttrNode *head = nullptr;
                       EXPECT_EQ(call("U.", t.image, &head, nullptr), 0u); ASSERT_NE(head, nullptr);
                       free(head->next); free(head);),
        ZRCFG_TEST_CALL(setSingleParamAttrByParamName, 0, t.image, "A", &t.attr, 19),
        ZRCFG_TEST_CALL(setSingleParamAttrByParamName_ext, 0, t.image, "A", 3, "1"),
        ZRCFG_TEST_USE(setParamAttrCommonFunc, EXPECT_EQ(call(t.text, 9, "65"), 0u);
                       EXPECT_STREQ(t.text, "A");),
        ZRCFG_TEST_CALL(modiMultiParamAttr, 0, t.image, &t.attr_node, 19, 0),
        ZRCFG_TEST_CALL(setAllParamAttr, 0, t.image, &t.change, 0),
  };
}

std::vector<EveryCall> tree_and_setting_blocks() {
  return {
    ZRCFG_TEST_CALL(is_digit, 1, "12"),
        ZRCFG_TEST_USE(objsort, struct dirent seven = {}; struct dirent ten = {};
                       strcpy(seven.d_name, "7"); strcpy(ten.d_name, "10");
                       const struct dirent *a = &seven; const struct dirent *b = &ten;
                       EXPECT_LT(call(&a, &b), 0);),
        ZRCFG_TEST_USE(free_nlist,
                       auto **const list = static_cast<struct dirent **>(calloc(1, sizeof(void *)));
                       list[0] = static_cast<struct dirent *>(malloc(16)); call(list, 1);),
        ZRCFG_TEST_USE(constructObjList, SubObjName *list = nullptr;
                       EXPECT_EQ(call("Top/Tab/", &list), 0u); ASSERT_NE(list, nullptr);
                       EXPECT_STREQ(list->name, "1"); free(list);),
        ZRCFG_TEST_USE(get_obj_and_param_from_url, EXPECT_EQ(call("A.B", t.text, t.value), 0);
                       EXPECT_STREQ(t.value, "B");),
        ZRCFG_TEST_USE(constructNodeInfoList, NODE_INFO *head = nullptr; NODE_INFO *tail = nullptr;
                       EXPECT_EQ(call("U.", t.image, &head, &tail), 0u);
                       EXPECT_EQ(zrcfg_allnode_free(head), 0u);),
        ZRCFG_TEST_USE(list_all_node_info, NODE_INFO *head = nullptr; NODE_INFO *tail = nullptr;
                       call("Top.", &head, &tail, 0); EXPECT_NE(head, nullptr);
                       zrcfg_allnode_free(head);),
        ZRCFG_TEST_USE(exportGetObjUrlAndIndex, EXPECT_EQ(call("A.B.3.", t.text, &t.number), 0);
                       EXPECT_EQ(t.number, 3);),
        ZRCFG_TEST_USE(uci_char_transform, strcpy(t.text, "a-b"); EXPECT_EQ(call(t.text), 0);
                       EXPECT_STREQ(t.text, "a_b");),
        ZRCFG_TEST_USE(unload_ucifile, call(uci_alloc_context(), nullptr);),
        ZRCFG_TEST_USE(g_base64_char, EXPECT_EQ((*call)[63], '/');),
        ZRCFG_TEST_USE(zrcfg_log_is_inited, init_zrcfg_logger(); EXPECT_EQ(*call, 1);),
        ZRCFG_TEST_USE(zrcfg_mut, init_zrcfg_logger(); EXPECT_EQ(pthread_mutex_trylock(call), 0);
                       EXPECT_EQ(pthread_mutex_unlock(call), 0);),
  };
}

}  // namespace

const std::vector<EveryCall> &building_block_calls() {
  static const std::vector<EveryCall> all = [] {
    std::vector<EveryCall> calls;
    for (const std::vector<EveryCall> &part :
         {file_calls(), value_blocks(), attribute_blocks(), tree_and_setting_blocks()}) {
      calls.insert(calls.end(), part.begin(), part.end());
    }
    return calls;
  }();
  return all;
}

}  // namespace zrcfg_test
