// How many system calls the enumeration makes: so many an object, whatever the rest of the tree.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <string>
#include <vector>

#include "tests/support/libc_hooks.h"
#include "tests/support/lock_holder.h"
#include "tests/support/property_builder.h"
#include "tests/support/scan_hook.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

// Lock file and property file: open, lock, open, read, unlock, close, close; scans come on top.
constexpr unsigned kObjectBudget = 7;
constexpr unsigned kObjectBudgetOnTheLockFile = 5;
constexpr unsigned kLookBudget = 1;   // A child's look at its entry.
constexpr unsigned kNamesBudget = 7;  // Search for the lock file, lock and unlock.
constexpr int kManyChildren = 60;

class EnumSyscallCountTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      const PropertyFile file = property_file({"First", "Second"}, {"one", "two"});
      write_property("T/", file);
      write_property("T/0/", file);
      write_children(1, 5);
    }
  }

  static void write_children(int first, int last) {
    for (int i = first; i <= last; ++i) {
      write_property("T/" + std::to_string(i) + "/", property_file({"First"}, {"one"}));
    }
  }
};

struct Cost {
  unsigned calls;
  unsigned scans;
};

Cost cost_of_names(const char *url) {
  const ScanHook scans({});
  SubObjName *head = nullptr;
  CallWatch watch;
  EXPECT_EQ(zrcfg_getallsubobj(url, &head), 0u);
  watch.stop();
  while (head != nullptr) {
    SubObjName *const next = head->next;
    free(head);
    head = next;
  }
  return {watch.system_calls(), scans.count()};
}

Cost cost_of_children(const char *url, int timeout = 0) {
  const ScanHook scans({});
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  CallWatch watch;
  EXPECT_EQ(zrcfg_getsubobjinfo(url, &head, &tail, timeout), 0);
  watch.stop();
  EXPECT_NE(head, nullptr);
  EXPECT_EQ(zrcfg_allnode_free(head), 0u);
  return {watch.system_calls(), scans.count()};
}

Cost cost_of_object(const char *url) {
  const ScanHook scans({});
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  CallWatch watch;
  EXPECT_EQ(zrcfg_getallnodeinfo(url, &head, &tail, 0), 0u);
  watch.stop();
  EXPECT_EQ(zrcfg_allnode_free(head), 0u);
  return {watch.system_calls(), scans.count()};
}

Cost cost_of_walk(const char *url) {
  const ScanHook scans({});
  NODE_INFO *head = nullptr;
  CallWatch watch;
  EXPECT_EQ(zrcfg_allnode_get(url, 1, &head, 0), 0);
  watch.stop();
  EXPECT_EQ(zrcfg_allnode_free(head), 0u);
  return {watch.system_calls(), scans.count()};
}

TEST_F(EnumSyscallCountTest, ObjectsNodesStayInTheBudgetOfARead) {
  EXPECT_LE(cost_of_object("T.3.").calls, kObjectBudget);
  EXPECT_LE(cost_of_object("T.").calls, kObjectBudgetOnTheLockFile);
  EXPECT_EQ(cost_of_object("T.").scans, 0u);
}

TEST_F(EnumSyscallCountTest, NamesNeedOneScanAndNoFile) {
  const Cost few = cost_of_names("T.");
  EXPECT_LE(few.calls, kNamesBudget);
  EXPECT_EQ(few.scans, 1u);
  write_children(6, kManyChildren);
  EXPECT_EQ(cost_of_names("T.").calls, few.calls) << "the children are not looked at";
}

TEST_F(EnumSyscallCountTest, EveryChildCostsTheSame) {
  const Cost few = cost_of_children("T.");
  EXPECT_EQ(few.scans, 1u);
  EXPECT_LE(few.calls, 5 * (kObjectBudget + kLookBudget));
  write_children(6, kManyChildren);
  const Cost many = cost_of_children("T.");
  EXPECT_EQ(many.scans, 1u);
  EXPECT_EQ(many.calls, few.calls / 5 * kManyChildren);
}

TEST_F(EnumSyscallCountTest, WalkVisitsEveryObjectOnce) {
  const unsigned an_object = kObjectBudget + kNamesBudget;
  const Cost few = cost_of_walk("T.");
  EXPECT_EQ(few.scans, 6u) << "the table and five instances";
  EXPECT_LE(few.calls, 6 * an_object);
  write_children(6, kManyChildren);
  const Cost many = cost_of_walk("T.");
  EXPECT_EQ(many.scans, 1u + kManyChildren);
  EXPECT_LE(many.calls, (1 + kManyChildren) * an_object);
}

TEST_F(EnumSyscallCountTest, NothingIsEverWrittenOrOpenedForWriting) {
  NODE_INFO *head = nullptr;
  CallWatch watch;
  EXPECT_EQ(zrcfg_allnode_get("T.", 1, &head, 0), 0);
  EXPECT_EQ(zrcfg_allnode_free(head), 0u);
  EXPECT_EQ(zrcfg_allnode_get("T.", 0, &head, 0), 0);
  EXPECT_EQ(zrcfg_allnode_free(head), 0u);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kWrite) + watch.count(Call::kTruncate) + watch.count(Call::kOther),
            0u);
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kOpen) {
      EXPECT_EQ(record.flags & O_ACCMODE, O_RDONLY) << record.path;
      EXPECT_NE(record.flags & O_CLOEXEC, 0) << record.path;
    }
    if (record.call == Call::kLock) {
      EXPECT_NE(record.flags & (LOCK_SH | LOCK_UN), 0) << "shared locks only";
    }
  }
}

TEST_F(EnumSyscallCountTest, NamesTryTheLockOnceAndDoNotWait) {
  const LockHolder holder("T/property.conf", Held::kExclusive);
  SubObjName *names = nullptr;
  CallWatch watch({}, true);
  EXPECT_EQ(zrcfg_getallsubobj("T.", &names), 9u);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kLock), 1u) << watch.describe();
  EXPECT_EQ(watch.count(Call::kSleep), 0u) << watch.describe();
}

TEST_F(EnumSyscallCountTest, NoLockMeansNoLockCallForChildren) {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  CallWatch watch;
  EXPECT_EQ(zrcfg_getsubobjinfo("T.", &head, &tail, -2), 0);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kLock), 0u);
  EXPECT_EQ(zrcfg_allnode_free(head), 0u);
}

TEST_F(EnumSyscallCountTest, RefusedArgumentsTouchNothing) {
  const std::string url = std::string(255, 'u') + ".";
  const ScanHook scans({});
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  SubObjName *names = nullptr;
  uint32_t numbers[9];
  CallWatch watch;
  EXPECT_EQ(zrcfg_getallsubobj(url.c_str(), &names), 1u);
  EXPECT_EQ(zrcfg_getallsubobj(nullptr, &names), 10u);
  EXPECT_EQ(zrcfg_getsubobjinfo(url.c_str(), &head, &tail, 0), 1);
  EXPECT_EQ(zrcfg_getsubobjinfo(nullptr, &head, &tail, 0), 10);
  EXPECT_EQ(zrcfg_getallnodeinfo(url.c_str(), &head, &tail, 0), 1u);
  EXPECT_EQ(zrcfg_getallnodeinfo(nullptr, &head, &tail, 0), 10u);
  EXPECT_EQ(zrcfg_getobjidbyobjpath("T.1.", numbers), 1u);
  watch.stop();
  EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
  EXPECT_EQ(scans.count(), 0u);
}

}  // namespace
}  // namespace zrcfg_test
