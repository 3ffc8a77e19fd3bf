// Allocations that fail one by one: the exact codes, texts and lists that the enumeration gives.
#include <errno.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "enum/node_info.h"
#include "lock/object_lock.h"
#include "tests/faults/enum_fault_calls.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kMostPlaces = 200;

class EnumMemoryTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      write_list_tree();
    }
  }

  // Fails the first, second, … allocation of a call; `check` sees what each gave.
  static unsigned fail_each(Given (*call)(), const std::function<void(const Given &)> &check) {
    for (unsigned nth = 1; nth < kMostPlaces; ++nth) {
      clear_log();
      CallWatch watch({fail_once(Call::kAllocate, nth, ENOMEM)});
      const Given given = call();
      watch.stop();
      if (watch.faults_hit() == 0) {
        return nth - 1;
      }
      SCOPED_TRACE("allocation " + std::to_string(nth));
      check(given);
    }
    ADD_FAILURE() << "never ends";
    return 0;
  }
};

TEST_F(EnumMemoryTest, NameListThatCannotBeBuiltGives15AndFreesEverything) {
  const unsigned places = fail_each(run_construct, [](const Given &given) {
    EXPECT_EQ(given.result, 15u);
    EXPECT_FALSE(given.written);
    EXPECT_EQ(log_texts(), std::vector<std::string>{"objInfo is NULL\n"});
  });
  EXPECT_EQ(places, kNames.size());
  EXPECT_EQ(fail_each(run_names,
                      [](const Given &given) {
                        EXPECT_EQ(given.result, 15u);
                        EXPECT_FALSE(given.written);
                        EXPECT_TRUE(log_has_in_order({"objUrl =  A.\n", "objInfo is NULL\n",
                                                      "getObjList() fail ret=15!\n"}));
                      }),
            kNames.size());
}

TEST_F(EnumMemoryTest, ChildWithoutARecordIsLostAlone) {
  unsigned lost_records = 0;
  bool lost_the_last = false;
  fail_each(run_children, [&](const Given &given) {
    EXPECT_EQ(given.result, 0u);
    EXPECT_EQ(given.nodes.size(), kChildren.size() - 1) << "one child is missing";
    EXPECT_TRUE(is_part_of(given.nodes, kChildren));
    const bool last_missing = given.nodes.back() != kChildren.back();
    if (!log_contains("malloc NODE_INFO fail.\n")) {
      EXPECT_TRUE(given.tail_is_last) << "the child could not be opened";
      return;
    }
    ++lost_records;
    EXPECT_EQ(log_count("malloc NODE_INFO fail.\n"), 1u);
    EXPECT_EQ(given.tail_is_null, last_missing) << "null when the last allocation failed";
    EXPECT_EQ(given.tail_is_last, !last_missing);
    lost_the_last = lost_the_last || last_missing;
  });
  EXPECT_EQ(lost_records, kChildren.size());
  EXPECT_TRUE(lost_the_last);
}

TEST_F(EnumMemoryTest, NoRecordAtAllGivesNullEndsAnd0) {
  CallWatch watch({fail_for_ever(Call::kAllocate, 1, ENOMEM)});
  const Given given = run_children();
  watch.stop();
  EXPECT_EQ(given.result, 0u);
  EXPECT_TRUE(given.written);
  EXPECT_TRUE(given.nodes.empty());
  EXPECT_TRUE(given.tail_is_null);
}

TEST_F(EnumMemoryTest, ObjectListThatCannotBeBuiltGives15AndAnUnreadImage10) {
  unsigned records = 0;
  fail_each(run_object, [&](const Given &given) {
    EXPECT_FALSE(given.written);
    if (given.result == 10) {
      EXPECT_TRUE(log_contains("createObjByPath() fail ret=10!\n"));
      EXPECT_FALSE(log_contains("ptr is NULL\n"));
      return;
    }
    ++records;
    EXPECT_EQ(given.result, 15u);
    EXPECT_TRUE(log_has_in_order({"ptr is NULL\n", "getParamValueList() fail ret=15!\n"}));
    EXPECT_EQ(log_count("ptr is NULL\n"), 1u);
  });
  EXPECT_EQ(records, kObject.size());
}

TEST_F(EnumMemoryTest, ConstructedListThatCannotBeBuiltGives15WithItsText) {
  ZrcfgObject *image = nullptr;
  int lock_fd = -1;
  ASSERT_EQ(createObjByPath(&image, "A/", &lock_fd, 0, ZRCFG_NO_LOCK), 0u);
  for (unsigned nth = 1; nth <= kObject.size(); ++nth) {
    clear_log();
    NODE_INFO *head = &output_mark;
    NODE_INFO *tail = &output_mark;
    CallWatch watch({fail_once(Call::kAllocate, nth, ENOMEM)});
    EXPECT_EQ(constructNodeInfoList("A.", image, &head, &tail), 15u) << nth;
    watch.stop();
    EXPECT_EQ(watch.faults_hit(), 1u);
    EXPECT_EQ(head, &output_mark);
    EXPECT_EQ(tail, &output_mark);
    EXPECT_EQ(log_texts().back(), "ptr is NULL\n");
  }
  destroyObj(image, lock_fd);
}

// The object's own records are needed, a child may be lost.
TEST_F(EnumMemoryTest, FlatListIsMinusOneOrMissesOneChild) {
  unsigned failed = 0;
  unsigned missing = 0;
  fail_each(run_flat, [&](const Given &given) {
    if (given.result != 0) {
      EXPECT_EQ(given.result, kListFailed);
      EXPECT_FALSE(given.written);
      ++failed;
      return;
    }
    EXPECT_EQ(given.nodes.size(), kFlat.size() - 1);
    EXPECT_TRUE(is_part_of(kObject, given.nodes));
    ++missing;
  });
  EXPECT_GT(failed, kObject.size() - 1);
  EXPECT_GT(missing, kChildren.size() - 1);
}

bool is_below(const std::string &name, const std::string &url) {
  return name.size() > url.size() && name.compare(0, url.size(), url) == 0;
}

// The walk without the object's own records, or without all that its sub-objects give.
std::set<std::vector<ListedNode>> walks_with_one_failure() {
  std::set<std::vector<ListedNode>> walks;
  for (const ListedNode &object : kWalk) {
    if (object.first.back() != '.') {
      continue;
    }
    std::vector<ListedNode> without_own;
    std::vector<ListedNode> without_subs;
    for (const ListedNode &node : kWalk) {
      const bool own =
          node == object || (is_below(node.first, object.first) &&
                             node.first.find('.', object.first.size()) == std::string::npos);
      if (!own) {
        without_own.push_back(node);
      }
      if (own || !is_below(node.first, object.first)) {
        without_subs.push_back(node);
      }
    }
    walks.insert(without_own);
    walks.insert(without_subs);
  }
  return walks;
}

TEST_F(EnumMemoryTest, WalkLosesAnObjectsRecordsOrItsSubObjectsAndGoesOn) {
  const std::set<std::vector<ListedNode>> possible = walks_with_one_failure();
  std::set<std::vector<ListedNode>> seen;
  fail_each(run_walk, [&](const Given &given) {
    EXPECT_EQ(given.result, 0u);
    EXPECT_EQ(possible.count(given.nodes), 1u) << ::testing::PrintToString(given.nodes);
    seen.insert(given.nodes);
  });
  EXPECT_GE(seen.size(), 7u) << "the records of each of seven objects can be lost";
}

}  // namespace
}  // namespace zrcfg_test
