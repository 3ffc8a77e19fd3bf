// Tests of the records of an object's visible sub-objects: content, order, codes, texts, locks.
#include <gmock/gmock.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/core/core_support.h"
#include "tests/enum/enum_support.h"
#include "tests/support/lock_holder.h"
#include "tests/support/scan_hook.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SubObjectInfoTest : public EnumTest {
 protected:
  // The table A.T. with a template and the instances 1, 2 and 10, and the single objects A.S., A.u.
  void store_table() {
    write_property("A/", object_file());
    write_property("A/S/", object_file(3));
    write_property("A/u/", object_file(0));
    write_property("A/T/", object_file(1));
    for (const char *instance : {"10", "0", "2", "1"}) {
      write_property(std::string("A/T/") + instance + "/", object_file(1));
    }
    seal();
  }
};

TEST_F(SubObjectInfoTest, RecordsHoldUrlAndAccessRightInOrder) {
  store_table();
  const NodeList objects = list_children("A.");
  EXPECT_EQ(objects.result, 0u);
  EXPECT_THAT(objects.nodes, ElementsAre(Node{"A.S.", 3}, Node{"A.T.", 1}, Node{"A.u.", 0}));
  EXPECT_TRUE(objects.tail_is_last);
  const NodeList instances = list_children("A.T.");
  EXPECT_THAT(instances.nodes,
              ElementsAre(Node{"A.T.1.", 1}, Node{"A.T.2.", 1}, Node{"A.T.10.", 1}));
  EXPECT_TRUE(instances.tail_is_last);
}

TEST_F(SubObjectInfoTest, EveryAccessRightIsReadFromItsOwnBits) {
  for (uint8_t rw = 0; rw < 4; ++rw) {
    PropertyFile file = object_file(rw);
    file.header.key = 15;
    file.header.flag0 = 1;
    file.header.level3 = 0xff;
    write_property("A/rw" + std::to_string(rw) + "/", file);
    file = object_file(rw);
    write_property("A/sw" + std::to_string(rw) + "/", file);
  }
  seal();
  std::vector<Node> expected;
  for (const char *stem : {"A.rw", "A.sw"}) {
    for (unsigned rw = 0; rw < 4; ++rw) {
      expected.emplace_back(stem + std::to_string(rw) + ".", rw);
    }
  }
  EXPECT_EQ(list_children("A.").nodes, expected);
}

TEST_F(SubObjectInfoTest, HiddenChildrenAndOtherKindsOfDeviceAreLeftOut) {
  PropertyFile other = object_file();
  other.header.device_type = 0x40;
  PropertyFile both = object_file(2);
  both.header.device_type = 0xC0;
  write_property("A/Both/", both);
  write_property("A/Hidden/", hidden_file());
  write_property("A/Other/", other);
  seal();
  const NodeList list = list_children("A.");
  EXPECT_EQ(list.result, 0u);
  EXPECT_THAT(list.nodes, ElementsAre(Node{"A.Both.", 2}));
  EXPECT_TRUE(list.tail_is_last) << "the tail is the last record that was made";
}

TEST_F(SubObjectInfoTest, ChildrenThatCannotBeOpenedAreSkippedWithoutAMessage) {
  make_store_dir("A/Bare/");
  write_property("A/Malformed/", std::string("\0\0\0\1x", 5));
  write_property("A/Good/", object_file(1));
  make_store_dir("A/Unopenable/");
  make_unopenable("A/Unopenable/property.conf");
  seal();
  const NodeList list = list_children("A.");
  EXPECT_EQ(list.result, 0u);
  EXPECT_THAT(list.nodes, ElementsAre(Node{"A.Good.", 1}));
  EXPECT_THAT(enum_log(), ElementsAre("objUrl =  A.\n"));
}

TEST_F(SubObjectInfoTest, NoChildGivesNullEndsAnd0) {
  write_property("A/", object_file());
  write_property("H/Hidden/", hidden_file());
  make_store_dir("Empty/");
  seal();
  for (const char *url : {"A.", "H.", "Empty."}) {
    const NodeList list = list_children(url);
    EXPECT_EQ(list.result, 0u) << url;
    EXPECT_TRUE(list.written) << url;
    EXPECT_THAT(list.nodes, IsEmpty()) << url;
    EXPECT_TRUE(list.tail_is_last) << url << ": both ends are null";
  }
}

TEST_F(SubObjectInfoTest, TheObjectItselfNeedsNoFileAndMayBeHidden) {
  write_property("Bare/Child/", object_file(2));
  write_property("Hidden/Child/", object_file(2));
  write_property("Hidden/", hidden_file());
  seal();
  EXPECT_THAT(list_children("Bare.").nodes, ElementsAre(Node{"Bare.Child.", 2}));
  EXPECT_THAT(list_children("Hidden.").nodes, ElementsAre(Node{"Hidden.Child.", 2}));
}

TEST_F(SubObjectInfoTest, NullUrlIsRefusedWithItsTextAlone) {
  NODE_INFO mark = {};
  NODE_INFO *head = &mark;
  NODE_INFO *tail = &mark;
  EXPECT_EQ(zrcfg_getsubobjinfo(nullptr, &head, &tail, 0), 10);
  EXPECT_THAT(log_texts(), ElementsAre("Input parameters can't be NULL!\n"));
  EXPECT_EQ(head, &mark);
  EXPECT_EQ(tail, &mark);
}

TEST_F(SubObjectInfoTest, NullOutputsAreNotStored) {
  store_table();
  EXPECT_EQ(zrcfg_getsubobjinfo("A.", nullptr, nullptr, 0), 0);
  NODE_INFO *head = nullptr;
  EXPECT_EQ(zrcfg_getsubobjinfo("A.", &head, nullptr, 0), 0);
  EXPECT_EQ(take_nodes(head).size(), 3u);
  NODE_INFO mark = {};
  NODE_INFO *tail = &mark;
  EXPECT_EQ(zrcfg_getsubobjinfo("A.", nullptr, &tail, 0), 0);
}

TEST_F(SubObjectInfoTest, UrlOf256CharactersGives1WithItsText) {
  const std::string url = deep_url(256);
  const NodeList list = list_children(url);
  EXPECT_EQ(list.result, 1u);
  EXPECT_FALSE(list.written);
  EXPECT_THAT(log_texts(),
              ElementsAre("objUrl =  " + url + "\n", "pObjUrl len=256 out of range!\n"));
}

TEST_F(SubObjectInfoTest, DirectoryThatCannotBeScannedGives1WithItsText) {
  write_property("A/B/", object_file());
  seal();
  for (const char *url : {"None.", "A.B.C.", "A.B.property.conf"}) {
    clear_log();
    const NodeList list = list_children(url);
    EXPECT_EQ(list.result, 1u) << url;
    EXPECT_FALSE(list.written) << url;
    EXPECT_THAT(log_texts(), ElementsAre(std::string("objUrl =  ") + url + "\n",
                                         "unable to get " + dir_of(url) + " sub directory\n"));
  }
  clear_log();
  const ScanHook hook(failing_scan("A/", EMFILE));
  EXPECT_EQ(list_children("A.").result, 1u);
  EXPECT_THAT(log_texts(), ElementsAre("objUrl =  A.\n", "unable to get A/ sub directory\n"));
}

TEST_F(SubObjectInfoTest, UrlStandsUnchangedInFrontOfTheNames) {
  store_table();
  EXPECT_THAT(names_of(list_children("A/T.").nodes), ElementsAre("A/T.1.", "A/T.2.", "A/T.10."));
  EXPECT_THAT(names_of(list_children("").nodes), ElementsAre("A."));
  EXPECT_THAT(list_children("A.T").nodes, IsEmpty())
      << "without the final dot the child's path has no separator";
}

TEST_F(SubObjectInfoTest, WholeNamesBeyond63CharactersAreServed) {
  write_property("A/", object_file());
  std::vector<std::string> expected;
  for (const size_t length : {63u, 64u, 65u, 128u, 200u}) {
    const std::string name =
        static_cast<char>('a' + expected.size()) + std::string(length - 1, 'n');
    write_property("A/" + name + "/", object_file());
    expected.push_back("A." + name + ".");
  }
  seal();
  EXPECT_EQ(names_of(list_children("A.").nodes), expected);
}

TEST_F(SubObjectInfoTest, ChildUrlOf255CharactersIsListed) {
  const std::string name(252, 'n');
  write_property("A/" + name + "/", object_file(1));
  seal();
  EXPECT_THAT(list_children("A.").nodes, ElementsAre(Node{"A." + name + ".", 1}));
}

// No call could serve such a child, so that it may be missing.
TEST_F(SubObjectInfoTest, LongerChildUrlsAreLeftOutOrCutNeverOverrun) {
  for (const size_t length : {size_t{253}, size_t{254}, longest_name()}) {
    write_property("A/" + std::string(length, 'n') + "/", object_file(1));
  }
  write_property("A/z/", object_file(2));
  seal();
  const NodeList list = list_children("A.");
  EXPECT_EQ(list.result, 0u);
  ASSERT_FALSE(list.nodes.empty());
  EXPECT_EQ(list.nodes.back(), (Node{"A.z.", 2}));
  for (const Node &node : list.nodes) {
    EXPECT_LE(node.first.size(), 255u);
  }
}

TEST_F(SubObjectInfoTest, ThousandChildrenComeByValue) {
  write_property("T/0/", object_file());
  std::vector<Node> expected;
  for (unsigned i = 1000; i >= 1; --i) {
    write_property("T/" + std::to_string(i) + "/", object_file(static_cast<uint8_t>(i % 4)));
  }
  for (unsigned i = 1; i <= 1000; ++i) {
    expected.emplace_back("T." + std::to_string(i) + ".", i % 4);
  }
  const NodeList list = list_children("T.");
  EXPECT_EQ(list.nodes, expected);
  EXPECT_TRUE(list.tail_is_last);
}

TEST_F(SubObjectInfoTest, LockedChildIsLeftOutAndOthersStay) {
  store_table();
  const LockHolder holder("A/S/property.conf", Held::kExclusive);
  const NodeList list = list_children("A.", 0);
  EXPECT_EQ(list.result, 0u);
  EXPECT_THAT(names_of(list.nodes), ElementsAre("A.T.", "A.u."));
  EXPECT_THAT(names_of(list_children("A.", 20).nodes), ElementsAre("A.T.", "A.u."));
  EXPECT_THAT(names_of(list_children("A.", -2).nodes), ElementsAre("A.S.", "A.T.", "A.u."));
}

TEST_F(SubObjectInfoTest, SharedLockOfAnotherProcessDoesNotMatter) {
  store_table();
  const LockHolder holder("A/S/property.conf", Held::kShared);
  EXPECT_EQ(list_children("A.", 0).nodes.size(), 3u);
}

TEST_F(SubObjectInfoTest, LockedTemplateHidesAllInstances) {
  store_table();
  const LockHolder holder("A/T/0/property.conf", Held::kExclusive);
  EXPECT_THAT(list_children("A.T.", 0).nodes, IsEmpty());
  EXPECT_EQ(list_children("A.T.", -2).nodes.size(), 3u);
}

TEST_F(SubObjectInfoTest, LockOnTheObjectItselfDoesNotMatter) {
  store_table();
  const LockHolder holder("A/property.conf", Held::kExclusive);
  EXPECT_EQ(list_children("A.", 0).nodes.size(), 3u);
}

TEST_F(SubObjectInfoTest, TimeoutOf1To9NeverLocksSoThatNoChildIsListed) {
  store_table();
  for (const int timeout : {1, 5, 9}) {
    const NodeList list = list_children("A.", timeout);
    EXPECT_EQ(list.result, 0u);
    EXPECT_THAT(list.nodes, IsEmpty()) << timeout;
  }
  EXPECT_EQ(list_children("A.", 10).nodes.size(), 3u);
}

TEST_F(SubObjectInfoTest, TimeoutWaitsForAChild) {
  store_table();
  for (const int timeout : {10000, -1}) {
    LockHolder holder("A/S/property.conf", Held::kExclusive);
    std::thread releaser([&holder] {
      std::this_thread::sleep_for(std::chrono::milliseconds(60));
      holder.release();
    });
    const NodeList list = list_children("A.", timeout);
    releaser.join();
    EXPECT_EQ(list.nodes.size(), 3u) << timeout;
  }
}

TEST_F(SubObjectInfoTest, EachChildWaitsForItsOwnTimeout) {
  store_table();
  const LockHolder first("A/S/property.conf", Held::kExclusive);
  const LockHolder second("A/u/property.conf", Held::kExclusive);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THAT(names_of(list_children("A.", 50).nodes), ElementsAre("A.T."));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
}

TEST_F(SubObjectInfoTest, ChildRemovedBehindTheScanIsSkipped) {
  store_table();
  ScanHooks hooks;
  hooks.after = [](const std::string &, const std::vector<ScannedEntry> &) {
    std::filesystem::rename("/var/A/S", "/var/gone");
  };
  {
    const ScanHook hook(hooks);
    const NodeList list = list_children("A.");
    EXPECT_EQ(list.result, 0u);
    EXPECT_THAT(names_of(list.nodes), ElementsAre("A.T.", "A.u."));
  }
  std::filesystem::rename("/var/gone", "/var/A/S");
  seal();
}

TEST_F(SubObjectInfoTest, SuccessLogsTheUrlOnce) {
  store_table();
  EXPECT_EQ(list_children("A.").result, 0u);
  EXPECT_THAT(enum_log(), ElementsAre("objUrl =  A.\n"));
}

}  // namespace
}  // namespace zrcfg_test
