// Tests of entries that are no plain directories: what their reported type makes of them.
#include <dirent.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <map>
#include <string>

#include "tests/enum/enum_support.h"
#include "tests/support/scan_hook.h"
#include "tests/support/user_rights.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr unsigned char kDirectoryBit = 4;

class EntryKindTest : public EnumTest {
 protected:
  void SetUp() override {
    EnumTest::SetUp();
    if (!HasFatalFailure()) {
      write_property("A/", object_file());
      write_property("A/Dir/", object_file(2));
    }
  }

  static void make_special(const std::string &name, mode_t type) {
    ASSERT_EQ(mknod(store_path("A/" + name).c_str(), type | 0666, 0), 0);
  }

  // Lets the scan report these types for the named entries of A.
  static ScanHooks reporting(const std::map<std::string, unsigned char> &types) {
    ScanHooks hooks;
    hooks.after = [types](const std::string &, const std::vector<ScannedEntry> &entries) {
      for (const ScannedEntry &entry : entries) {
        const auto found = types.find(entry.name);
        if (found != types.end()) {
          *entry.type = found->second;
        }
      }
    };
    return hooks;
  }
};

TEST_F(EntryKindTest, FilesFifosAndLinksAreNoSubObjects) {
  write_store_file("A/File", "x");
  make_special("Fifo", S_IFIFO);
  ASSERT_EQ(symlink("Dir", store_path("A/Link").c_str()), 0);
  ASSERT_EQ(symlink("Nowhere", store_path("A/Dangling").c_str()), 0);
  seal();
  EXPECT_THAT(list_names("A.").names, ElementsAre("Dir"));
  EXPECT_THAT(list_children("A.").nodes, ElementsAre(Node{"A.Dir.", 2}));
  EXPECT_THAT(names_of(list_all("A.", 1).nodes), ElementsAre("A.", "A.Dir."));
}

// The type of a socket has the directory's bit set.
TEST_F(EntryKindTest, SocketsAreNamedButHaveNoInformation) {
  make_special("Socket", S_IFSOCK);
  make_special("7", S_IFSOCK);
  make_special("0", S_IFSOCK);
  seal();
  EXPECT_THAT(list_names("A.").names, ElementsAre("7", "Dir", "Socket"));
  EXPECT_THAT(list_children("A.").nodes, ElementsAre(Node{"A.Dir.", 2}));
  EXPECT_THAT(names_of(list_all("A.", 0).nodes), ElementsAre("A.", "A.Dir."));
  EXPECT_THAT(names_of(list_all("A.", 1).nodes), ElementsAre("A.", "A.Dir."));
}

TEST_F(EntryKindTest, SocketAmongInstancesIsPassedOver) {
  write_property("A/T/", object_file());
  write_property("A/T/0/", object_file());
  write_property("A/T/2/", object_file());
  make_special("T/1", S_IFSOCK);
  seal();
  EXPECT_THAT(list_names("A.T.").names, ElementsAre("1", "2"));
  EXPECT_THAT(names_of(list_children("A.T.").nodes), ElementsAre("A.T.2."));
  EXPECT_THAT(names_of(list_all("A.T.", 1).nodes), ElementsAre("A.T.", "A.T.2."));
}

TEST_F(EntryKindTest, TheDirectoryBitOfTheReportedTypeDecides) {
  seal();
  for (unsigned type = 0; type < 256; ++type) {
    const ScanHook hook(reporting({{"Dir", static_cast<unsigned char>(type)}}));
    const bool bit = (type & kDirectoryBit) != 0;
    EXPECT_EQ(list_names("A.").names.size(), bit ? 1u : 0u) << type;
    EXPECT_EQ(list_children("A.").nodes.size(), bit ? 1u : 0u) << type;
  }
}

TEST_F(EntryKindTest, EntriesOfUnreportedTypeAreNeverListed) {
  write_property("A/Other/", object_file());
  seal();
  const ScanHook hook(reporting({{"Dir", DT_UNKNOWN}}));
  EXPECT_THAT(list_names("A.").names, ElementsAre("Other"));
  EXPECT_THAT(names_of(list_children("A.").nodes), ElementsAre("A.Other."));
  EXPECT_THAT(names_of(list_all("A.", 1).nodes), ElementsAre("A.", "A.Other."));
}

// The link's type is taken for a directory's here, so that only the look at the entry tells.
TEST_F(EntryKindTest, LinkToADirectoryHasNoInformationWhateverItsReportedType) {
  ASSERT_EQ(symlink("Dir", store_path("A/Link").c_str()), 0);
  seal();
  const ScanHook hook(reporting({{"Link", DT_DIR}}));
  EXPECT_THAT(list_names("A.").names, ElementsAre("Dir", "Link"));
  EXPECT_THAT(list_children("A.").nodes, ElementsAre(Node{"A.Dir.", 2}));
}

TEST_F(EntryKindTest, FileReportedAsADirectoryHasNoInformation) {
  write_store_file("A/File", "x");
  seal();
  const ScanHook hook(reporting({{"File", DT_DIR}}));
  EXPECT_THAT(names_of(list_children("A.").nodes), ElementsAre("A.Dir."));
  EXPECT_THAT(names_of(list_all("A.", 1).nodes), ElementsAre("A.", "A.Dir."));
}

TEST_F(EntryKindTest, LinkAsTheObjectItselfIsFollowed) {
  write_property("A/Dir/Sub/", object_file(1));
  ASSERT_EQ(symlink("A/Dir", store_path("B").c_str()), 0);
  seal();
  EXPECT_THAT(list_names("B.").names, ElementsAre("Sub"));
  EXPECT_THAT(list_children("B.").nodes, ElementsAre(Node{"B.Sub.", 1}));
}

TEST_F(EntryKindTest, OddNamesAreNames) {
  for (const char *name : {"with blank", "-dash", "...", ".hidden", "\xc3\xa4", "%s%n", "a\nb"}) {
    write_property(std::string("A/") + name + "/", object_file());
  }
  seal();
  const std::vector<std::string> expected = {"%s%n", "-dash", "...",        ".hidden",
                                             "Dir",  "a\nb",  "with blank", "\xc3\xa4"};
  EXPECT_EQ(list_names("A.").names, expected);
  std::vector<std::string> urls;
  for (const std::string &name : expected) {
    urls.push_back("A." + name + ".");
  }
  EXPECT_EQ(names_of(list_children("A.").nodes), urls);
}

// Root is never refused, so the case steps down to an ordinary user.
TEST_F(EntryKindTest, DirectoriesThatMayNotBeReadGive1) {
  write_property("A/Closed/", object_file(1));
  write_property("A/Closed/Sub/", object_file());
  seal();
  const UserWithMode user("A/Closed", 0311);
  EXPECT_EQ(list_names("A.Closed.").result, 1u);
  EXPECT_EQ(list_children("A.Closed.").result, 1u);
  EXPECT_THAT(names_of(list_children("A.").nodes), ElementsAre("A.Closed.", "A.Dir."));
  const NodeList flat = list_all("A.Closed.", 0);
  EXPECT_EQ(flat.result, 0xFFFFFFFFu);
  EXPECT_FALSE(flat.written);
  EXPECT_THAT(names_of(list_all("A.", 1).nodes), ElementsAre("A.", "A.Closed.", "A.Dir."))
      << "the object is listed, its sub-objects cannot be";
}

TEST_F(EntryKindTest, DirectoryThatMayNotBeEnteredIsLeftOut) {
  write_property("A/Closed/", object_file(1));
  seal();
  const UserWithMode user("A/Closed", 0);
  EXPECT_THAT(list_children("A.").nodes, ElementsAre(Node{"A.Dir.", 2}));
  EXPECT_THAT(names_of(list_all("A.", 1).nodes), ElementsAre("A.", "A.Dir."));
  EXPECT_EQ(list_all("A.Closed.", 1).result, 0xFFFFFFFFu);
}

}  // namespace
}  // namespace zrcfg_test
