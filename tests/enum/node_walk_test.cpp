// Tests of the recursive walk called directly: what it appends, leaves out, enters, and when it
// gives a list up.
#include <gmock/gmock.h>
#include <stdlib.h>
#include <string.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "enum/node_info.h"
#include "tests/core/core_support.h"
#include "tests/enum/enum_support.h"
#include "tests/support/lock_holder.h"
#include "tests/support/scan_hook.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NodeWalkTest : public EnumTest {
 protected:
  // The object A with a parameter, the sub-objects B (with a sub-object) and C.
  void store_tree() {
    write_property("A/", object_file(0, {{"P", 1}}));
    write_property("A/B/", object_file(0));
    write_property("A/B/D/", object_file(0));
    write_property("A/C/", object_file(0));
    seal();
  }

  // What a walk of the URL appends to an empty list.
  static std::vector<std::string> walked(const std::string &url, int timeout = 0) {
    NODE_INFO *head = nullptr;
    NODE_INFO *tail = nullptr;
    list_all_node_info(url.c_str(), &head, &tail, timeout);
    EXPECT_EQ(head == nullptr, tail == nullptr);
    EXPECT_EQ(tail, last_of(head));
    return names_of(take_nodes(head));
  }

  static NODE_INFO *new_node(const char *name, NODE_INFO *next) {
    auto *const node = static_cast<NODE_INFO *>(calloc(1, sizeof(NODE_INFO)));
    strcpy(node->name, name);
    node->next = next;
    return node;
  }
};

TEST_F(NodeWalkTest, EachObjectIsFollowedByItsParametersAndThenItsSubObjects) {
  store_tree();
  EXPECT_THAT(walked("A."), ElementsAre("A.", "A.P", "A.B.", "A.B.D.", "A.C."));
}

TEST_F(NodeWalkTest, EveryObjectLogsItsUrlInPreOrder) {
  store_tree();
  (void)walked("A.");
  EXPECT_THAT(enum_log(), ElementsAre("objUrl=A.\n", "objUrl =  A.\n", "objUrl =  A.\n",
                                      "objUrl=A.B.\n", "objUrl =  A.B.\n", "objUrl =  A.B.\n",
                                      "objUrl=A.B.D.\n", "objUrl =  A.B.D.\n", "objUrl =  A.B.D.\n",
                                      "objUrl=A.C.\n", "objUrl =  A.C.\n", "objUrl =  A.C.\n"));
}

TEST_F(NodeWalkTest, NullPointersDoNothingAtAll) {
  store_tree();
  NODE_INFO mark = {};
  NODE_INFO *end = &mark;
  list_all_node_info(nullptr, &end, &end, 0);
  list_all_node_info("A.", nullptr, &end, 0);
  list_all_node_info("A.", &end, nullptr, 0);
  EXPECT_EQ(end, &mark);
  EXPECT_THAT(log_texts(), IsEmpty());
}

TEST_F(NodeWalkTest, AppendsBehindAListThatIsThere) {
  store_tree();
  NODE_INFO *tail = new_node("second", nullptr);
  NODE_INFO *head = new_node("first", tail);
  NODE_INFO *const first = head;
  list_all_node_info("A.B.", &head, &tail, 0);
  EXPECT_EQ(head, first);
  EXPECT_EQ(tail, last_of(head));
  EXPECT_THAT(names_of(take_nodes(head)), ElementsAre("first", "second", "A.B.", "A.B.D."));
}

TEST_F(NodeWalkTest, TailOfAnEmptyListIsNotLookedAt) {
  store_tree();
  NODE_INFO stale = {};
  stale.next = &stale;
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = &stale;
  list_all_node_info("A.C.", &head, &tail, 0);
  EXPECT_EQ(tail, head);
  EXPECT_THAT(names_of(take_nodes(head)), ElementsAre("A.C."));
}

TEST_F(NodeWalkTest, TailThatIsNotTheEndDropsTheListAndEndsTheWalkThere) {
  store_tree();
  NODE_INFO *tail = new_node("second", new_node("third", nullptr));
  NODE_INFO *head = new_node("first", tail);
  list_all_node_info("A.", &head, &tail, 0);
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(log_count("objUrl=A. last List error!\n"), 1u);
  EXPECT_FALSE(log_contains("objUrl=A.B.\n")) << "the sub-objects are not walked";
}

TEST_F(NodeWalkTest, MissingTailDropsTheList) {
  store_tree();
  NODE_INFO *tail = nullptr;
  NODE_INFO *head = new_node("first", new_node("second", nullptr));
  list_all_node_info("A.C.", &head, &tail, 0);
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(enum_log().back(), "objUrl=A.C. last List error!\n");
}

// An object that contributes nothing leaves a broken list to its sub-objects: the first drops it,
// the walk goes on with an empty list.
TEST_F(NodeWalkTest, WalkContinuesFromAnEmptyListBehindABrokenOne) {
  write_property("T/0/", object_file());
  make_store_dir("T/1/");
  for (const char *name : {"A", "B", "C"}) {
    write_property(std::string("T/1/") + name + "/", object_file());
  }
  write_property("T/1/A/Lost/", object_file());
  seal();
  NODE_INFO *tail = new_node("second", new_node("third", nullptr));
  NODE_INFO *head = new_node("first", tail);
  list_all_node_info("T.1.", &head, &tail, 0);
  EXPECT_EQ(tail, last_of(head));
  EXPECT_THAT(names_of(take_nodes(head)), ElementsAre("T.1.B.", "T.1.C."));
  EXPECT_EQ(log_count("objUrl=T.1.A. last List error!\n"), 1u);
}

TEST_F(NodeWalkTest, HiddenObjectLeavesOutItsWholeSubtree) {
  write_property("A/", object_file());
  write_property("A/Hidden/", hidden_file());
  write_property("A/Hidden/Sub/", object_file());
  write_property("A/Z/", object_file());
  seal();
  EXPECT_THAT(walked("A."), ElementsAre("A.", "A.Z."));
  EXPECT_EQ(log_count("objUrl=A.Hidden. not exist or hide!\n"), 1u);
  EXPECT_FALSE(log_contains("objUrl=A.Hidden.Sub.\n"));
  EXPECT_THAT(walked("A.Hidden."), IsEmpty());
  EXPECT_THAT(walked("A.Hidden.Sub."), ElementsAre("A.Hidden.Sub."))
      << "a walk that begins below does not look up";
}

TEST_F(NodeWalkTest, TooLongUrlCountsAsHidden) {
  const std::string url = deep_url(256);
  EXPECT_THAT(walked(url), IsEmpty());
  EXPECT_THAT(enum_log(), ElementsAre("objUrl=" + url + "\n", "objUrl =  " + url + "\n",
                                      "pObjUrl len=256 out of range!\n",
                                      "objUrl=" + url + " not exist or hide!\n"));
}

TEST_F(NodeWalkTest, TemplateIsNeverEnteredButMayBeTheBeginning) {
  write_property("T/", object_file(1));
  write_property("T/0/", object_file(1, {{"P"}}));
  write_property("T/0/Sub/", object_file());
  write_property("T/2/", object_file(1));
  write_property("T/2/U/0/", object_file(1));
  write_property("T/2/U/", object_file(1));
  seal();
  EXPECT_THAT(walked("T."), ElementsAre("T.", "T.2.", "T.2.U."));
  EXPECT_FALSE(log_contains("objUrl=T.0.\n"));
  EXPECT_THAT(walked("T.0."), ElementsAre("T.0.", "T.0.P", "T.0.Sub."));
}

TEST_F(NodeWalkTest, ObjectWithoutFileUnderATemplateIsWalkedThrough) {
  write_property("T/0/", object_file());
  make_store_dir("T/1/Bare/");
  write_property("T/1/Bare/Deep/", object_file(0, {{"P"}}));
  write_property("T/1/", object_file());
  seal();
  EXPECT_THAT(walked("T.1."), ElementsAre("T.1.", "T.1.Bare.Deep.", "T.1.Bare.Deep.P"));
}

TEST_F(NodeWalkTest, ObjectWithoutLockFileIsNotEntered) {
  write_property("A/", object_file());
  make_store_dir("A/Bare/");
  write_property("A/Bare/Deep/", object_file());
  seal();
  for (const int timeout : {0, -1, -2}) {
    EXPECT_THAT(walked("A.", timeout), ElementsAre("A.")) << timeout;
  }
  EXPECT_THAT(walked("A.Bare."), IsEmpty());
}

TEST_F(NodeWalkTest, MalformedObjectContributesNothingButItsSubObjectsDo) {
  write_property("A/", object_file());
  write_property("A/Bad/", std::string("\0\0\0\1x", 5));
  write_property("A/Bad/Good/", object_file());
  seal();
  EXPECT_THAT(walked("A."), ElementsAre("A.", "A.Bad.Good."));
}

TEST_F(NodeWalkTest, LockedObjectAndWhatIsBelowItAreLeftOut) {
  store_tree();
  const LockHolder holder("A/B/property.conf", Held::kExclusive);
  EXPECT_THAT(walked("A.", 0), ElementsAre("A.", "A.P", "A.C."));
  EXPECT_THAT(walked("A.", 20), ElementsAre("A.", "A.P", "A.C."));
}

TEST_F(NodeWalkTest, ObjectMadeAnewDuringTheWaitIsTheOneThatIsListed) {
  for (const int timeout : {ZRCFG_WAIT_FOREVER, 3000}) {
    store_tree();
    LockHolder holder("A/B/property.conf", Held::kExclusive);
    std::thread other([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      std::filesystem::remove_all(store_path("A/B"));
      write_property("A/B/", object_file(0, {{"New", 0}}));
      write_property("A/B/E/", object_file());
      holder.release();
    });
    const std::vector<std::string> names = walked("A.", timeout);
    other.join();
    EXPECT_THAT(names, ElementsAre("A.", "A.P", "A.B.", "A.B.New", "A.B.E.", "A.C.")) << timeout;
    std::filesystem::remove_all(store_path("A/B"));
    seal();
  }
}

// The listing of the sub-objects takes its lock whatever the time-out says.
TEST_F(NodeWalkTest, LockedObjectIsListedButNotEnteredWhenNoLockIsTaken) {
  store_tree();
  const LockHolder holder("A/B/property.conf", Held::kExclusive);
  EXPECT_THAT(walked("A.", -2), ElementsAre("A.", "A.P", "A.B.", "A.C."));
}

// Likewise a time-out that never tries to lock: the sub-objects are listed, none can be opened.
TEST_F(NodeWalkTest, TimeoutOf1To9OpensNoObject) {
  store_tree();
  EXPECT_THAT(walked("A.", 5), IsEmpty());
  EXPECT_TRUE(log_contains("objUrl=A.B.D.\n")) << "but every object is visited";
}

TEST_F(NodeWalkTest, NamesOver63CharactersAreWalkedUnderTheirCutName) {
  write_property("A/", object_file());
  const std::string fits(63, 'f');
  const std::string longer(64, 'g');
  write_property("A/" + fits + "/", object_file());
  write_property("A/" + longer + "/", object_file());
  seal();
  EXPECT_THAT(walked("A."), ElementsAre("A.", "A." + fits + "."))
      << "there is no object of the cut name";
}

TEST_F(NodeWalkTest, FailedScanLeavesOutTheSubObjectsOfThatObjectOnly) {
  store_tree();
  const ScanHook hook(failing_scan("A/B/", EMFILE));
  EXPECT_THAT(walked("A."), ElementsAre("A.", "A.P", "A.B.", "A.C."));
}

}  // namespace
}  // namespace zrcfg_test
