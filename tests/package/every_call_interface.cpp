// One use of every symbol that the public header declares.
#include <string.h>

#include "tests/package/every_call.h"

namespace zrcfg_test {
namespace {

constexpr char kTop[] = "Top.";
constexpr char kTable[] = "Top.Tab.";
constexpr char kFixed[] = "Top.Fix.";
constexpr char kOne[] = "Top.Tab.1.";
constexpr char kConnection[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.2.WANPPPConnection.1.";

// Frees a result list and returns its length.
template <typename Node>
int freed(Node *head) {
  int count = 0;
  while (head != nullptr) {
    Node *const next = head->next;
    free(head);
    head = next;
    ++count;
  }
  return count;
}

std::vector<EveryCall> value_calls() {
  return {
    ZRCFG_TEST_USE(zrcfg_getsingleparamval, EXPECT_EQ(call(kOne, "A", t.value, 0), 0u);
                   EXPECT_STREQ(t.value, "one");),
        ZRCFG_TEST_CALL(zrcfg_setsingleparamval, 0, kOne, "A", t.value, 0),
        ZRCFG_TEST_USE(zrcfg_setsingleparamval_ext,
                       EXPECT_EQ(call(kOne, "A", t.value, 0, &t.flag), 0u);
                       EXPECT_EQ(t.flag, 1);),
        ZRCFG_TEST_USE(zrcfg_setsingleparamval_ext_get_old_value,
                       EXPECT_EQ(call(kOne, "A", t.value, 0, &t.flag, t.old_value), 0u);
                       EXPECT_STREQ(t.old_value, "one");),
        ZRCFG_TEST_USE(zrcfg_setsingleparamval_ext_get_old_value_check, char changed = 0;
                       EXPECT_EQ(call(kOne, "A", t.value, 0, &changed, t.old_value), 0);
                       EXPECT_EQ(changed, 1);),
        ZRCFG_TEST_USE(zrcfg_getmultiparamval, EXPECT_EQ(call(kOne, &t.value_node, 0), 0);
                       EXPECT_STREQ(t.value, "one");),
        ZRCFG_TEST_USE(zrcfg_setmultiparamval, EXPECT_EQ(call(kOne, &t.value_node, 0), 0);
                       EXPECT_EQ(t.value_node.changed, 1u);),
        ZRCFG_TEST_CALL(zrcfg_setmultiparamval_ext, 0, kOne, &t.value_node, 0),
        ZRCFG_TEST_USE(zrcfg_setmultiparamval_check, EXPECT_EQ(call(kOne, &t.value_node, 0), 0);
                       EXPECT_STREQ(t.value_node.old_value, "one");),
        ZRCFG_TEST_USE(zrcfg_getallparamval, ParamValueListNode *head = nullptr;
                       EXPECT_EQ(call(kOne, &head, nullptr, 0), 0); EXPECT_EQ(freed(head), 2);),
        ZRCFG_TEST_CALL(check_param_value_valid_regex, 0, 0, "any"),
        ZRCFG_TEST_CALL(zrcfg_paramvalue_check, 0, kOne, "A", t.value, 0),
        ZRCFG_TEST_USE(zrcfg_exportsingleparamval,
                       EXPECT_EQ(call(kOne, "A", t.value, 0, &t.flag), 0u);
                       EXPECT_EQ(t.flag, 1);),
        ZRCFG_TEST_CALL(zrcfg_exportmultiparamval, 0, kOne, &t.value_node, 0, 0),
  };
}

std::vector<EveryCall> object_calls() {
  return {
    ZRCFG_TEST_CALL(CheckObjExist, 0, kOne), ZRCFG_TEST_CALL(zrcfg_isobjectexist, 1, kOne),
        ZRCFG_TEST_USE(createObjByPath, ZrcfgObject *image = nullptr;
                       EXPECT_EQ(call(&image, "Top/", &t.fd, 0, 0), 0u); destroyObj(image, t.fd);),
        ZRCFG_TEST_CALL(destroyObj, 0, nullptr, -1), ZRCFG_TEST_CALL(objIsHide, 0, t.image),
        ZRCFG_TEST_CALL(paramIsHide, 0, static_cast<const char *>(t.image) + 184),
        ZRCFG_TEST_USE(zrcfg_addobject, EXPECT_EQ(call(kTable, &t.word, 0), 0u);
                       EXPECT_EQ(t.word, 2u);),
        ZRCFG_TEST_CALL(zrcfg_addobject_with_index, 0, kTable, 4, 0),
        ZRCFG_TEST_CALL(zrcfg_delobject, 0, kTable, 1, 0),
        ZRCFG_TEST_CALL(zrcfg_addobject_static, 0, kFixed, 2, 1, 0),
        ZRCFG_TEST_CALL(zrcfg_delobject_static, 0, kFixed, 1, 0),
        ZRCFG_TEST_USE(zrcfg_exportaddobject, EXPECT_EQ(call("Top.Tab.3.", 0, 0, &t.flag), 0u);
                       EXPECT_EQ(t.flag, 1);),
        ZRCFG_TEST_USE(zrcfg_exportdelobject, EXPECT_EQ(call(kOne, 0, 0, &t.flag), 0u);
                       EXPECT_EQ(t.flag, 1);),
        ZRCFG_TEST_USE(zrcfg_lockurl, EXPECT_EQ(call(kOne, &t.fd, 0, 1), 0u);
                       EXPECT_EQ(zrcfg_releaselock(t.fd), 0);),
        ZRCFG_TEST_CALL(zrcfg_islock, 0, kOne), ZRCFG_TEST_CALL(zrcfg_releaselock, 0, -1),
        ZRCFG_TEST_USE(zrcfg_getallsubobj, SubObjName *list = nullptr;
                       EXPECT_EQ(call(kTop, &list), 0u); EXPECT_EQ(freed(list), 2);),
        ZRCFG_TEST_USE(zrcfg_getsubobjinfo, NODE_INFO *head = nullptr; NODE_INFO *tail = nullptr;
                       EXPECT_EQ(call(kTop, &head, &tail, 0), 0); EXPECT_EQ(freed(head), 2);),
        ZRCFG_TEST_USE(zrcfg_getallnodeinfo, NODE_INFO *head = nullptr; NODE_INFO *tail = nullptr;
                       EXPECT_EQ(call(kOne, &head, &tail, 0), 0u); EXPECT_EQ(freed(head), 3);),
        ZRCFG_TEST_USE(zrcfg_allnode_get, NODE_INFO *head = nullptr;
                       EXPECT_EQ(call(kOne, 1, &head, 0), 0); EXPECT_EQ(freed(head), 3);),
        ZRCFG_TEST_USE(zrcfg_allnode_free,
                       auto *const node = static_cast<NODE_INFO *>(calloc(1, sizeof(NODE_INFO)));
                       EXPECT_EQ(call(node), 0u);),
        ZRCFG_TEST_USE(zrcfg_getobjidbyobjpath, EXPECT_EQ(call(kOne, t.words), 1u);
                       EXPECT_EQ(t.words[1], 1u);),
  };
}

std::vector<EveryCall> attribute_calls() {
  return {
    ZRCFG_TEST_USE(zrcfg_getsingleparamattr, EXPECT_EQ(call(kOne, "A", &t.attr, 0), 0u);
                   EXPECT_EQ(t.attr.noti, 3);),
        ZRCFG_TEST_USE(zrcfg_getsingleparamattr_ext, EXPECT_EQ(call("Top.Tab.1.A", &t.attr, 0), 0u);
                       EXPECT_EQ(t.attr.noti, 3);),
        ZRCFG_TEST_USE(zrcfg_getmultiparamattr, EXPECT_EQ(call(kOne, &t.attr_node, 16, 0), 0u);
                       EXPECT_EQ(t.attr.noti, 3);),
        ZRCFG_TEST_USE(zrcfg_getallparamattr, ParamAttrNode * ends[2] = {};
                       EXPECT_EQ(call(kOne, ends, 0, 0), 0u); EXPECT_EQ(freed(ends[0]), 2);),
        ZRCFG_TEST_CALL(zrcfg_setsingleparamattr, 0, kOne, "A", &t.attr, 19, 0),
        ZRCFG_TEST_CALL(zrcfg_setsingleparamattr_ext, 0, kOne, "A", 3, "1", 0),
        ZRCFG_TEST_CALL(zrcfg_singleparamattr_set_ext, 0, "Top.Tab.1.A", 3, "1", 0),
        ZRCFG_TEST_CALL(zrcfg_setmultiparamattr, 0, kOne, &t.attr_node, 19, 0),
        ZRCFG_TEST_CALL(zrcfg_setallParamattr, 0, kOne, &t.change, 0),
        ZRCFG_TEST_USE(zrcfg_getobjattr, EXPECT_EQ(call(kTable, &t.object, 0), 0u);
                       EXPECT_EQ(t.object.max_instance, 5);),
        ZRCFG_TEST_CALL(zrcfg_setsingleobjattr_ext, 0, kTable, 5, "6", 0),
        ZRCFG_TEST_USE(xmlurl_transform, instanceStack stack; EXPECT_EQ(call(kOne, &stack), 0);
                       EXPECT_STREQ(stack.objpathinxml, "Top.Tab.x.");),
        ZRCFG_TEST_USE(zrcfg_GetMaxWanNum, EXPECT_EQ(call(&t.word), 0u); EXPECT_EQ(t.word, 4u);),
        ZRCFG_TEST_USE(zrcfg_GetMaxConNum, EXPECT_EQ(call(&t.word), 0u); EXPECT_EQ(t.word, 2u);),
        ZRCFG_TEST_USE(zrcfg_getwanconindexfromxmlurl, EXPECT_EQ(call(kConnection, &t.index), 0);
                       EXPECT_EQ(t.index.conType, 2u);),
        ZRCFG_TEST_USE(zrcfg_getusrindexbywanconindex, EXPECT_EQ(call(&t.index, &t.word), 0);
                       EXPECT_EQ(t.word, 1u);),
        ZRCFG_TEST_USE(zrcfg_getusrindexfromxmlurl, EXPECT_EQ(call(kConnection, &t.word), 0);
                       EXPECT_EQ(t.word, 7u);),
        ZRCFG_TEST_USE(zrcfg_getwanconindexbyusrindex, EXPECT_EQ(call(7, &t.index), 0);
                       EXPECT_EQ(t.index.wanIndex, 2u);),
  };
}

std::vector<EveryCall> setting_calls() {
  return {
    ZRCFG_TEST_USE(zrcfg_log_file_path, EXPECT_STREQ(*call, "/var/zrcfg.log");),
        ZRCFG_TEST_USE(zrcfg_log_size, EXPECT_EQ(*call, 2000);),
        ZRCFG_TEST_USE(zrcfg_log_out_mode, EXPECT_EQ(*call, 1);),
        ZRCFG_TEST_CALL(init_zrcfg_logger, 0),
        ZRCFG_TEST_CALL(zrcfg_logger, 0, 7, "here", 1, "%s\n", "text"),
        ZRCFG_TEST_CALL(zrcfg_uci_get_config, -1, "/var/none", "key", t.text, 256),
        ZRCFG_TEST_USE(zrcfg_encryp_string, EXPECT_EQ(call("abc", t.text, 3), 0);
                       EXPECT_STREQ(t.text, "YWJj");),
        ZRCFG_TEST_USE(zrcfg_dencryp_string, EXPECT_EQ(call("YWJj", t.text, 256), 3);
                       EXPECT_STREQ(t.text, "abc");),
        ZRCFG_TEST_USE(hex_to_ascii, const unsigned char byte = 0xa5;
                       EXPECT_EQ(call(&byte, t.text, 1), 1); EXPECT_STREQ(t.text, "A5");),
        ZRCFG_TEST_USE(ascii_to_hex, unsigned char byte = 0; EXPECT_EQ(call("a5", &byte, 2), 1);
                       EXPECT_EQ(byte, 0xa5);),
        ZRCFG_TEST_CALL(zrcfg_get_encryptmode, 2),
        ZRCFG_TEST_USE(zrcfg_get_crytoinfo_from_encryptmode, CryptoInfo info;
                       memset(&info, 0xff, sizeof info); call(0, &info);
                       EXPECT_NE(info.workmode, 0xffffffffu);),
        ZRCFG_TEST_USE(zrcfg_init_tr069_process_flag, EXPECT_EQ(call(), 0);
                       EXPECT_EQ(zrcfg_get_tr069_process_flag(), 1);),
        ZRCFG_TEST_USE(zrcfg_get_tr069_process_flag, EXPECT_LE(call(), 1);),
  };
}

}  // namespace

const std::vector<EveryCall> &interface_calls() {
  static const std::vector<EveryCall> all = [] {
    std::vector<EveryCall> calls;
    for (const std::vector<EveryCall> &part :
         {value_calls(), object_calls(), attribute_calls(), setting_calls()}) {
      calls.insert(calls.end(), part.begin(), part.end());
    }
    return calls;
  }();
  return all;
}

}  // namespace zrcfg_test
