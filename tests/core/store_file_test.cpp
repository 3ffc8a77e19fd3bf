// Tests of the wrappers that put the store root in front of every path.
#include "core/store_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "support/property_builder.h"
#include "support/store_fixture.h"

namespace zrcfg_test {
namespace {

class StoreFileTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    previous_umask_ = umask(022);
  }
  void TearDown() override {
    umask(previous_umask_);
    StoreTest::TearDown();
  }

  // A directory path of exactly `length` characters, ending in "/", that exists in the store.
  static std::string make_deep_dir(size_t length) {
    std::string dir;
    while (length - dir.size() > 100) {
      dir += std::string(79, 'd') + "/";
    }
    dir += std::string(length - dir.size() - 1, 'e') + "/";
    make_store_dir(dir);
    return dir;
  }

 private:
  mode_t previous_umask_ = 0;
};

unsigned mode_of(const std::string &relative) {
  struct stat status = {};
  EXPECT_EQ(stat(store_path(relative).c_str(), &status), 0);
  return status.st_mode & 07777u;
}

TEST_F(StoreFileTest, FopenOpensBelowTheRoot) {
  make_store_dir("A/B/1/");
  write_store_file("A/B/1/property.conf", "text");
  FILE *file = FOPEN("A/B/1/property.conf", "rb");
  ASSERT_NE(file, nullptr);
  char bytes[8] = {};
  EXPECT_EQ(fread(bytes, 1, sizeof bytes, file), 4u);
  EXPECT_STREQ(bytes, "text");
  fclose(file);
}

TEST_F(StoreFileTest, FopenPassesItsModeThrough) {
  FILE *file = FOPEN("new", "wb");
  ASSERT_NE(file, nullptr);
  fputs("one", file);
  fclose(file);
  file = FOPEN("new", "ab");
  ASSERT_NE(file, nullptr);
  fputs("two", file);
  fclose(file);
  EXPECT_EQ(read_store_file("new"), "onetwo");
}

TEST_F(StoreFileTest, FopenOfAMissingFileGivesNullAndTheCallsErrno) {
  errno = 0;
  EXPECT_EQ(FOPEN("missing", "rb"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(FOPEN("", "r+b"), nullptr);
  EXPECT_EQ(errno, EISDIR);
}

TEST_F(StoreFileTest, OpendirListsTheDirectoryBelowTheRoot) {
  make_store_dir("A/only/");
  DIR *directory = OPENDIR("A/");
  ASSERT_NE(directory, nullptr);
  bool found = false;
  while (const dirent *entry = readdir(directory)) {
    found = found || std::string(entry->d_name) == "only";
  }
  EXPECT_TRUE(found);
  closedir(directory);
}

TEST_F(StoreFileTest, OpendirOfAFileFailsWithNotADirectory) {
  write_store_file("file", "");
  EXPECT_EQ(OPENDIR("file"), nullptr);
  EXPECT_EQ(errno, ENOTDIR);
}

TEST_F(StoreFileTest, OpenPassesFlagsThroughUntouched) {
  write_store_file("file", "text");
  int fd = OPEN("file", O_RDONLY);
  ASSERT_GE(fd, 0);
  EXPECT_EQ(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0) << "the wrapper adds no flag of its own";
  close(fd);
  fd = OPEN("file", O_WRONLY | O_TRUNC | O_CLOEXEC);
  ASSERT_GE(fd, 0);
  EXPECT_NE(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
  EXPECT_EQ(fcntl(fd, F_GETFL) & O_ACCMODE, O_WRONLY);
  close(fd);
  EXPECT_EQ(read_store_file("file"), "");
}

TEST_F(StoreFileTest, OpenOfAMissingFileFailsWithoutCreatingIt) {
  EXPECT_EQ(OPEN("missing", O_RDWR), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(store_entry_exists("missing"));
}

TEST_F(StoreFileTest, OpenCreateCreatesWithMode0666LessTheUmask) {
  umask(0);
  int fd = open_create("all", O_WRONLY | O_CREAT);
  ASSERT_GE(fd, 0);
  close(fd);
  EXPECT_EQ(mode_of("all"), 0666u);
  umask(027);
  fd = open_create("less", O_WRONLY | O_CREAT);
  ASSERT_GE(fd, 0);
  close(fd);
  EXPECT_EQ(mode_of("less"), 0640u);
}

TEST_F(StoreFileTest, OpenCreateCreatesOnlyWhenTheFlagsSaySo) {
  EXPECT_EQ(open_create("missing", O_WRONLY), -1);
  EXPECT_EQ(errno, ENOENT);
  write_store_file("there", "x");
  EXPECT_EQ(open_create("there", O_WRONLY | O_CREAT | O_EXCL), -1);
  EXPECT_EQ(errno, EEXIST);
}

TEST_F(StoreFileTest, AccessTellsExistenceAndRights) {
  write_store_file("file", "");
  EXPECT_EQ(ACCESS("file", F_OK), 0);
  EXPECT_EQ(ACCESS("file", R_OK), 0);
  EXPECT_EQ(ACCESS("file", X_OK), -1) << "the mode is passed through";
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(ACCESS("missing", F_OK), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(StoreFileTest, StatFollowsALinkAndLstatDoesNot) {
  write_store_file("file", "12345");
  ASSERT_EQ(symlink("/var/file", "/var/link"), 0);
  struct stat status = {};
  ASSERT_EQ(STAT("link", &status), 0);
  EXPECT_TRUE(S_ISREG(status.st_mode));
  EXPECT_EQ(status.st_size, 5);
  ASSERT_EQ(LSTAT("link", &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  EXPECT_EQ(STAT("missing", &status), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(LSTAT("missing", &status), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(StoreFileTest, MkdirPassesItsModeThrough) {
  EXPECT_EQ(MKDIR("dir", 0750), 0);
  EXPECT_EQ(mode_of("dir"), 0750u);
  EXPECT_EQ(MKDIR("dir", 0750), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(MKDIR("no/parent", 0750), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(StoreFileTest, RemoveTakesFilesAndEmptyDirectories) {
  write_store_file("file", "");
  make_store_dir("empty/");
  make_store_dir("full/child/");
  EXPECT_EQ(REMOVE("file"), 0);
  EXPECT_EQ(REMOVE("empty"), 0);
  EXPECT_EQ(REMOVE("full"), -1);
  EXPECT_EQ(errno, ENOTEMPTY);
  EXPECT_FALSE(store_entry_exists("file"));
  EXPECT_FALSE(store_entry_exists("empty"));
  EXPECT_TRUE(store_entry_exists("full/child"));
}

TEST_F(StoreFileTest, RmdirTakesDirectoriesOnly) {
  write_store_file("file", "");
  make_store_dir("empty/");
  EXPECT_EQ(RMDIR("empty"), 0);
  EXPECT_EQ(RMDIR("file"), -1);
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_TRUE(store_entry_exists("file"));
}

TEST_F(StoreFileTest, LeadingSlashStaysUnderTheRoot) {
  write_store_file("x", "inside");
  const int fd = OPEN("/x", O_RDONLY);
  ASSERT_GE(fd, 0);
  close(fd);
  EXPECT_EQ(ACCESS("/x", F_OK), 0);
  EXPECT_EQ(ACCESS("/etc/passwd", F_OK), -1);
  EXPECT_EQ(MKDIR("/made", 0755), 0);
  EXPECT_TRUE(store_entry_exists("made"));
}

TEST_F(StoreFileTest, EmptyPathNamesTheRootItself) {
  make_store_dir("A/");
  struct stat root = {};
  struct stat seen = {};
  ASSERT_EQ(stat("/var/", &root), 0);
  ASSERT_EQ(STAT("", &seen), 0);
  EXPECT_EQ(seen.st_ino, root.st_ino);
  EXPECT_EQ(ACCESS("", F_OK), 0);
  DIR *directory = OPENDIR("");
  ASSERT_NE(directory, nullptr);
  closedir(directory);
}

TEST_F(StoreFileTest, EveryWrapperButOpenCreateReachesTheLongestPropertyFile) {
  const std::string file = make_deep_dir(255) + "property.conf";
  write_store_file(file, "deep");
  struct stat status = {};
  EXPECT_EQ(ACCESS(file.c_str(), F_OK), 0);
  EXPECT_EQ(STAT(file.c_str(), &status), 0);
  EXPECT_EQ(LSTAT(file.c_str(), &status), 0);
  const int fd = OPEN(file.c_str(), O_RDONLY);
  ASSERT_GE(fd, 0);
  close(fd);
  FILE *stream = FOPEN(file.c_str(), "rb");
  ASSERT_NE(stream, nullptr);
  fclose(stream);
  EXPECT_EQ(REMOVE(file.c_str()), 0);
}

TEST_F(StoreFileTest, EveryWrapperButOpenCreateReachesTheTemplateOfTheLongestObject) {
  const std::string dir = make_deep_dir(255) + "0/";
  EXPECT_EQ(MKDIR(dir.c_str(), 0755), 0);
  DIR *directory = OPENDIR(dir.c_str());
  ASSERT_NE(directory, nullptr);
  closedir(directory);
  const std::string file = dir + "property.conf";
  write_store_file(file, "");
  EXPECT_EQ(ACCESS(file.c_str(), F_OK), 0);
  EXPECT_EQ(REMOVE(file.c_str()), 0);
  EXPECT_EQ(RMDIR(dir.c_str()), 0);
}

TEST_F(StoreFileTest, LongerPathsThanAnyCallBuildsAreRefusedNotCut) {
  // Components of 2 characters, so that the system itself would only say ENOENT.
  std::string path;
  while (path.size() < 1200) {
    path += "a/";
  }
  const char *text = path.c_str();
  struct stat status = {};
  EXPECT_EQ((errno = 0, FOPEN(text, "wb")), nullptr);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, OPENDIR(text)), nullptr);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, OPEN(text, O_RDONLY)), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, ACCESS(text, F_OK)), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, LSTAT(text, &status)), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, STAT(text, &status)), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, MKDIR(text, 0755)), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, REMOVE(text)), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_EQ((errno = 0, RMDIR(text)), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST_F(StoreFileTest, OpenCreateCutsTheJoinedPathTo255Characters) {
  const std::string dir = make_deep_dir(200);
  // "/var/" and 250 characters fill the buffer; what follows is cut.
  const std::string kept = dir + std::string(50, 'k');
  const int fd = open_create((kept + "cut").c_str(), O_WRONLY | O_CREAT);
  ASSERT_GE(fd, 0);
  close(fd);
  EXPECT_TRUE(store_entry_exists(kept));
  EXPECT_FALSE(store_entry_exists(kept + "cut"));
  EXPECT_FALSE(store_entry_exists(kept + "c"));
}

TEST_F(StoreFileTest, SuccessLeavesErrnoAlone) {
  write_store_file("file", "");
  struct stat status = {};
  errno = ERANGE;
  EXPECT_EQ(ACCESS("file", F_OK), 0);
  EXPECT_EQ(STAT("file", &status), 0);
  EXPECT_EQ(LSTAT("file", &status), 0);
  EXPECT_EQ(MKDIR("d", 0755), 0);
  EXPECT_EQ(RMDIR("d"), 0);
  EXPECT_EQ(REMOVE("file"), 0);
  EXPECT_EQ(errno, ERANGE);
}

TEST_F(StoreFileTest, NullPathFailsInsteadOfCrashing) {
  struct stat status = {};
  EXPECT_EQ(FOPEN(nullptr, "rb"), nullptr);
  EXPECT_EQ(OPENDIR(nullptr), nullptr);
  EXPECT_EQ(OPEN(nullptr, O_RDONLY), -1);
  EXPECT_EQ(open_create(nullptr, O_WRONLY | O_CREAT), -1);
  EXPECT_EQ(ACCESS(nullptr, F_OK), -1);
  EXPECT_EQ(LSTAT(nullptr, &status), -1);
  EXPECT_EQ(STAT(nullptr, &status), -1);
  EXPECT_EQ(MKDIR(nullptr, 0755), -1);
  EXPECT_EQ(REMOVE(nullptr), -1);
  EXPECT_EQ(RMDIR(nullptr), -1);
}

}  // namespace
}  // namespace zrcfg_test
