// The lock calls one by one: results, descriptors and log lines of every way that they can go.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "lock/object_lock.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/lock_holder.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

using Names = std::vector<std::string>;

class LockCallsTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_property("A/B/0/", property_file({"Name"}, {"template"}));
    write_property("A/B/3/", property_file({"Name"}, {"three"}));
    write_property("A/", property_file({"Name"}, {"single"}));
  }
};

bool closes_on_exec(int fd) {
  return (fcntl(fd, F_GETFD) & FD_CLOEXEC) != 0;
}

bool is_read_only(int fd) {
  return (fcntl(fd, F_GETFL) & O_ACCMODE) == O_RDONLY;
}

TEST_F(LockCallsTest, CfgGetLockReturnsTheLockedReadOnlyDescriptor) {
  int fd = -7;
  EXPECT_EQ(cfgGetLock("A/property.conf", &fd, 0, 1), 0u);
  ASSERT_GE(fd, 0);
  EXPECT_EQ(log_texts(), Names{});
  EXPECT_TRUE(is_read_only(fd));
  EXPECT_TRUE(closes_on_exec(fd));
  EXPECT_FALSE(shared_lockable("A/property.conf"));
  EXPECT_EQ(releaseLock(fd), 0);
  EXPECT_TRUE(exclusively_lockable("A/property.conf"));
}

TEST_F(LockCallsTest, LockTypesAreSharedExclusiveExclusive) {
  const struct {
    uint32_t type;
    bool leaves_shared;
  } rows[] = {{0, true}, {1, false}, {2, false}};
  for (const auto &row : rows) {
    int fd = -7;
    ASSERT_EQ(cfgGetLock("A/property.conf", &fd, 0, row.type), 0u);
    EXPECT_EQ(shared_lockable("A/property.conf"), row.leaves_shared) << row.type;
    EXPECT_FALSE(exclusively_lockable("A/property.conf")) << row.type;
    EXPECT_EQ(releaseLock(fd), 0);
  }
}

TEST_F(LockCallsTest, GetLockLogsItsSuccess) {
  int fd = -7;
  EXPECT_EQ(getLock("A/B/3/", &fd, 0, 1), 0);
  ASSERT_GE(fd, 0);
  EXPECT_EQ(log_texts(),
            (Names{"getLockFile() objPath=A/B/3/!\n", "getLockPath() path=A/B/0/ exist!\n",
                   "objPath=A/B/3/ lockfile=A/B/0/property.conf lockfd=" + std::to_string(fd) +
                       ", rwType=1, lock succ.\n"}));
  EXPECT_FALSE(shared_lockable("A/B/0/property.conf"));
  EXPECT_TRUE(exclusively_lockable("A/B/3/property.conf"));
  EXPECT_EQ(releaseLock(fd), 0);
}

TEST_F(LockCallsTest, GetLockLogsALockThatItDidNotGet) {
  const LockHolder holder("A/B/0/property.conf", Held::kExclusive);
  int fd = -7;
  EXPECT_EQ(getLock("A/B/3/", &fd, 0, 0), -1);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(log_texts(),
            (Names{"getLockFile() objPath=A/B/3/!\n", "getLockPath() path=A/B/0/ exist!\n",
                   "A/B/0/property.conf file was not locked.\n",
                   "objPath=A/B/3/ lockfile=A/B/0/property.conf, rwType=0 ,lock fail.\n"}));
}

TEST_F(LockCallsTest, GetLockLogsAMissingLockFile) {
  int fd = -7;
  EXPECT_EQ(getLock("No/Such/", &fd, 0, 0), -1);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(log_texts(),
            (Names{"getLockFile() objPath=No/Such/!\n", "getLockFile() can not found file!\n",
                   "objPath=No/Such/ getLockFile fail.\n"}));
}

TEST_F(LockCallsTest, ReleaseOfNoLockDoesNothing) {
  CallWatch watch;
  EXPECT_EQ(releaseLock(-1), 0);
  EXPECT_EQ(zrcfg_releaselock(-1), 0);
  watch.stop();
  EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
  EXPECT_EQ(log_texts(), (Names{"file(fd=-1) no need unlock.\n", "file(fd=-1) no need unlock.\n"}));
}

TEST_F(LockCallsTest, ReleaseUnlocksAndThenCloses) {
  int fd = -7;
  ASSERT_EQ(cfgGetLock("A/property.conf", &fd, 0, 1), 0u);
  const int copy = dup(fd);  // Closing alone would not end the lock while this one is open.
  CallWatch watch;
  EXPECT_EQ(releaseLock(fd), 0);
  watch.stop();
  const std::vector<CallRecord> calls = watch.records();
  ASSERT_EQ(calls.size(), 2u) << watch.describe();
  EXPECT_EQ(calls[0].call, Call::kLock);
  EXPECT_EQ(calls[0].flags, LOCK_UN);
  EXPECT_EQ(calls[1].call, Call::kClose);
  EXPECT_EQ(calls[1].fd, fd);
  EXPECT_TRUE(exclusively_lockable("A/property.conf"));
  close(copy);
}

TEST_F(LockCallsTest, ReleaseClosesAlthoughTheUnlockingFails) {
  int fd = -7;
  ASSERT_EQ(cfgGetLock("A/property.conf", &fd, 0, 1), 0u);
  clear_log();
  CallWatch watch({fail_for_ever(Call::kLock, 1, EIO)});
  EXPECT_EQ(releaseLock(fd), 0);
  watch.stop();
  EXPECT_EQ(log_texts(), Names{"file(fd=" + std::to_string(fd) + ") unlock failed.\n"});
  EXPECT_EQ(watch.count(Call::kClose), 1u);
}

TEST_F(LockCallsTest, ReleaseReturnsTheResultOfTheClosing) {
  int fd = -7;
  ASSERT_EQ(cfgGetLock("A/property.conf", &fd, 0, 1), 0u);
  CallWatch watch({fail_once(Call::kClose, 1, EIO)});
  EXPECT_EQ(zrcfg_releaselock(fd), -1);
}

TEST_F(LockCallsTest, ReleaseOfABadDescriptorFails) {
  EXPECT_EQ(releaseLock(1000000), -1);
  EXPECT_EQ(log_texts(), Names{"file(fd=1000000) unlock failed.\n"});
}

TEST_F(LockCallsTest, IsLockedTellsFreeFromHeld) {
  EXPECT_EQ(isLocked("A/property.conf"), 0);
  EXPECT_EQ(log_texts(), Names{});
  EXPECT_TRUE(exclusively_lockable("A/property.conf"));
  for (const Held held : {Held::kShared, Held::kExclusive}) {
    const LockHolder holder("A/property.conf", held);
    clear_log();
    EXPECT_EQ(isLocked("A/property.conf"), 1);
    EXPECT_EQ(log_texts(), Names{"A/property.conf was locked by other process.\n"});
  }
}

TEST_F(LockCallsTest, IsLockedCountsWhatCannotBeOpenedAsLocked) {
  EXPECT_EQ(isLocked("A/none"), 1);
  EXPECT_EQ(log_texts(), Names{"unable to open A/none file\n"});
}

TEST_F(LockCallsTest, IsLockedTriesOnceAndDoesNotWait) {
  CallWatch watch;
  EXPECT_EQ(isLocked("A/property.conf"), 0);
  watch.stop();
  ASSERT_EQ(watch.count(Call::kLock), 1u);
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kLock) {
      EXPECT_EQ(record.flags, LOCK_EX | LOCK_NB);
    }
  }
}

TEST_F(LockCallsTest, LockUrlLocksTheTemplateOfAnInstance) {
  int fd = -7;
  EXPECT_EQ(zrcfg_lockurl("A.B.3.", &fd, 0, 1), 0u);
  ASSERT_GE(fd, 0);
  EXPECT_EQ(log_texts().front(), "objUrl =  A.B.3.\n");
  EXPECT_TRUE(log_contains("getLockFile() objPath=A/B/3/!\n"));
  EXPECT_EQ(open_descriptors()[fd], store_path("A/B/0/property.conf"));
  EXPECT_TRUE(closes_on_exec(fd));
  EXPECT_TRUE(is_read_only(fd));
  EXPECT_FALSE(shared_lockable("A/B/0/property.conf"));
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
  EXPECT_TRUE(exclusively_lockable("A/B/0/property.conf"));
}

TEST_F(LockCallsTest, LockUrlWithoutALockHandsOutAnOpenDescriptor) {
  const LockHolder holder("A/property.conf", Held::kShared);
  int fd = -7;
  EXPECT_EQ(zrcfg_lockurl("A.", &fd, -2, 1), 0u);
  ASSERT_GE(fd, 0);
  EXPECT_EQ(open_descriptors()[fd], store_path("A/property.conf"));
  EXPECT_TRUE(closes_on_exec(fd));
  EXPECT_TRUE(shared_lockable("A/property.conf"));
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(LockCallsTest, AllInstancesOfATemplateShareOneLock) {
  write_property("A/B/3/C/0/", property_file({"Name"}, {"inner"}));
  write_property("A/B/3/C/2/", property_file({"Name"}, {"inner"}));
  write_property("A/B/4/", property_file({"Name"}, {"four"}));
  int fd = -7;
  ASSERT_EQ(zrcfg_lockurl("A.B.4.", &fd, 0, 1), 0u);
  for (const char *url : {"A.B.0.", "A.B.3.", "A.B.4.", "A.B.3.C.2.", "A.B.3.C.0."}) {
    int other = -7;
    EXPECT_EQ(zrcfg_lockurl(url, &other, 0, 0), 0xFFFFFFFFu) << url;
    EXPECT_EQ(other, -1) << url;
    char value[256] = "untouched";
    EXPECT_EQ(zrcfg_getsingleparamval(url, "Name", value, 0), 9u) << url;
    EXPECT_STREQ(value, "untouched");
  }
  int apart = -7;
  EXPECT_EQ(zrcfg_lockurl("A.", &apart, 0, 1), 0u);
  EXPECT_EQ(zrcfg_releaselock(apart), 0);
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(LockCallsTest, OwnLockConflictsWithItselfUnlessNoLockIsAskedFor) {
  int fd = -7;
  ASSERT_EQ(zrcfg_lockurl("A.B.3.", &fd, 0, 0), 0u);
  int second = -7;
  EXPECT_EQ(zrcfg_lockurl("A.B.3.", &second, 0, 0), 0u) << "two shared locks go together";
  EXPECT_NE(second, fd);
  EXPECT_EQ(zrcfg_releaselock(second), 0);
  second = -7;
  EXPECT_EQ(zrcfg_lockurl("A.B.3.", &second, 0, 1), 0xFFFFFFFFu);
  EXPECT_EQ(second, -1);
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "Name", "new", 20), 9u);
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "Name", "new", -2), 0u);
  EXPECT_EQ(value_section(read_property("A/B/3/")), "new\n");
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(LockCallsTest, IsLockLooksAtTheDirectoryOnly) {
  EXPECT_EQ(zrcfg_islock("A.B.3."), 0u);
  EXPECT_EQ(log_texts(), Names{"objUrl =  A.B.3.\n"});
  {
    const LockHolder file("A/B/0/property.conf", Held::kExclusive);
    const LockHolder own("A/B/3/property.conf", Held::kExclusive);
    EXPECT_EQ(zrcfg_islock("A.B.3."), 0u);
    EXPECT_EQ(zrcfg_islock("A.B.0."), 0u);
  }
  const LockHolder directory("A/B/3", Held::kShared);
  clear_log();
  EXPECT_EQ(zrcfg_islock("A.B.3."), 1u);
  EXPECT_EQ(log_texts(), (Names{"objUrl =  A.B.3.\n", "A/B/3/ was locked by other process.\n"}));
  EXPECT_EQ(zrcfg_islock("A.B.0."), 0u);
}

TEST_F(LockCallsTest, IsLockOfAMissingDirectoryIsLocked) {
  EXPECT_EQ(zrcfg_islock("A.B.9."), 1u);
  EXPECT_EQ(log_texts(), (Names{"objUrl =  A.B.9.\n", "unable to open A/B/9/ file\n"}));
}

TEST_F(LockCallsTest, IsLockLeavesNoLockBehind) {
  EXPECT_EQ(zrcfg_islock("A.B.3."), 0u);
  EXPECT_TRUE(exclusively_lockable("A/B/3"));
}

TEST_F(LockCallsTest, TemplateTypeOpensTheObjectUnderTheLockOfItsTemplate) {
  write_property("A/B/", property_file({"Name"}, {"table"}));
  ZrcfgObject *image = nullptr;
  int fd = -1;
  ASSERT_EQ(createObjByPath(&image, "A/B/", &fd, 2, 0), 0u);
  EXPECT_FALSE(shared_lockable("A/B/0/property.conf"));
  EXPECT_TRUE(exclusively_lockable("A/B/property.conf"));
  EXPECT_EQ(destroyObj(image, fd), 0u);
  EXPECT_TRUE(exclusively_lockable("A/B/0/property.conf"));
}

TEST_F(LockCallsTest, ObjectOpensWithoutALockWhileAnotherProcessHoldsIt) {
  const LockHolder holder("A/B/0/property.conf", Held::kExclusive);
  ZrcfgObject *image = nullptr;
  int fd = -1;
  ASSERT_EQ(createObjByPath(&image, "A/B/3/", &fd, 1, -2), 0u);
  EXPECT_EQ(fd, -1);
  EXPECT_NE(image, nullptr);
  EXPECT_TRUE(log_contains("no need to be locked.\n"));
  EXPECT_EQ(destroyObj(image, fd), 0u);
}

}  // namespace
}  // namespace zrcfg_test
