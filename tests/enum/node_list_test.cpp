// Tests of one object's nodes: the object and its visible parameters, codes, texts and locks.
#include <gmock/gmock.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "enum/node_info.h"
#include "tests/core/core_support.h"
#include "tests/enum/enum_support.h"
#include "tests/support/lock_holder.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

class NodeListTest : public EnumTest {
 protected:
  void store(const PropertyFile &file) {
    write_property(kDir, file);
    seal();
  }
};

std::string address(const void *pointer) {
  char text[16];
  snprintf(text, sizeof text, "%x", static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer)));
  return text;
}

TEST_F(NodeListTest, ObjectComesFirstAndParametersFollowInFileOrder) {
  store(object_file(2, {{"Zeta", 1}, {"Alpha", 0}, {"Mid", 3}}));
  const NodeList list = list_object(kUrl);
  EXPECT_EQ(list.result, 0u);
  EXPECT_THAT(list.nodes,
              ElementsAre(Node{kUrl, 2}, Node{"Gateway.Device.Zeta", 1},
                          Node{"Gateway.Device.Alpha", 0}, Node{"Gateway.Device.Mid", 3}));
  EXPECT_TRUE(list.tail_is_last);
}

TEST_F(NodeListTest, ConstructedListIsTheSame) {
  store(object_file(1, {{"A", 3}, {"B", 1, 1}, {"C", 2}}));
  const OpenedImage image;
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  ASSERT_EQ(constructNodeInfoList("Any.Text", image.get(), &head, &tail), 0u);
  EXPECT_EQ(tail, last_of(head));
  EXPECT_THAT(take_nodes(head),
              ElementsAre(Node{"Any.Text", 1}, Node{"Any.TextA", 3}, Node{"Any.TextC", 2}));
}

TEST_F(NodeListTest, EveryAccessRightIsReadFromItsOwnBits) {
  PropertyFile file = object_file(0);
  for (uint8_t rw = 0; rw < 4; ++rw) {
    file.add("plain" + std::to_string(rw), "v").rw = rw;
    ParamFields &full = file.add("full" + std::to_string(rw), "v");
    full.rw = rw;
    full.key = 15;
    full.encryt = 3;
    full.noti = 15;
    full.noti_rw = 1;
    full.flash_rw = 1;
  }
  for (uint8_t rw = 0; rw < 4; ++rw) {
    file.header.rw = rw;
    file.header.key = rw % 2 == 0 ? 15 : 0;
    file.header.flag0 = rw % 2;
    write_property(kDir, file);
    const NodeList list = list_object(kUrl);
    ASSERT_EQ(list.nodes.size(), 9u);
    EXPECT_EQ(list.nodes[0].second, rw);
    for (unsigned i = 1; i < 9; ++i) {
      EXPECT_EQ(list.nodes[i].second, (i - 1) / 2) << list.nodes[i].first;
    }
  }
}

TEST_F(NodeListTest, HiddenParametersAndThoseOfOtherDevicesAreLeftOut) {
  store(object_file(0, {{"First", 1, 1},
                        {"Shown", 1},
                        {"Other", 1, 0, 0x40},
                        {"Both", 1, 0, 0x41},
                        {"High", 1, 0, 0xC0},
                        {"Last", 1, 1, 0x01}}));
  const NodeList list = list_object(kUrl);
  EXPECT_THAT(names_of(list.nodes), ElementsAre(kUrl, "Gateway.Device.Shown", "Gateway.Device.Both",
                                                "Gateway.Device.High"));
  EXPECT_TRUE(list.tail_is_last);
}

TEST_F(NodeListTest, ObjectWithoutVisibleParametersIsOneNode) {
  for (const PropertyFile &file : {object_file(3), object_file(3, {{"Hidden", 1, 1}})}) {
    write_property(kDir, file);
    const NodeList list = list_object(kUrl);
    EXPECT_EQ(list.result, 0u);
    EXPECT_THAT(list.nodes, ElementsAre(Node{kUrl, 3}));
    EXPECT_TRUE(list.tail_is_last) << "head and tail are the same";
  }
}

TEST_F(NodeListTest, ValuesAreNotNeeded) {
  PropertyFile file = object_file(0, {{"A", 1}, {"B", 2}});
  file.values = "";
  store(file);
  EXPECT_EQ(list_object(kUrl).nodes.size(), 3u);
}

TEST_F(NodeListTest, SubObjectsAreNotAmongThem) {
  write_property("Gateway/Device/Sub/", object_file());
  store(object_file(0, {{"A"}}));
  EXPECT_EQ(list_object(kUrl).nodes.size(), 2u);
}

TEST_F(NodeListTest, LargestObjectIsServedAndACountOf256IsNone) {
  PropertyFile file = object_file(1);
  for (int i = 0; i < 255; ++i) {
    file.add("P" + std::to_string(i), "v").rw = static_cast<uint8_t>(i % 4);
  }
  write_property(kDir, file);
  std::vector<Node> nodes = list_object(kUrl).nodes;
  ASSERT_EQ(nodes.size(), 256u);
  EXPECT_EQ(nodes[255], (Node{"Gateway.Device.P254", 254 % 4}));
  file.add("P255", "v");
  write_property(kDir, file);
  EXPECT_EQ(list_object(kUrl).nodes.size(), 1u);
  file.add("P256", "v");
  write_property(kDir, file);
  EXPECT_THAT(names_of(list_object(kUrl).nodes), ElementsAre(kUrl, "Gateway.Device.P0"));
}

TEST_F(NodeListTest, NamesWithoutTerminatorEndAtTheirField) {
  store(object_file(0, {{std::string(63, 'n'), 1}, {std::string(64, 'm'), 2}}));
  EXPECT_THAT(list_object(kUrl).nodes,
              ElementsAre(Node{kUrl, 0}, Node{kUrl + std::string(63, 'n'), 1},
                          Node{kUrl + std::string(64, 'm'), 2}));
}

TEST_F(NodeListTest, LongestUrlIsServedWithItsParametersCutAtTheField) {
  const std::string url = deep_url(255);
  write_property(dir_of(url), object_file(1, {{"Name", 1}}));
  seal();
  EXPECT_THAT(list_object(url).nodes, ElementsAre(Node{url, 1}, Node{url, 1}));
  const std::string shorter = deep_url(252);
  write_property(dir_of(shorter), object_file(1, {{"Name", 1}}));
  EXPECT_THAT(list_object(shorter).nodes, ElementsAre(Node{shorter, 1}, Node{shorter + "Nam", 1}));
  seal();
}

TEST_F(NodeListTest, SuccessLogsUrlThenHeadThenTail) {
  store(object_file(0, {{"First"}, {"Last"}}));
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  ASSERT_EQ(zrcfg_getallnodeinfo(kUrl, &head, &tail, 0), 0u);
  const std::vector<std::string> expected = {
      "objUrl =  Gateway.Device.\n", "Head=0x" + address(head) + " url=Gateway.Device.\n",
      "Tail=0x" + address(tail) + " url=Gateway.Device.Last\n"};
  EXPECT_TRUE(log_has_in_order(expected));
  for (const std::string &line : expected) {
    EXPECT_EQ(log_count(line), 1u) << line;
  }
  EXPECT_EQ(take_nodes(head).size(), 3u);
}

TEST_F(NodeListTest, NullUrlIsRefusedWithItsTextAlone) {
  NODE_INFO mark = {};
  NODE_INFO *head = &mark;
  NODE_INFO *tail = &mark;
  EXPECT_EQ(zrcfg_getallnodeinfo(nullptr, &head, &tail, 0), 10u);
  EXPECT_THAT(log_texts(), ElementsAre("Input parameters can't be NULL\n"));
  EXPECT_EQ(head, &mark);
  EXPECT_EQ(tail, &mark);
}

TEST_F(NodeListTest, ConstructingFromNullIsRefusedWithItsTextAlone) {
  store(object_file());
  const OpenedImage image;
  NODE_INFO mark = {};
  NODE_INFO *head = &mark;
  NODE_INFO *tail = &mark;
  EXPECT_EQ(constructNodeInfoList(nullptr, image.get(), &head, &tail), 10u);
  EXPECT_THAT(log_texts(), ElementsAre("Input parameters can't be NULL\n"));
  clear_log();
  EXPECT_EQ(constructNodeInfoList(kUrl, nullptr, &head, &tail), 10u);
  EXPECT_THAT(log_texts(), ElementsAre("Input parameters can't be NULL\n"));
  EXPECT_EQ(head, &mark);
  EXPECT_EQ(tail, &mark);
}

TEST_F(NodeListTest, NullOutputsAreNotStored) {
  store(object_file(0, {{"A"}}));
  EXPECT_EQ(zrcfg_getallnodeinfo(kUrl, nullptr, nullptr, 0), 0u);
  NODE_INFO *head = nullptr;
  EXPECT_EQ(zrcfg_getallnodeinfo(kUrl, &head, nullptr, 0), 0u);
  EXPECT_EQ(take_nodes(head).size(), 2u);
  NODE_INFO mark = {};
  NODE_INFO *tail = &mark;
  EXPECT_EQ(zrcfg_getallnodeinfo(kUrl, nullptr, &tail, 0), 0u);
  const OpenedImage image;
  EXPECT_EQ(constructNodeInfoList(kUrl, image.get(), nullptr, nullptr), 0u);
}

TEST_F(NodeListTest, UrlOf256CharactersGives1WithoutTouchingAFile) {
  const std::string url = deep_url(256);
  const NodeList list = list_object(url);
  EXPECT_EQ(list.result, 1u);
  EXPECT_FALSE(list.written);
  EXPECT_THAT(log_texts(),
              ElementsAre("objUrl =  " + url + "\n", "pObjUrl len=256 out of range!\n"));
}

TEST_F(NodeListTest, HiddenObjectGives1WithItsTexts) {
  PropertyFile other = object_file();
  other.header.device_type = 0x40;
  for (const PropertyFile &file : {hidden_file(), other}) {
    write_property(kDir, file);
    clear_log();
    const NodeList list = list_object(kUrl);
    EXPECT_EQ(list.result, 1u);
    EXPECT_FALSE(list.written);
    EXPECT_THAT(enum_log(),
                ElementsAre("objUrl =  Gateway.Device.\n", "objIsHid() ret=1,no need show!\n",
                            "getParamValueList() fail ret=1!\n"));
    EXPECT_TRUE(exclusively_lockable(kFile));
  }
}

TEST_F(NodeListTest, ObjectThatCannotBeOpenedGivesTheOpeningsCode) {
  make_store_dir("Bare/");
  write_property("Malformed/", std::string("\0\0\0\1x", 5));
  write_property("T/0/", object_file());
  make_store_dir("T/1/");
  seal();
  struct Row {
    const char *url;
    int timeout;
    uint32_t result;
  };
  for (const auto &[url, timeout, result] :
       {Row{"Bare.", 0, 9}, Row{"Bare.", -2, 8}, Row{"None.", 0, 9}, Row{"None.", -2, 8},
        Row{"T.1.", 0, 8}, Row{"T.1.", -2, 8}, Row{"T.7.", 0, 8}, Row{"T", 0, 9},
        Row{"Malformed.", 0, 10}, Row{"Malformed.", -2, 10}}) {
    clear_log();
    const NodeList list = list_object(url, timeout);
    EXPECT_EQ(list.result, result) << url << " " << timeout;
    EXPECT_FALSE(list.written) << url;
    EXPECT_THAT(enum_log(),
                ElementsAre(std::string("objUrl =  ") + url + "\n",
                            "createObjByPath() fail ret=" + std::to_string(result) + "!\n"));
  }
}

TEST_F(NodeListTest, LockedObjectGives9UnlessNoLockIsTaken) {
  store(object_file(0, {{"A"}}));
  const LockHolder holder(kFile, Held::kExclusive);
  for (const int timeout : {0, 5, 20}) {
    const NodeList list = list_object(kUrl, timeout);
    EXPECT_EQ(list.result, 9u) << timeout;
    EXPECT_FALSE(list.written);
  }
  EXPECT_EQ(list_object(kUrl, -2).nodes.size(), 2u);
}

TEST_F(NodeListTest, SharedLockOfAnotherProcessDoesNotMatter) {
  store(object_file(0, {{"A"}}));
  const LockHolder holder(kFile, Held::kShared);
  EXPECT_EQ(list_object(kUrl, 0).nodes.size(), 2u);
}

TEST_F(NodeListTest, FreeingNullAndAListGives0) {
  EXPECT_EQ(zrcfg_allnode_free(nullptr), 0u);
  auto *const second = static_cast<NODE_INFO *>(calloc(1, sizeof(NODE_INFO)));
  auto *const first = static_cast<NODE_INFO *>(calloc(1, sizeof(NODE_INFO)));
  ASSERT_NE(first, nullptr);
  first->next = second;
  EXPECT_EQ(zrcfg_allnode_free(first), 0u);
}

}  // namespace
}  // namespace zrcfg_test
