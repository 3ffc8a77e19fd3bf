// Tests of the one call for a whole tree or for an object with its children, and its -1 cases.
#include <errno.h>
#include <gmock/gmock.h>
#include <pthread.h>

#include <string>
#include <vector>

#include "tests/core/core_support.h"
#include "tests/enum/enum_support.h"
#include "tests/support/lock_holder.h"
#include "tests/support/scan_hook.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr uint32_t kFailed = 0xFFFFFFFFu;
constexpr size_t kSmallStack = 512 * 1024;

class AllNodeTest : public EnumTest {
 protected:
  static void expect_failed(const NodeList &list) {
    EXPECT_EQ(list.result, kFailed);
    EXPECT_FALSE(list.written) << "nothing is stored";
  }
};

TEST_F(AllNodeTest, FlatListIsObjectParametersAndDirectSubObjects) {
  write_property("A/", object_file(2, {{"P", 1}, {"H", 1, 1}, {"Q", 0}}));
  write_property("A/2/", object_file(3, {{"Inner"}}));
  write_property("A/1/", object_file(1));
  write_property("A/1/Below/", object_file());
  write_property("A/0/", object_file());
  write_property("A/Hidden/", hidden_file());
  make_store_dir("A/Bare/");
  seal();
  const NodeList list = list_all("A.", 0);
  EXPECT_EQ(list.result, 0u);
  EXPECT_THAT(list.nodes, ElementsAre(Node{"A.", 2}, Node{"A.P", 1}, Node{"A.Q", 0},
                                      Node{"A.1.", 1}, Node{"A.2.", 3}));
}

TEST_F(AllNodeTest, FlatListOfALeafIsTheObjectAlone) {
  write_property("A/", object_file(1));
  seal();
  EXPECT_THAT(list_all("A.", 0).nodes, ElementsAre(Node{"A.", 1}));
  EXPECT_THAT(list_all("A.", 1).nodes, ElementsAre(Node{"A.", 1}));
}

TEST_F(AllNodeTest, EveryNonzeroFlagIsRecursive) {
  write_property("A/", object_file(1, {{"P", 3}}));
  write_property("A/1/", object_file(1, {{"Q", 1}}));
  write_property("A/1/S/", object_file(0));
  seal();
  for (const int recursive : {1, 2, -1, 256, 0x7fffffff}) {
    EXPECT_THAT(list_all("A.", recursive).nodes,
                ElementsAre(Node{"A.", 1}, Node{"A.P", 3}, Node{"A.1.", 1}, Node{"A.1.Q", 1},
                            Node{"A.1.S.", 0}))
        << recursive;
  }
}

TEST_F(AllNodeTest, HiddenMissingAndMalformedObjectsGiveMinusOne) {
  write_property("Hidden/", hidden_file());
  write_property("Hidden/Sub/", object_file());
  write_property("Malformed/", std::string("\0\0\0\1x", 5));
  make_store_dir("Bare/");
  write_property("Bare/Sub/", object_file());
  seal();
  const std::string too_long = deep_url(256);
  for (const std::string url :
       {"Hidden.", "Malformed.", "Bare.", "None.", "Hidden", too_long.c_str()}) {
    for (const int recursive : {0, 1}) {
      for (const int timeout : {0, -2}) {
        SCOPED_TRACE(url + " " + std::to_string(recursive) + " " + std::to_string(timeout));
        expect_failed(list_all(url, recursive, timeout));
      }
    }
  }
}

TEST_F(AllNodeTest, NullUrlGivesMinusOne) {
  for (const int recursive : {0, 1}) {
    NODE_INFO mark = {};
    NODE_INFO *head = &mark;
    EXPECT_EQ(zrcfg_allnode_get(nullptr, recursive, &head, 0), -1);
    EXPECT_EQ(head, &mark);
  }
}

TEST_F(AllNodeTest, NullOutputKeepsNothing) {
  write_property("A/", object_file(1, {{"P", 3}}));
  seal();
  EXPECT_EQ(zrcfg_allnode_get("A.", 0, nullptr, 0), 0);
  EXPECT_EQ(zrcfg_allnode_get("A.", 1, nullptr, 0), 0);
}

TEST_F(AllNodeTest, FlatListWhoseSubObjectsCannotBeListedGivesMinusOne) {
  write_property("A/", object_file(1, {{"P", 3}}));
  write_property("A/B/", object_file());
  seal();
  const ScanHook hook(failing_scan("A/", EMFILE));
  expect_failed(list_all("A.", 0));
  EXPECT_EQ(list_all("A.", 1).nodes.size(), 2u) << "the walk keeps what it has";
}

TEST_F(AllNodeTest, LockedObjectGivesMinusOneAndLockedSubObjectIsLeftOut) {
  write_property("A/", object_file(1));
  write_property("A/B/", object_file());
  write_property("A/C/", object_file());
  seal();
  {
    const LockHolder holder("A/property.conf", Held::kExclusive);
    for (const int timeout : {0, 5, 20}) {
      expect_failed(list_all("A.", 0, timeout));
      expect_failed(list_all("A.", 1, timeout));
    }
    EXPECT_EQ(list_all("A.", 0, -2).nodes.size(), 3u);
    EXPECT_THAT(names_of(list_all("A.", 1, -2).nodes), ElementsAre("A."))
        << "the walk's own listing needs the lock";
  }
  const LockHolder holder("A/B/property.conf", Held::kExclusive);
  EXPECT_THAT(names_of(list_all("A.", 0, 20).nodes), ElementsAre("A.", "A.C."));
  EXPECT_THAT(names_of(list_all("A.", 1, 20).nodes), ElementsAre("A.", "A.C."));
}

TEST_F(AllNodeTest, NoLockIsHeldWhenASubObjectIsRead) {
  write_property("A/", object_file());
  write_property("A/B/", object_file());
  write_property("A/B/C/", object_file());
  seal();
  ScanHooks hooks;
  std::vector<std::string> held;
  hooks.before = [&held](const std::string &path) {
    held.push_back(path);
    for (const std::string &file : locked_property_files()) {
      held.push_back(file);
    }
    return 0;
  };
  const ScanHook hook(hooks);
  EXPECT_EQ(list_all("A.", 1).nodes.size(), 3u);
  EXPECT_THAT(held,
              ElementsAre("/var/A/", "/var/A/property.conf", "/var/A/B/", "/var/A/B/property.conf",
                          "/var/A/B/C/", "/var/A/B/C/property.conf"))
      << "each object is scanned under its own lock alone";
}

// One letter a level: 127 levels are the deepest that a URL can name. The directories go on.
TEST_F(AllNodeTest, DeepestTreeIsWalkedToTheUrlLimit) {
  std::string dir;
  std::vector<std::string> expected;
  std::string url;
  for (int level = 1; level <= 140; ++level) {
    dir += "n/";
    url += "n.";
    write_property(dir, object_file());
    if (url.size() <= 255) {
      expected.push_back(url);
    }
  }
  ASSERT_EQ(expected.size(), 127u);
  EXPECT_EQ(names_of(list_all("n.", 1).nodes), expected);
  EXPECT_EQ(names_of(list_all(expected.back(), 1).nodes),
            std::vector<std::string>{expected.back()});
}

TEST_F(AllNodeTest, DeepestWalkFitsASmallStack) {
  std::string dir;
  for (int level = 1; level <= 127; ++level) {
    dir += "1/";
    write_property(dir, object_file());
  }
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
  pthread_t thread;
  size_t count = 0;
  const auto walk = [](void *counted) -> void * {
    *static_cast<size_t *>(counted) = list_all("1.", 1).nodes.size();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, walk, &count), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(count, 127u);
}

TEST_F(AllNodeTest, UrlOf255CharactersIsListedBothWays) {
  const std::string url = deep_url(255);
  write_property(dir_of(url), object_file(2));
  seal();
  EXPECT_THAT(list_all(url, 0).nodes, ElementsAre(Node{url, 2}));
  EXPECT_THAT(list_all(url, 1).nodes, ElementsAre(Node{url, 2}));
}

TEST_F(AllNodeTest, ThousandInstancesAreWalkedInOrder) {
  write_property("T/", object_file(1));
  write_property("T/0/", object_file(1));
  std::vector<std::string> expected = {"T."};
  for (int i = 1; i <= 1000; ++i) {
    write_property("T/" + std::to_string(i) + "/", object_file(1));
    expected.push_back("T." + std::to_string(i) + ".");
  }
  EXPECT_EQ(names_of(list_all("T.", 1).nodes), expected);
  EXPECT_EQ(names_of(list_all("T.", 0).nodes), expected);
}

TEST_F(AllNodeTest, EmptyUrlIsTheRoot) {
  write_store_file("property.conf", object_file(1, {{"P", 1}}).bytes());
  write_property("Device/", object_file());
  seal();
  EXPECT_THAT(names_of(list_all("", 0).nodes), ElementsAre("", "P", "Device."));
  EXPECT_THAT(names_of(list_all("", 1).nodes), ElementsAre("", "P", "Device."));
}

}  // namespace
}  // namespace zrcfg_test
