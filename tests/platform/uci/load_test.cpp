// Tests of finding files, and of contexts and packages over their life.
#include <sys/stat.h>
#include <unistd.h>

#include "tests/platform/uci/uci_support.h"

namespace zrcfg_test {
namespace {

TEST_F(UciTest, PackageIsNamedAfterItsFile) {
  make_store_dir("dir/");
  write_store_file("dir/status_version_flag", "config t s\n");
  UciContext context;
  uci_package *package = nullptr;
  ASSERT_EQ(context.load("/var/dir/status_version_flag", &package), UCI_OK);
  EXPECT_EQ(package->e.type, UCI_TYPE_PACKAGE);
  EXPECT_STREQ(package->e.name, "status_version_flag");
  EXPECT_STREQ(package->path, "/var/dir/status_version_flag");
  EXPECT_EQ(package->ctx, context.get());
}

TEST_F(UciTest, PathOfAFileMayHoldAnything) {
  write_store_file("with blank & dot.conf", "config t s\n");
  UciContext context;
  EXPECT_EQ(context.load("/var/with blank & dot.conf", nullptr), UCI_OK);
  EXPECT_EQ(context.load("//var/./with blank & dot.conf", nullptr), UCI_OK);
}

TEST_F(UciTest, RelativePathBeginsWithADot) {
  write_store_file("p", "config t s\n");
  ASSERT_EQ(chdir("/var"), 0);
  UciContext context;
  uci_package *package = nullptr;
  ASSERT_EQ(context.load("./p", &package), UCI_OK);
  EXPECT_STREQ(package->e.name, "p");
  ASSERT_EQ(chdir("/"), 0);
}

TEST_F(UciTest, BareNameIsLookedUpInTheConfigurationDirectory) {
  make_store_dir("etc/");
  write_store_file("etc/my-pack_age", "config t s\n");
  ASSERT_EQ(chdir("/var/etc"), 0);
  UciContext context;
  EXPECT_EQ(context.load("my-pack_age", nullptr), UCI_ERR_NOTFOUND)
      << "/etc/config, not the current directory";
  ASSERT_EQ(uci_set_confdir(context.get(), "/var/etc"), UCI_OK);
  ASSERT_EQ(chdir("/"), 0);
  uci_package *package = nullptr;
  ASSERT_EQ(context.load("my-pack_age", &package), UCI_OK);
  EXPECT_STREQ(package->e.name, "my-pack_age");
  EXPECT_STREQ(package->path, "/var/etc/my-pack_age");
}

TEST_F(UciTest, BareNameIsAName) {
  UciContext context;
  ASSERT_EQ(uci_set_confdir(context.get(), "/var"), UCI_OK);
  write_store_file("a.b", "");
  for (const char *name : {"", "a.b", "a b", "dir/p", "..", "../etc"}) {
    EXPECT_NE(context.load(name, nullptr), UCI_OK) << name;
  }
}

TEST_F(UciTest, NoFileIsNotFound) {
  make_store_dir("dir/");
  write_store_file("file", "");
  ASSERT_EQ(symlink("/var/loop", "/var/loop"), 0);
  UciContext context;
  const std::string long_name = "/var/" + std::string(300, 'x');
  for (const std::string &path :
       {std::string("/var/none"), std::string("/var/none/p"), std::string("/var/file/p"),
        std::string("/var/dir"), std::string("/var/dir/"), std::string("/var/loop"),
        std::string("/"), long_name}) {
    uci_package *package = nullptr;
    EXPECT_EQ(context.load(path, &package), UCI_ERR_NOTFOUND) << path;
    EXPECT_EQ(package, nullptr) << path;
    EXPECT_EQ(context.error_text(), "Entry not found") << path;
  }
}

TEST_F(UciTest, OtherKindsOfFilesAreNotWaitedFor) {
  ASSERT_EQ(mkfifo("/var/pipe", 0600), 0);
  UciContext context;
  EXPECT_EQ(context.load("/var/pipe", nullptr), UCI_ERR_NOTFOUND);
  EXPECT_EQ(context.load("/dev/zero", nullptr), UCI_ERR_NOTFOUND);
}

TEST_F(UciTest, SymbolicLinksAreFollowed) {
  write_store_file("p", "config t s\noption a 1\n");
  ASSERT_EQ(symlink("p", "/var/link"), 0);
  UciContext context;
  uci_package *package = nullptr;
  ASSERT_EQ(context.load("/var/link", &package), UCI_OK);
  EXPECT_EQ(describe(package), "t s{a=1}");
}

TEST_F(UciTest, FileWithoutASizeIsReadToItsEnd) {
  UciContext context;
  EXPECT_EQ(context.load("/proc/self/mounts", nullptr), UCI_ERR_PARSE)
      << "its size is told as 0, but it has lines, and they are no UCI";
}

TEST_F(UciTest, FileOverTheLimitIsRefused) {
  write_store_file("large", "");
  ASSERT_EQ(truncate("/var/large", (16 << 20) + 1), 0);
  UciContext context;
  EXPECT_EQ(context.load("/var/large", nullptr), UCI_ERR_MEM);
  EXPECT_EQ(context.error_text(), "Out of memory");
}

TEST_F(UciTest, LoadingReadsTheFileAfresh) {
  UciContext context;
  for (const std::string &value : {std::string("old"), std::string("new")}) {
    write_store_file("p", "config t s\noption a " + value + "\n");
    uci_package *package = nullptr;
    ASSERT_EQ(context.load(store_path("p"), &package), UCI_OK);
    EXPECT_EQ(describe(package), "t s{a=" + value + "}");
    EXPECT_EQ(uci_unload(context.get(), package), UCI_OK);
  }
}

TEST_F(UciTest, PackagesAreUnloadedInAnyOrder) {
  write_store_file("a", "config t a\n");
  write_store_file("b", "config t b\n");
  write_store_file("c", "config t c\n");
  UciContext context;
  uci_package *packages[3] = {};
  ASSERT_EQ(context.load(store_path("a"), &packages[0]), UCI_OK);
  ASSERT_EQ(context.load(store_path("b"), &packages[1]), UCI_OK);
  ASSERT_EQ(context.load(store_path("c"), &packages[2]), UCI_OK);
  EXPECT_EQ(uci_unload(context.get(), packages[1]), UCI_OK);
  EXPECT_EQ(describe(packages[0]), "t a{}");
  EXPECT_EQ(describe(packages[2]), "t c{}");
  uci_element *element = nullptr;
  std::string left;
  uci_foreach_element(&context.get()->root, element) {
    left += element->name;
  }
  EXPECT_EQ(left, "ac");
}

TEST_F(UciTest, ContextFreesWhatIsStillLoaded) {
  write_store_file("p", "config t s\noption a 1\nlist b 2\n");
  UciContext context;
  EXPECT_EQ(context.load(store_path("p"), nullptr), UCI_OK) << "leak detection looks at the end";
}

TEST_F(UciTest, NullArgumentsAreRefused) {
  uci_package *package = nullptr;
  EXPECT_EQ(uci_load(nullptr, "/var/p", &package), UCI_ERR_INVAL);
  EXPECT_EQ(uci_unload(nullptr, nullptr), UCI_ERR_INVAL);
  EXPECT_EQ(uci_set_confdir(nullptr, "/var"), UCI_ERR_INVAL);
  uci_free_context(nullptr);
  UciContext context;
  EXPECT_EQ(uci_load(context.get(), nullptr, &package), UCI_ERR_INVAL);
  EXPECT_EQ(uci_unload(context.get(), nullptr), UCI_ERR_INVAL);
  EXPECT_EQ(uci_set_confdir(context.get(), nullptr), UCI_ERR_INVAL);
  EXPECT_EQ(uci_lookup_option(context.get(), nullptr, "a"), nullptr);
  EXPECT_EQ(package, nullptr);
}

TEST_F(UciTest, ContextsShareNothing) {
  write_store_file("p", "config t s\noption a 1\n");
  UciContext one;
  UciContext other;
  uci_package *in_one = nullptr;
  uci_package *in_other = nullptr;
  ASSERT_EQ(one.load(store_path("p"), &in_one), UCI_OK);
  ASSERT_EQ(other.load(store_path("p"), &in_other), UCI_OK);
  EXPECT_EQ(uci_unload(one.get(), in_one), UCI_OK);
  EXPECT_EQ(describe(in_other), "t s{a=1}");
  EXPECT_EQ(one.load("/var/none", nullptr), UCI_ERR_NOTFOUND);
  EXPECT_EQ(other.error_text(), "Success");
}

}  // namespace
}  // namespace zrcfg_test
