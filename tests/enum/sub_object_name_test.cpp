// Tests of the names of an object's sub-objects: which are listed, their order, codes and texts.
#include <gmock/gmock.h>
#include <sys/file.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "enum/sub_objects.h"
#include "tests/core/core_support.h"
#include "tests/enum/enum_support.h"
#include "tests/support/lock_holder.h"
#include "tests/support/scan_hook.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SubObjectNameTest : public EnumTest {
 protected:
  // The table A.B. with these children, each with a file, and its own.
  void store_children(const std::vector<std::string> &names) {
    write_property("A/B/", object_file());
    for (const std::string &name : names) {
      write_property("A/B/" + name + "/", object_file());
    }
    seal();
  }

  // The list that the building block gives, called directly.
  static std::vector<std::string> constructed(const char *dir) {
    SubObjName *head = nullptr;
    EXPECT_EQ(constructObjList(dir, &head), 0u);
    return take_names(head);
  }
};

TEST_F(SubObjectNameTest, NumbersComeByValueWithoutFileAndTemplate) {
  store_children({"0", "1", "2", "10"});
  EXPECT_THAT(list_names("A.B.").names, ElementsAre("1", "2", "10"));
  EXPECT_THAT(constructed("A/B/"), ElementsAre("1", "2", "10"));
}

TEST_F(SubObjectNameTest, NamesComeBehindNumbersInByteOrder) {
  store_children({"lower", "WANPPPConnection", "9", "WANIPConnection", "10", "Z", "_x", "100"});
  const std::vector<std::string> expected = {
      "9", "10", "100", "WANIPConnection", "WANPPPConnection", "Z", "_x", "lower"};
  EXPECT_EQ(list_names("A.B.").names, expected);
  EXPECT_EQ(constructed("A/B/"), expected);
}

TEST_F(SubObjectNameTest, EqualNumbersStandTogetherInEitherOrder) {
  store_children({"10", "007", "7", "6", "8"});
  const std::vector<std::string> names = list_names("A.B.").names;
  ASSERT_EQ(names.size(), 5u);
  EXPECT_EQ(names[0], "6");
  EXPECT_TRUE((names[1] == "7" && names[2] == "007") || (names[1] == "007" && names[2] == "7"));
  EXPECT_EQ(names[3], "8");
  EXPECT_EQ(names[4], "10");
}

TEST_F(SubObjectNameTest, OnlyTheNameOfOneZeroIsTheTemplate) {
  store_children({"0", "00", "1", "x0"});
  EXPECT_THAT(list_names("A.B.").names, ElementsAre("00", "1", "x0"));
}

TEST_F(SubObjectNameTest, HiddenChildrenAndThoseWithoutFileAreListed) {
  write_property("A/", object_file());
  write_property("A/Hidden/", hidden_file());
  write_property("A/Malformed/", std::string("xx"));
  make_store_dir("A/Bare/");
  seal();
  EXPECT_THAT(list_names("A.").names, ElementsAre("Bare", "Hidden", "Malformed"));
}

TEST_F(SubObjectNameTest, ObjectWithoutSubObjectsGivesNullAnd0) {
  write_property("A/", object_file());
  write_property("A/T/0/", object_file());
  write_property("A/T/", object_file());
  write_store_file("A/other", "a file");
  seal();
  for (const char *url : {"A.T.", "A.T.0."}) {
    const NameList list = list_names(url);
    EXPECT_EQ(list.result, 0u);
    EXPECT_TRUE(list.written) << "null is stored";
    EXPECT_THAT(list.names, IsEmpty());
  }
  SubObjName mark = {};
  SubObjName *head = &mark;
  EXPECT_EQ(constructObjList("A/T/", &head), 0u);
  EXPECT_EQ(head, nullptr);
}

TEST_F(SubObjectNameTest, ThousandChildrenComeByValue) {
  std::vector<std::string> names;
  for (int i = 1; i <= 1000; ++i) {
    names.push_back(std::to_string(i));
  }
  const std::vector<std::string> expected = names;
  std::shuffle(names.begin(), names.end(), std::mt19937(7));
  write_property("A/B/", object_file());
  for (const std::string &name : names) {
    make_store_dir("A/B/" + name + "/");
  }
  EXPECT_EQ(list_names("A.B.").names, expected);
}

TEST_F(SubObjectNameTest, LongNamesAreCutTo63CharactersAndTerminated) {
  write_property("A/", object_file());
  std::vector<std::string> expected;
  for (const size_t length : std::vector<size_t>{62, 63, 64, 65, 128, longest_name()}) {
    const char first = static_cast<char>('a' + expected.size());
    const std::string name = first + std::string(length - 1, 'n');
    make_store_dir("A/" + name + "/");
    expected.push_back(name.substr(0, 63));
  }
  seal();
  EXPECT_EQ(list_names("A.").names, expected);
  EXPECT_EQ(constructed("A/"), expected);
}

TEST_F(SubObjectNameTest, RecordsAreClearedBehindTheName) {
  write_property("A/B/", object_file());
  write_property("A/", object_file());
  SubObjName *head = nullptr;
  ASSERT_EQ(constructObjList("A/", &head), 0u);
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(std::string(head->name, sizeof head->name), "B" + std::string(63, '\0'));
  EXPECT_EQ(head->next, nullptr);
  EXPECT_EQ(take_names(head).size(), 1u);
}

TEST_F(SubObjectNameTest, EmptyUrlListsTheRoot) {
  write_store_file("property.conf", object_file().bytes());
  make_store_dir("Device/");
  make_store_dir("InternetGatewayDevice/");
  seal();
  EXPECT_THAT(list_names("").names, ElementsAre("Device", "InternetGatewayDevice"));
  EXPECT_THAT(constructed(""), ElementsAre("Device", "InternetGatewayDevice"));
}

TEST_F(SubObjectNameTest, NullUrlIsRefusedWithItsTextAlone) {
  SubObjName mark = {};
  SubObjName *head = &mark;
  EXPECT_EQ(zrcfg_getallsubobj(nullptr, &head), 10u);
  EXPECT_THAT(log_texts(), ElementsAre("Input parameters can't be NULL!\n"));
  EXPECT_EQ(head, &mark);
}

TEST_F(SubObjectNameTest, NullListIsNoErrorAndKeepsNothing) {
  store_children({"1", "2"});
  EXPECT_EQ(zrcfg_getallsubobj("A.B.", nullptr), 0u);
  EXPECT_EQ(constructObjList("A/B/", nullptr), 0u);
}

TEST_F(SubObjectNameTest, NullDirectoryDoesNotCrash) {
  SubObjName mark = {};
  SubObjName *head = &mark;
  EXPECT_EQ(constructObjList(nullptr, &head), 10u);
  EXPECT_EQ(head, &mark);
}

TEST_F(SubObjectNameTest, UrlOf255CharactersIsServedAnd256IsNot) {
  const std::string url = deep_url(255);
  ASSERT_EQ(url.size(), 255u);
  write_property(dir_of(url), object_file());
  make_store_dir(dir_of(url) + "Child/");
  seal();
  EXPECT_THAT(list_names(url).names, ElementsAre("Child"));
  clear_log();
  const std::string longer = deep_url(256);
  const NameList list = list_names(longer);
  EXPECT_EQ(list.result, 1u);
  EXPECT_FALSE(list.written);
  EXPECT_THAT(log_texts(),
              ElementsAre("objUrl =  " + longer + "\n", "pObjUrl len=256 out of range!\n"));
}

TEST_F(SubObjectNameTest, ObjectWithoutLockFileGives9) {
  make_store_dir("A/B/1/");
  seal();
  for (const char *url : {"A.B.", "A.B.1.", "No.Such.", "A.B"}) {
    clear_log();
    const NameList list = list_names(url);
    EXPECT_EQ(list.result, 9u) << url;
    EXPECT_FALSE(list.written) << url;
    EXPECT_THAT(enum_log(),
                ElementsAre(std::string("objUrl =  ") + url + "\n", "getReadLock fail!\n"));
  }
}

TEST_F(SubObjectNameTest, MissingDirectoryUnderALockGives1WithItsTexts) {
  write_property("A/B/0/", object_file());
  seal();
  const NameList list = list_names("A.B.7.");
  EXPECT_EQ(list.result, 1u);
  EXPECT_FALSE(list.written);
  EXPECT_THAT(enum_log(), ElementsAre("objUrl =  A.B.7.\n", "unable to get A/B/7/ sub directory\n",
                                      "getObjList() fail ret=1!\n"));
  EXPECT_TRUE(exclusively_lockable("A/B/0/property.conf"));
}

TEST_F(SubObjectNameTest, FailedScanGives1AndReleasesTheLock) {
  store_children({"1"});
  for (const int error : {EACCES, EMFILE, ENOMEM, ENOENT}) {
    clear_log();
    const ScanHook hook(failing_scan("A/B/", error));
    const NameList list = list_names("A.B.");
    EXPECT_EQ(list.result, 1u);
    EXPECT_FALSE(list.written);
    EXPECT_EQ(hook.count(), 1u);
    EXPECT_THAT(enum_log(), ElementsAre("objUrl =  A.B.\n", "unable to get A/B/ sub directory\n",
                                        "getObjList() fail ret=1!\n"));
    EXPECT_TRUE(exclusively_lockable("A/B/property.conf"));
  }
}

TEST_F(SubObjectNameTest, ConstructingFromWhatIsNoDirectoryGives1) {
  write_store_file("file", "x");
  seal();
  for (const char *dir : {"None/", "file", "file/"}) {
    clear_log();
    SubObjName mark = {};
    SubObjName *head = &mark;
    EXPECT_EQ(constructObjList(dir, &head), 1u) << dir;
    EXPECT_EQ(head, &mark);
    EXPECT_THAT(log_texts(), ElementsAre(std::string("unable to get ") + dir + " sub directory\n"));
  }
}

TEST_F(SubObjectNameTest, ScanIsMadeUnderTheSharedLockWithOneTry) {
  store_children({"1"});
  ScanHooks hooks;
  bool shared = false;
  bool exclusive = true;
  hooks.before = [&](const std::string &) {
    shared = shared_lockable("A/B/property.conf");
    exclusive = exclusively_lockable("A/B/property.conf");
    return 0;
  };
  const ScanHook hook(hooks);
  EXPECT_THAT(list_names("A.B.").names, ElementsAre("1"));
  EXPECT_TRUE(shared);
  EXPECT_FALSE(exclusive);
}

TEST_F(SubObjectNameTest, ExclusiveLockOfAnotherProcessGives9AtOnce) {
  store_children({"1"});
  {
    const LockHolder holder("A/B/property.conf", Held::kExclusive);
    const NameList list = list_names("A.B.");
    EXPECT_EQ(list.result, 9u);
    EXPECT_FALSE(list.written);
    EXPECT_EQ(enum_log().back(), "getReadLock fail!\n");
    EXPECT_EQ(log_count("A/B/property.conf file was not locked.\n"), 1u);
  }
  const LockHolder holder("A/B/property.conf", Held::kShared);
  EXPECT_THAT(list_names("A.B.").names, ElementsAre("1"));
}

TEST_F(SubObjectNameTest, LockOfAnInstanceIsItsTemplates) {
  write_property("A/B/0/", object_file());
  write_property("A/B/1/C/", object_file());
  write_property("A/B/1/C/2/", object_file());
  seal();
  const LockHolder holder("A/B/0/property.conf", Held::kExclusive);
  EXPECT_EQ(list_names("A.B.1.C.").result, 9u);
  EXPECT_EQ(list_names("A.B.0.").result, 9u);
}

TEST_F(SubObjectNameTest, SuccessLogsTheUrlAlone) {
  store_children({"1"});
  EXPECT_EQ(list_names("A.B.").result, 0u);
  EXPECT_THAT(enum_log(), ElementsAre("objUrl =  A.B.\n"));
}

}  // namespace
}  // namespace zrcfg_test
