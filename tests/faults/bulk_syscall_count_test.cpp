// How many system calls the calls on several values make, and in which order.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>

#include <deque>

#include "tests/support/libc_hooks.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kReadBudget = 7;
constexpr unsigned kReadBudgetOnTheLockFile = 5;
constexpr unsigned kWriteBudget = 8;
constexpr unsigned kTruncation = 1;
constexpr size_t kMostRequests = 1001;
constexpr char kPatterns[] = "/var/regex_file";

// A request list over the first parameters of an object, the same value for each.
class List {
 public:
  List(size_t count, const char *value, size_t records = 2) {
    for (size_t i = 0; i < count; ++i) {
      items_.emplace_back();
      Item &item = items_.back();
      memset(static_cast<void *>(&item), 0, sizeof item);
      strcpy(item.node.name, ("Name" + std::to_string(i % records)).c_str());
      strcpy(item.value, value);
      strcpy(item.node.old_value, value);
      item.node.value = item.value;
      item.node.fault = &item.fault;
    }
    for (size_t i = 0; i + 1 < count; ++i) {
      items_[i].node.next = &items_[i + 1].node;
    }
  }
  void mark_failed() {
    for (Item &item : items_) {
      item.fault = 9003;
      item.node.changed = 1;
    }
  }
  ParamValueEntry *get() { return &items_.front().node; }
  const char *value(size_t i) const { return items_.at(i).value; }

 private:
  struct Item {
    ParamValueEntry node;
    char value[256];
    uint32_t fault;
  };
  std::deque<Item> items_;
};

PropertyFile file_of(int records, size_t value_length, uint32_t filter = 0) {
  PropertyFile file;
  for (int i = 0; i < records; ++i) {
    file.add("Name" + std::to_string(i), std::string(value_length, 'v')).param_check = filter;
  }
  return file;
}

size_t first_of(const std::vector<CallRecord> &calls, Call call, int flags = -1) {
  size_t i = 0;
  while (i < calls.size() && (calls[i].call != call || (flags != -1 && calls[i].flags != flags))) {
    ++i;
  }
  return i;
}

size_t last_of(const std::vector<CallRecord> &calls, Call call) {
  size_t last = calls.size();
  for (size_t i = 0; i < calls.size(); ++i) {
    last = calls[i].call == call ? i : last;
  }
  return last;
}

unsigned openings_of(const CallWatch &watch, const std::string &path) {
  unsigned count = 0;
  for (const CallRecord &record : watch.records()) {
    const bool opening = record.call == Call::kOpen || record.call == Call::kFopen;
    count += opening && record.path == path ? 1 : 0;
  }
  return count;
}

using SetCall = int (*)(const char *, ParamValueEntry *, int);

class BulkSyscallCountTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_all(file_of(2, 20));
  }

  static void write_all(const PropertyFile &file) {
    write_property("A/", file);
    write_property("A/B/0/", file);
    write_property("A/B/3/", file);
  }

  static unsigned read_calls(const char *url, size_t nodes) {
    List list(nodes, "unread");
    CallWatch watch;
    EXPECT_EQ(zrcfg_getmultiparamval(url, list.get(), 0), 0);
    watch.stop();
    EXPECT_STREQ(list.value(0), std::string(20, 'v').c_str());
    EXPECT_EQ(watch.count(Call::kFopen), 0u) << "no standard I/O";
    EXPECT_EQ(watch.count(Call::kWrite) + watch.count(Call::kTruncate), 0u);
    return watch.system_calls();
  }

  static unsigned write_calls(SetCall set, const char *url, const char *value, size_t nodes = 2) {
    List list(nodes, value);
    list.mark_failed();
    CallWatch watch;
    EXPECT_EQ(set(url, list.get(), 0), 0);
    watch.stop();
    EXPECT_EQ(watch.count(Call::kWrite), 1u) << watch.describe();
    EXPECT_EQ(watch.count(Call::kFopen), 0u) << "no standard I/O";
    EXPECT_EQ(watch.count(Call::kOpen), watch.count(Call::kClose));
    return watch.system_calls();
  }
};

TEST_F(BulkSyscallCountTest, ReadStaysInItsBudgetWhateverTheList) {
  for (const size_t nodes : {size_t{1}, size_t{2}, size_t{50}, kMostRequests}) {
    EXPECT_LE(read_calls("A.B.3.", nodes), kReadBudget) << nodes;
    EXPECT_LE(read_calls("A.", nodes), kReadBudgetOnTheLockFile) << nodes;
    EXPECT_LE(read_calls("A.B.0.", nodes), kReadBudgetOnTheLockFile) << nodes;
  }
}

TEST_F(BulkSyscallCountTest, ListingStaysInTheBudgetOfARead) {
  for (const char *url : {"A.B.3.", "A."}) {
    ParamValueListNode *head = nullptr;
    ParamValueListNode *tail = nullptr;
    CallWatch watch;
    EXPECT_EQ(zrcfg_getallparamval(url, &head, &tail, 0), 0);
    watch.stop();
    EXPECT_LE(watch.system_calls(), strcmp(url, "A.") == 0 ? kReadBudgetOnTheLockFile : kReadBudget)
        << watch.describe();
    ASSERT_NE(head, nullptr);
    free(tail);
    free(head);
  }
}

TEST_F(BulkSyscallCountTest, WriteStaysInItsBudgetWhateverTheList) {
  for (const SetCall set : {zrcfg_setmultiparamval, zrcfg_setmultiparamval_ext}) {
    for (const char *url : {"A.B.3.", "A."}) {
      write_all(file_of(2, 20));
      EXPECT_LE(write_calls(set, url, "a value that is longer than the one before"), kWriteBudget);
      EXPECT_LE(write_calls(set, url, "a value of the same length as the one before", 2),
                kWriteBudget);
      EXPECT_LE(write_calls(set, url, "s"), kWriteBudget + kTruncation);
      EXPECT_LE(write_calls(set, url, "t", kMostRequests), kWriteBudget);
    }
  }
}

TEST_F(BulkSyscallCountTest, CheckedWriteAddsTheTestForThePatternFilePerNode) {
  for (const size_t nodes : {size_t{1}, size_t{2}, size_t{30}}) {
    List list(nodes, "w");
    CallWatch watch;
    EXPECT_EQ(zrcfg_setmultiparamval_check("A.B.3.", list.get(), 0), 0);
    watch.stop();
    EXPECT_LE(watch.system_calls(), kWriteBudget + kTruncation + nodes) << watch.describe();
  }
}

TEST_F(BulkSyscallCountTest, EqualValuesAreWrittenOnceAllTheSame) {
  List list(2, std::string(20, 'v').c_str());
  CallWatch watch;
  EXPECT_EQ(zrcfg_setmultiparamval("A.B.3.", list.get(), 0), 0);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kWrite), 1u);
  EXPECT_EQ(watch.count(Call::kTruncate), 0u);
}

TEST_F(BulkSyscallCountTest, LargestObjectCostsFurtherReadsOnly) {
  List small(2, "of another length");
  CallWatch small_watch;
  EXPECT_EQ(zrcfg_setmultiparamval("A.B.3.", small.get(), 0), 0);
  small_watch.stop();
  const unsigned others = small_watch.system_calls() - small_watch.count(Call::kRead);
  write_property("A/B/3/", file_of(255, 200));
  List large(kMostRequests, std::string(255, 'w').c_str(), 255);
  CallWatch watch;
  EXPECT_EQ(zrcfg_setmultiparamval("A.B.3.", large.get(), 0), 0);
  watch.stop();
  // The small file shrank, the large one grew.
  EXPECT_LE(watch.system_calls() - watch.count(Call::kRead), others) << watch.describe();
  EXPECT_EQ(watch.count(Call::kWrite), 1u);
}

TEST_F(BulkSyscallCountTest, WriteIsLockThenReadThenOneWriteOfTheSectionThenUnlock) {
  for (const char *url : {"A.", "A.B.3."}) {
    List list(2, "s");
    CallWatch watch;
    ASSERT_EQ(zrcfg_setmultiparamval(url, list.get(), -1), 0);
    watch.stop();
    const std::vector<CallRecord> calls = watch.records();
    const size_t lock = first_of(calls, Call::kLock, LOCK_EX);
    const size_t unlock = first_of(calls, Call::kLock, LOCK_UN);
    ASSERT_LT(unlock, calls.size()) << watch.describe();
    ASSERT_LT(lock, calls.size()) << watch.describe();
    EXPECT_EQ(watch.count(Call::kLock), 2u);
    EXPECT_LT(lock, first_of(calls, Call::kRead));
    EXPECT_LT(last_of(calls, Call::kRead), first_of(calls, Call::kWrite));
    EXPECT_LT(last_of(calls, Call::kWrite), first_of(calls, Call::kTruncate));
    EXPECT_LT(last_of(calls, Call::kTruncate), unlock);
    EXPECT_EQ(calls[first_of(calls, Call::kWrite)].amount, 4) << "two lines of one character";
  }
}

TEST_F(BulkSyscallCountTest, ReadIsLockThenReadThenUnlock) {
  for (const char *url : {"A.", "A.B.3."}) {
    List list(2, "");
    CallWatch watch;
    ASSERT_EQ(zrcfg_getmultiparamval(url, list.get(), 0), 0);
    watch.stop();
    const std::vector<CallRecord> calls = watch.records();
    const size_t unlock = first_of(calls, Call::kLock, LOCK_UN);
    EXPECT_LT(first_of(calls, Call::kLock, LOCK_SH | LOCK_NB), first_of(calls, Call::kRead));
    ASSERT_LT(unlock, calls.size()) << watch.describe();
    EXPECT_LT(last_of(calls, Call::kRead), unlock);
    EXPECT_EQ(watch.count(Call::kOpen), watch.count(Call::kClose));
  }
}

TEST_F(BulkSyscallCountTest, NothingToRestoreAsksForNoWrite) {
  List list(2, "s");
  CallWatch watch;
  EXPECT_EQ(zrcfg_setmultiparamval_ext("A.B.3.", list.get(), 0), 0);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kWrite) + watch.count(Call::kTruncate), 0u);
  EXPECT_LE(watch.system_calls(), kWriteBudget);
}

TEST_F(BulkSyscallCountTest, RefusedCheckAsksForNoWrite) {
  write_all(file_of(2, 20, 1));
  write_store_file("regex_file", "config f 'filter1'\n\toption value '^v*$'\n");
  List list(2, "x");
  CallWatch watch;
  EXPECT_EQ(zrcfg_setmultiparamval_check("A.B.3.", list.get(), 0), 7);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kWrite) + watch.count(Call::kTruncate), 0u);
}

TEST_F(BulkSyscallCountTest, PatternFileIsReadForEveryValueChecked) {
  write_store_file("regex_file", "config f 'filter1'\n\toption value '^v*$'\n");
  for (const uint32_t filter : {0u, 1u}) {
    write_all(file_of(2, 20, filter));
    for (const unsigned nodes : {1u, 2u, 7u}) {
      List list(nodes, "vv");
      CallWatch watch;
      EXPECT_EQ(zrcfg_setmultiparamval_check("A.B.3.", list.get(), 0), 0);
      watch.stop();
      EXPECT_EQ(openings_of(watch, kPatterns), filter == 0 ? 0 : nodes) << watch.describe();
    }
  }
}

TEST_F(BulkSyscallCountTest, NoLockMeansNoLockCall) {
  List list(2, "s");
  ParamValueListNode *head = nullptr;
  ParamValueListNode *tail = nullptr;
  CallWatch watch;
  EXPECT_EQ(zrcfg_getmultiparamval("A.B.3.", list.get(), -2), 0);
  EXPECT_EQ(zrcfg_setmultiparamval("A.B.3.", list.get(), -2), 0);
  EXPECT_EQ(zrcfg_setmultiparamval_check("A.B.3.", list.get(), -2), 0);
  EXPECT_EQ(zrcfg_setmultiparamval_ext("A.B.3.", list.get(), -2), 0);
  EXPECT_EQ(zrcfg_paramvalue_check("A.B.3.", "Name0", "s", -2), 0);
  EXPECT_EQ(zrcfg_getallparamval("A.B.3.", &head, &tail, -2), 0);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kLock), 0u) << watch.describe();
  free(tail);
  free(head);
}

TEST_F(BulkSyscallCountTest, RefusedArgumentsTouchNothing) {
  const std::string long_url(256, 'u');
  const std::string long_value(256, 'v');
  List list(2, "x");
  List feeds(2, "line\nfeed");
  char changed = 0;
  char old[256] = "";
  CallWatch watch;
  EXPECT_EQ(zrcfg_getmultiparamval(long_url.c_str(), list.get(), 0), 1);
  EXPECT_EQ(zrcfg_getmultiparamval(nullptr, list.get(), 0), 10);
  for (const SetCall set : {zrcfg_setmultiparamval, zrcfg_setmultiparamval_check}) {
    EXPECT_EQ(set(long_url.c_str(), list.get(), 0), 1);
    EXPECT_EQ(set(long_url.c_str(), feeds.get(), 0), 1);
    EXPECT_EQ(set("A.B.3.", feeds.get(), 0), 7);
    EXPECT_EQ(set("A.B.3.", nullptr, 0), 10);
  }
  EXPECT_EQ(zrcfg_setmultiparamval_ext("A.B.3.", nullptr, 0), 10);
  EXPECT_EQ(zrcfg_paramvalue_check("A.B.3.", "Name0", long_value.c_str(), 0), 0);
  EXPECT_EQ(zrcfg_paramvalue_check(long_url.c_str(), "Name0", "x", 0), 1);
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value_check("A.", "Name0", long_value.c_str(), 0,
                                                            &changed, old),
            0);
  EXPECT_EQ(
      zrcfg_setsingleparamval_ext_get_old_value_check("A.", "Name0", "l\nf", 0, &changed, old), 7);
  watch.stop();
  EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
}

TEST_F(BulkSyscallCountTest, EveryDescriptorClosesOnExec) {
  List list(2, "s");
  CallWatch watch;
  EXPECT_EQ(zrcfg_getmultiparamval("A.B.3.", list.get(), 0), 0);
  EXPECT_EQ(zrcfg_setmultiparamval("A.B.3.", list.get(), 0), 0);
  watch.stop();
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kOpen) {
      EXPECT_NE(record.flags & O_CLOEXEC, 0) << record.function << " " << record.path;
    }
  }
}

}  // namespace
}  // namespace zrcfg_test
