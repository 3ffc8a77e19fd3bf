// The hooks themselves: that every form of a call is seen, failed, cut short, and left alone.
#include "tests/support/libc_hooks.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

class LibcHooksTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_property("A/", property_file({"Name"}, {"value"}));
    path_ = property_path("A/");
  }

  std::string path_;
};

TEST_F(LibcHooksTest, PlainAndSuffixedFormsCountAlike) {
  struct stat64 status;
  char byte;
  CallWatch watch;
  const int fd = open64(path_.c_str(), O_RDWR | O_CLOEXEC);
  const int other = openat(AT_FDCWD, path_.c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(pread64(fd, &byte, 1, 0), 1);
  EXPECT_EQ(read(fd, &byte, 1), 1);
  EXPECT_EQ(fstat64(fd, &status), 0);
  EXPECT_EQ(stat64(path_.c_str(), &status), 0);
  EXPECT_EQ(lseek64(fd, 0, SEEK_SET), 0);
  EXPECT_EQ(pwrite64(fd, &byte, 1, 1), 1);
  EXPECT_EQ(ftruncate64(fd, status.st_size), 0);
  EXPECT_EQ(close(fd), 0);
  EXPECT_EQ(close(other), 0);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kOpen), 2u);
  EXPECT_EQ(watch.count(Call::kRead), 2u);
  EXPECT_EQ(watch.count(Call::kStat), 2u);
  EXPECT_EQ(watch.count(Call::kSeek), 1u);
  EXPECT_EQ(watch.count(Call::kWrite), 1u);
  EXPECT_EQ(watch.count(Call::kTruncate), 1u);
  EXPECT_EQ(watch.count(Call::kClose), 2u);
  EXPECT_EQ(watch.system_calls(), 11u) << watch.describe();
  EXPECT_EQ(watch.records().front().path, path_);
}

TEST_F(LibcHooksTest, ChosenCallsFailAndOthersDoNot) {
  CallWatch watch({fail_times(Call::kAccess, 2, 2, EIO)});
  EXPECT_EQ(access(path_.c_str(), F_OK), 0);
  EXPECT_EQ(access(path_.c_str(), F_OK), -1);
  EXPECT_EQ(errno, EIO);
  EXPECT_EQ(access(path_.c_str(), F_OK), -1);
  EXPECT_EQ(access(path_.c_str(), F_OK), 0);
  EXPECT_EQ(watch.faults_hit(), 2u);
  EXPECT_EQ(watch.count(Call::kAccess), 4u);
}

TEST_F(LibcHooksTest, ReadsAreCutShort) {
  char bytes[10];
  const int fd = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  CallWatch watch({cut_short(Call::kRead, 1, 1, 3)});
  EXPECT_EQ(pread(fd, bytes, 10, 0), 3);
  EXPECT_EQ(pread(fd, bytes, 10, 0), 10);
  watch.stop();
  close(fd);
}

TEST_F(LibcHooksTest, FailedCloseClosesAllTheSame) {
  const int fd = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  CallWatch watch({fail_once(Call::kClose, 1, EIO)});
  EXPECT_EQ(close(fd), -1);
  watch.stop();
  EXPECT_EQ(fcntl(fd, F_GETFD), -1);
}

TEST_F(LibcHooksTest, OnlyAllocationsOfTheLibraryAreSeen) {
  char value[256];
  CallWatch watch;
  free(malloc(10));
  EXPECT_EQ(watch.count(Call::kAllocate), 0u);
  EXPECT_EQ(zrcfg_getsingleparamval("A.", "Name", value, 0), 0u);
  watch.stop();
  EXPECT_GT(watch.count(Call::kAllocate), 0u);
}

TEST_F(LibcHooksTest, PausesCanBeSkipped) {
  CallWatch watch({}, true);
  EXPECT_EQ(usleep(999999), 0);
  EXPECT_EQ(watch.count(Call::kSleep), 1u);
  EXPECT_EQ(watch.system_calls(), 0u);
  EXPECT_EQ(watch.records().front().amount, 999999);
}

TEST_F(LibcHooksTest, OnlyOpeningsForWritingFailWhereThatIsAsked) {
  CallWatch watch({fail_writable_opens(EROFS)});
  const int fd = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_GE(fd, 0);
  EXPECT_EQ(open(path_.c_str(), O_RDWR | O_CLOEXEC), -1);
  EXPECT_EQ(errno, EROFS);
  watch.stop();
  close(fd);
}

}  // namespace
}  // namespace zrcfg_test
