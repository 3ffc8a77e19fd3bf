// Tests of opening an object under its lock and closing it again.
#include "core/object_image.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>

#include <string>
#include <vector>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

// The image and descriptor arguments of createObjByPath, set so that a write to them is seen.
struct OpenCall {
  int marker = 0;
  ZrcfgObject *image = &marker;
  int lock_fd = -1;

  uint32_t open(const char *dir, uint32_t rw_type, int timeout) {
    return createObjByPath(&image, dir, &lock_fd, rw_type, timeout);
  }
  bool image_untouched() const { return image == &marker; }
  // Only what was opened can be handed back.
  uint32_t close() {
    EXPECT_FALSE(image_untouched());
    return image_untouched() ? 0 : destroyObj(image, lock_fd);
  }
};

class ObjectImageTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      write_property(kDir, property_file({"Name"}, {"value"}));
    }
  }

  // What opening `dir` locks, seen from outside while it is open.
  static std::vector<std::string> locked_while_open(const char *dir, uint32_t rw_type) {
    OpenCall call;
    EXPECT_EQ(call.open(dir, rw_type, 0), 0u);
    std::vector<std::string> locked = locked_property_files();
    EXPECT_EQ(call.close(), 0u);
    return locked;
  }
};

TEST_F(ObjectImageTest, OpensUnderALockAndLogsEachStep) {
  OpenCall call;
  ASSERT_EQ(call.open(kDir, 0, 0), 0u);
  EXPECT_FALSE(call.image_untouched());
  EXPECT_GE(call.lock_fd, 0);
  EXPECT_THAT(fixed_log(),
              ElementsAre("getLockFile() objPath=Gateway/Device/!\n",
                          "objPath=Gateway/Device/ lockfile=Gateway/Device/property.conf lockfd=N, "
                          "rwType=0, lock succ.\n",
                          "property_file=Gateway/Device/property.conf exist!",
                          "property_file = Gateway/Device/property.conf\n"));
  clear_log();
  EXPECT_EQ(call.close(), 0u);
  EXPECT_THAT(fixed_log(), ElementsAre());
}

TEST_F(ObjectImageTest, LogsGoToTheModuleAtLevel7) {
  OpenCall call;
  ASSERT_EQ(call.open(kDir, 0, 0), 0u);
  call.close();
  ASSERT_FALSE(log_lines().empty());
  for (const LogLine &line : log_lines()) {
    EXPECT_EQ(line.module, "ZRCFG");
    EXPECT_EQ(line.level, 7);
  }
}

TEST_F(ObjectImageTest, NullDirPathGives11) {
  OpenCall call;
  EXPECT_EQ(call.open(nullptr, 0, 0), 11u);
  EXPECT_TRUE(call.image_untouched());
  EXPECT_EQ(call.lock_fd, -1);
  EXPECT_THAT(fixed_log(), ElementsAre("object can't be NULL!\n"));
}

TEST_F(ObjectImageTest, NullOutputsAreRefusedWith10AndNothingIsHeld) {
  OpenCall call;
  EXPECT_EQ(createObjByPath(nullptr, kDir, &call.lock_fd, 0, 0), 10u);
  EXPECT_EQ(createObjByPath(&call.image, kDir, nullptr, 0, 0), 10u);
  EXPECT_TRUE(call.image_untouched());
}

TEST_F(ObjectImageTest, Type0TakesASharedLock) {
  OpenCall call;
  ASSERT_EQ(call.open(kDir, 0, 0), 0u);
  EXPECT_TRUE(can_lock(kFile, LOCK_SH));
  EXPECT_FALSE(can_lock(kFile, LOCK_EX));
  call.close();
  EXPECT_TRUE(can_lock(kFile, LOCK_EX));
}

TEST_F(ObjectImageTest, Type1TakesAnExclusiveLock) {
  OpenCall call;
  ASSERT_EQ(call.open(kDir, 1, 0), 0u);
  EXPECT_FALSE(can_lock(kFile, LOCK_SH));
  call.close();
  EXPECT_TRUE(can_lock(kFile, LOCK_EX));
}

TEST_F(ObjectImageTest, LockDescriptorIsCloseOnExec) {
  OpenCall call;
  ASSERT_EQ(call.open(kDir, 1, 0), 0u);
  EXPECT_NE(fcntl(call.lock_fd, F_GETFD) & FD_CLOEXEC, 0);
  call.close();
}

TEST_F(ObjectImageTest, Type2LocksTheTemplateExclusively) {
  write_property("A/B/", PropertyFile());
  write_property("A/B/0/", PropertyFile());
  OpenCall call;
  ASSERT_EQ(call.open("A/B/", 2, 0), 0u);
  EXPECT_FALSE(can_lock("A/B/0/property.conf", LOCK_SH));
  EXPECT_TRUE(can_lock("A/B/property.conf", LOCK_EX)) << "the object's own file is not the lock";
  EXPECT_THAT(
      fixed_log(),
      ElementsAre("getLockFile() objPath=A/B/0/!\n", "getLockPath() path=A/B/0/ exist!\n",
                  "objPath=A/B/0/ lockfile=A/B/0/property.conf lockfd=N, rwType=2, lock "
                  "succ.\n",
                  "property_file=A/B/property.conf exist!", "property_file = A/B/property.conf\n"));
  call.close();
}

TEST_F(ObjectImageTest, Type2WithoutTemplateGives9) {
  OpenCall call;
  EXPECT_EQ(call.open(kDir, 2, 0), 9u);
  EXPECT_TRUE(call.image_untouched());
  EXPECT_THAT(fixed_log(), ElementsAre("getLockFile() objPath=Gateway/Device/0/!\n",
                                       "getLockFile() can not found file!\n",
                                       "objPath=Gateway/Device/0/ getLockFile fail.\n",
                                       "getLock fail!\n", "file(fd=-1) no need unlock.\n"));
}

TEST_F(ObjectImageTest, Type2OfTheLongestPathReachesItsTemplate) {
  const std::string dir = long_path(255, '/');
  write_property(dir, PropertyFile());
  write_property(dir + "0/", PropertyFile());
  EXPECT_THAT(locked_while_open(dir.c_str(), 2), ElementsAre(property_path(dir + "0/")));
}

TEST_F(ObjectImageTest, InstancesLockTheirTemplate) {
  write_property("A/0/", PropertyFile());
  write_property("A/7/B/", PropertyFile());
  EXPECT_THAT(locked_while_open("A/7/B/", 1), ElementsAre("/var/A/0/property.conf"));
}

TEST_F(ObjectImageTest, TemplateWithoutFileFallsBackToTheObjectsOwn) {
  make_store_dir("A/0/");
  write_property("A/7/", PropertyFile());
  OpenCall call;
  ASSERT_EQ(call.open("A/7/", 1, 0), 0u);
  EXPECT_THAT(
      fixed_log(),
      ElementsAre("getLockFile() objPath=A/7/!\n", "getLockPath() path=A/0/ exist!\n",
                  "property_file=A/7/property.conf exist!",
                  "objPath=A/7/ lockfile=A/7/property.conf lockfd=N, rwType=1, lock "
                  "succ.\n",
                  "property_file=A/7/property.conf exist!", "property_file = A/7/property.conf\n"));
  EXPECT_FALSE(can_lock("A/7/property.conf", LOCK_SH));
  call.close();
}

TEST_F(ObjectImageTest, UnknownTypeGives9) {
  OpenCall call;
  EXPECT_EQ(call.open(kDir, 3, 0), 9u);
  EXPECT_TRUE(call.image_untouched());
  EXPECT_EQ(call.lock_fd, -1);
  EXPECT_TRUE(log_has_in_order({"getLock fail!\n", "file(fd=-1) no need unlock.\n"}));
}

TEST_F(ObjectImageTest, UnknownTypeIsNoMatterWithoutALock) {
  OpenCall call;
  EXPECT_EQ(call.open(kDir, 77, ZRCFG_NO_LOCK), 0u);
  call.close();
}

TEST_F(ObjectImageTest, LockHeldElsewhereGives9AfterOneTry) {
  const HeldLock held(kFile, LOCK_EX);
  OpenCall call;
  EXPECT_EQ(call.open(kDir, 0, 0), 9u);
  EXPECT_TRUE(call.image_untouched());
  EXPECT_EQ(call.lock_fd, -1);
  EXPECT_THAT(
      fixed_log(),
      ElementsAre("getLockFile() objPath=Gateway/Device/!\n",
                  "Gateway/Device/property.conf file was not locked.\n",
                  "objPath=Gateway/Device/ lockfile=Gateway/Device/property.conf, rwType=0 ,lock "
                  "fail.\n",
                  "getLock fail!\n", "file(fd=-1) no need unlock.\n"));
}

TEST_F(ObjectImageTest, SharedLockHeldElsewhereAdmitsReadersOnly) {
  const HeldLock held(kFile, LOCK_SH);
  OpenCall reader;
  EXPECT_EQ(reader.open(kDir, 0, 0), 0u);
  reader.close();
  OpenCall writer;
  EXPECT_EQ(writer.open(kDir, 1, 0), 9u);
}

TEST_F(ObjectImageTest, TimeoutBelow10FailsWithoutATry) {
  OpenCall call;
  EXPECT_EQ(call.open(kDir, 0, 9), 9u) << "although the lock is free";
  EXPECT_EQ(call.open(kDir, 0, 10), 0u);
  call.close();
}

TEST_F(ObjectImageTest, NoLockOpensWhileTheLockIsHeldAndKeepsTheDescriptor) {
  const HeldLock held(kFile, LOCK_EX);
  OpenCall call;
  ASSERT_EQ(call.open(kDir, 1, ZRCFG_NO_LOCK), 0u);
  EXPECT_EQ(call.lock_fd, -1);
  EXPECT_THAT(fixed_log(), ElementsAre("no need to be locked.\n",
                                       "property_file=Gateway/Device/property.conf exist!",
                                       "property_file = Gateway/Device/property.conf\n"));
  clear_log();
  EXPECT_EQ(call.close(), 0u);
  EXPECT_THAT(fixed_log(), ElementsAre("file(fd=-1) no need unlock.\n"));
}

TEST_F(ObjectImageTest, NoLockDoesNotWriteTheDescriptor) {
  OpenCall call;
  call.lock_fd = -77;
  ASSERT_EQ(call.open(kDir, 0, ZRCFG_NO_LOCK), 0u);
  EXPECT_EQ(call.lock_fd, -77);
  call.lock_fd = -1;
  EXPECT_EQ(call.close(), 0u);
}

TEST_F(ObjectImageTest, MissingDirectoryGives9WithALockAnd8Without) {
  OpenCall call;
  EXPECT_EQ(call.open("No/", 0, 0), 9u);
  EXPECT_EQ(call.open("No/", 0, ZRCFG_NO_LOCK), 8u);
  EXPECT_TRUE(call.image_untouched());
}

TEST_F(ObjectImageTest, MissingPropertyFileBelowATemplateGives8AndReleasesTheLock) {
  write_property("A/0/", PropertyFile());
  make_store_dir("A/3/");
  OpenCall call;
  EXPECT_EQ(call.open("A/3/", 1, 0), 8u);
  EXPECT_TRUE(call.image_untouched());
  EXPECT_TRUE(can_lock("A/0/property.conf", LOCK_EX));
  EXPECT_THAT(fixed_log(),
              ElementsAre("getLockFile() objPath=A/3/!\n", "getLockPath() path=A/0/ exist!\n",
                          "objPath=A/3/ lockfile=A/0/property.conf lockfd=N, rwType=1, lock "
                          "succ.\n",
                          "getPropertyFile() fail!\n"));
}

TEST_F(ObjectImageTest, MissingPropertyFileWithoutLockGives8) {
  make_store_dir("A/");
  OpenCall call;
  EXPECT_EQ(call.open("A/", 1, ZRCFG_NO_LOCK), 8u);
  EXPECT_TRUE(call.image_untouched());
  EXPECT_TRUE(log_has_in_order({"no need to be locked.\n", "getPropertyFile() fail!\n"}));
}

TEST_F(ObjectImageTest, UnopenablePropertyFileGives8AndReleasesTheLock) {
  write_property("A/0/", PropertyFile());
  make_store_dir("A/3/");
  make_unopenable("A/3/property.conf");
  OpenCall call;
  EXPECT_EQ(call.open("A/3/", 1, 0), 8u);
  EXPECT_TRUE(call.image_untouched());
  EXPECT_TRUE(can_lock("A/0/property.conf", LOCK_EX));
  EXPECT_THAT(
      fixed_log(),
      ElementsAre("getLockFile() objPath=A/3/!\n", "getLockPath() path=A/0/ exist!\n",
                  "objPath=A/3/ lockfile=A/0/property.conf lockfd=N, rwType=1, lock "
                  "succ.\n",
                  "property_file=A/3/property.conf exist!", "property_file = A/3/property.conf\n",
                  "unable to open A/3/property.conf file\n"));
}

TEST_F(ObjectImageTest, UnopenableLockFileGives9) {
  make_unopenable(kFile);
  OpenCall call;
  EXPECT_EQ(call.open(kDir, 1, 0), 9u);
  EXPECT_EQ(call.lock_fd, -1);
  EXPECT_TRUE(log_has_in_order({"unable to open Gateway/Device/property.conf file\n",
                                "getLock fail!\n", "file(fd=-1) no need unlock.\n"}));
}

TEST_F(ObjectImageTest, LongestPathOpens) {
  const std::string dir = long_path(255, '/');
  write_property(dir, PropertyFile());
  EXPECT_THAT(locked_while_open(dir.c_str(), 0), ElementsAre(property_path(dir)));
}

TEST_F(ObjectImageTest, EmptyPathOpensTheRootObject) {
  write_property("", property_file({"Name"}, {"root"}));
  EXPECT_THAT(locked_while_open("", 0), ElementsAre("/var/property.conf"));
}

TEST_F(ObjectImageTest, ImageIsASnapshot) {
  const OpenedImage image;
  write_property(kDir, property_file({"Other", "More"}, {"a", "b"}));
  EXPECT_EQ(image.bytes(4, 1), std::string(1, '\1'));
  EXPECT_EQ(image.bytes(184 + 8, 5), std::string("Name\0", 5));
}

TEST_F(ObjectImageTest, DestroyOfNothingGives0) {
  EXPECT_EQ(destroyObj(nullptr, -1), 0u);
  EXPECT_THAT(fixed_log(), ElementsAre("file(fd=-1) no need unlock.\n"));
}

TEST_F(ObjectImageTest, DestroyGives0ForABadDescriptorToo) {
  const int closed = 900;
  EXPECT_EQ(destroyObj(nullptr, closed), 0u);
  EXPECT_THAT(fixed_log(), ElementsAre("file(fd=N) unlock failed.\n"));
}

}  // namespace
}  // namespace zrcfg_test
