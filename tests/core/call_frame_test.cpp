// Tests of the frame of every call on one object: order of checks, texts, lock types, closing.
#include <gmock/gmock.h>
#include <sys/file.h>

#include <functional>
#include <string>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kNullRead[] = "Input parameters can't be NULL\n";
constexpr char kNullWrite[] = "Input parameters can't be NULL!\n";

// One of the three writes, with outputs of its own.
struct WriteCall {
  const char *name;
  std::function<uint32_t(const char *url, const char *name, const char *value, int timeout)> run;
};

class CallFrameTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      write_property(kDir, property_file({"Name"}, {"stored"}));
      before_ = read_property(kDir);
      age_file(kFile);
    }
  }

  std::vector<WriteCall> writes() {
    return {
        {"set", zrcfg_setsingleparamval},
        {"ext",
         [this](const char *url, const char *name, const char *value, int timeout) {
           return zrcfg_setsingleparamval_ext(url, name, value, timeout, &changed_);
         }},
        {"old value", [this](const char *url, const char *name, const char *value, int timeout) {
           return zrcfg_setsingleparamval_ext_get_old_value(url, name, value, timeout, &changed_,
                                                            old_.data());
         }}};
  }

  void expect_nothing_written(const char *call) {
    EXPECT_EQ(read_property(kDir), before_) << call;
    EXPECT_TRUE(is_aged(kFile)) << call;
    EXPECT_EQ(changed_, 77) << call << ": the flag is not written";
    EXPECT_TRUE(old_.untouched()) << call;
  }

  std::string before_;
  uint8_t changed_ = 77;
  GuardedBuffer old_;
};

TEST_F(CallFrameTest, ReadRefusesNullWithItsTextAlone) {
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(nullptr, "Name", value.data(), 0), 10u);
  EXPECT_THAT(fixed_log(), ElementsAre(kNullRead));
  clear_log();
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, nullptr, value.data(), 0), 10u);
  EXPECT_THAT(fixed_log(), ElementsAre(kNullRead));
  clear_log();
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", nullptr, 0), 10u);
  EXPECT_THAT(fixed_log(), ElementsAre(kNullRead));
  EXPECT_TRUE(value.untouched());
}

TEST_F(CallFrameTest, WritesRefuseNullWithTheirTextAlone) {
  for (const WriteCall &call : writes()) {
    clear_log();
    EXPECT_EQ(call.run(nullptr, "Name", "new", 0), 10u) << call.name;
    EXPECT_THAT(fixed_log(), ElementsAre(kNullWrite)) << call.name;
    clear_log();
    EXPECT_EQ(call.run(kUrl, nullptr, "new", 0), 10u) << call.name;
    EXPECT_THAT(fixed_log(), ElementsAre(kNullWrite)) << call.name;
    clear_log();
    EXPECT_EQ(call.run(kUrl, "Name", nullptr, 0), 10u) << call.name;
    EXPECT_THAT(fixed_log(), ElementsAre(kNullWrite)) << call.name;
    expect_nothing_written(call.name);
  }
}

TEST_F(CallFrameTest, OldValueWriteRefusesNullOutputs) {
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value(kUrl, "Name", "n", 0, nullptr, old_.data()),
            10u);
  EXPECT_THAT(fixed_log(), ElementsAre(kNullWrite));
  clear_log();
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value(kUrl, "Name", "n", 0, &changed_, nullptr),
            10u);
  EXPECT_THAT(fixed_log(), ElementsAre(kNullWrite));
  expect_nothing_written("old value");
}

TEST_F(CallFrameTest, ExtWriteDoesWithoutItsFlag) {
  EXPECT_EQ(zrcfg_setsingleparamval_ext(kUrl, "Name", "new", 0, nullptr), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "new\n");
}

TEST_F(CallFrameTest, NullComesBeforeTheLengths) {
  const std::string long_value(256, 'v');
  const std::string long_url = long_path(256, '.');
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(long_url.c_str(), nullptr, value.data(), 0), 10u);
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run(nullptr, "Name", long_value.c_str(), 0), 10u) << call.name;
    EXPECT_EQ(call.run(kUrl, nullptr, long_value.c_str(), 0), 10u) << call.name;
    EXPECT_EQ(call.run(long_url.c_str(), "Name", nullptr, 0), 10u) << call.name;
  }
}

TEST_F(CallFrameTest, OverlongValueIsIgnoredWithResult0) {
  const std::string value(256, 'v');
  for (const WriteCall &call : writes()) {
    clear_log();
    EXPECT_EQ(call.run(kUrl, "Name", value.c_str(), 0), 0u) << call.name;
    EXPECT_THAT(fixed_log(),
                ElementsAre("param(Name) value lenth(256) is out of range, not set to mem!\n"));
    expect_nothing_written(call.name);
  }
}

TEST_F(CallFrameTest, OverlongValueIsLoggedWithItsLength) {
  const std::string value(1000, 'v');
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Other", value.c_str(), 0), 0u);
  EXPECT_THAT(fixed_log(),
              ElementsAre("param(Other) value lenth(1000) is out of range, not set to mem!\n"));
}

TEST_F(CallFrameTest, ValueLengthComesBeforeTheUrlTheObjectAndTheLineFeed) {
  const std::string value(256, '\n');
  const std::string url = long_path(256, '.');
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run(url.c_str(), "Name", value.c_str(), 0), 0u) << call.name;
    EXPECT_EQ(call.run("No.Such.Object.", "Name", value.c_str(), 0), 0u) << call.name;
  }
}

TEST_F(CallFrameTest, ValueOf255CharactersIsStored) {
  for (const WriteCall &call : writes()) {
    const std::string value(255, call.name[0]);
    EXPECT_EQ(call.run(kUrl, "Name", value.c_str(), 0), 0u) << call.name;
    EXPECT_EQ(value_section(read_property(kDir)), value + "\n") << call.name;
  }
}

TEST_F(CallFrameTest, UrlOf256CharactersGives1) {
  const std::string url = long_path(256, '.');
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(url.c_str(), "Name", value.data(), 0), 1u);
  EXPECT_THAT(fixed_log(), ElementsAre("pObjUrl len=256 out of range!\n"));
  EXPECT_TRUE(value.untouched());
  for (const WriteCall &call : writes()) {
    clear_log();
    EXPECT_EQ(call.run(url.c_str(), "Name", "new", 0), 1u) << call.name;
    EXPECT_THAT(fixed_log(), ElementsAre("pObjUrl len=256 out of range!\n")) << call.name;
    expect_nothing_written(call.name);
  }
}

TEST_F(CallFrameTest, UrlOf255CharactersIsServed) {
  const std::string url = long_path(255, '.');
  const std::string dir = long_path(255, '/');
  write_property(dir, property_file({"Name"}, {"deep"}));
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(url.c_str(), "Name", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), "deep");
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run(url.c_str(), "Name", call.name, 0), 0u) << call.name;
    EXPECT_EQ(value_section(read_property(dir)), std::string(call.name) + "\n");
  }
}

TEST_F(CallFrameTest, UrlLengthComesBeforeTheLineFeed) {
  const std::string url = long_path(256, '.');
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run(url.c_str(), "Name", "a\nb", 0), 1u) << call.name;
  }
}

TEST_F(CallFrameTest, LineFeedIsRefusedWith7BeforeTheObjectIsOpened) {
  for (const WriteCall &call : writes()) {
    clear_log();
    EXPECT_EQ(call.run(kUrl, "Name", "a\nb", 0), 7u) << call.name;
    EXPECT_EQ(call.run(kUrl, "Name", "\n", 0), 7u) << call.name;
    EXPECT_EQ(call.run(kUrl, "Unknown", "trailing\n", 0), 7u) << call.name;
    EXPECT_FALSE(log_texts().empty()) << "a refusal is logged";
    EXPECT_EQ(call.run("No.Such.Object.", "Name", "a\nb", 0), 7u) << call.name;
    EXPECT_EQ(call.run("No.Such.Object.", "Name", "a\nb", ZRCFG_NO_LOCK), 7u) << call.name;
    EXPECT_EQ(read_property(kDir), before_) << call.name;
    EXPECT_TRUE(old_.untouched()) << call.name;
  }
}

TEST_F(CallFrameTest, CallersStringsAreNotModified) {
  char url[] = "Gateway.Device.";
  char name[] = "Name";
  char value[] = "new";
  EXPECT_EQ(zrcfg_setsingleparamval(url, name, value, 0), 0u);
  EXPECT_STREQ(url, "Gateway.Device.");
  EXPECT_STREQ(name, "Name");
  EXPECT_STREQ(value, "new");
}

TEST_F(CallFrameTest, FailedOpenIsLoggedAndReturned) {
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval("No.", "Name", value.data(), 0), 9u);
  EXPECT_TRUE(log_has_in_order(
      {"getLockFile() can not found file!\n", "objPath=No/ getLockFile fail.\n", "getLock fail!\n",
       "file(fd=-1) no need unlock.\n", "createObjByPath() fail ret=9!\n"}));
  EXPECT_EQ(zrcfg_getsingleparamval("No.", "Name", value.data(), ZRCFG_NO_LOCK), 8u);
  EXPECT_TRUE(log_has_in_order({"getPropertyFile() fail!\n", "createObjByPath() fail ret=8!\n"}));
  EXPECT_TRUE(value.untouched());
  for (const WriteCall &call : writes()) {
    clear_log();
    EXPECT_EQ(call.run("No.", "Name", "new", 0), 9u) << call.name;
    EXPECT_EQ(last_fixed_log(), "createObjByPath() fail ret=9!\n") << call.name;
    EXPECT_EQ(call.run("No.", "Name", "new", ZRCFG_NO_LOCK), 8u) << call.name;
    EXPECT_EQ(last_fixed_log(), "createObjByPath() fail ret=8!\n") << call.name;
    expect_nothing_written(call.name);
  }
}

TEST_F(CallFrameTest, UrlWithoutItsLastDotIsNotFound) {
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval("Gateway.Device", "Name", value.data(), ZRCFG_NO_LOCK), 8u);
  EXPECT_EQ(zrcfg_setsingleparamval("Gateway.Device", "Name", "new", ZRCFG_NO_LOCK), 8u);
}

TEST_F(CallFrameTest, EmptyUrlIsTheRootObject) {
  write_property("", property_file({"Name"}, {"root"}));
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval("", "Name", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), "root");
}

TEST_F(CallFrameTest, ReadsShareTheLockAndWritesDoNot) {
  const HeldLock held(kFile, LOCK_SH);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", value.data(), 0), 0u);
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run(kUrl, "Name", "new", 0), 9u) << call.name;
    EXPECT_EQ(call.run(kUrl, "Name", "new", 20), 9u) << call.name;
    expect_nothing_written(call.name);
  }
}

TEST_F(CallFrameTest, NoLockWorksInsideALockOfTheCaller) {
  int fd = -1;
  ASSERT_EQ(zrcfg_lockurl(kUrl, &fd, 0, ZRCFG_LOCK_EXCLUSIVE), 0u);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", value.data(), 0), 9u);
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", value.data(), ZRCFG_NO_LOCK), 0u);
  EXPECT_EQ(value.text(), "stored");
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run(kUrl, "Name", call.name, ZRCFG_NO_LOCK), 0u) << call.name;
    EXPECT_EQ(value_section(read_property(kDir)), std::string(call.name) + "\n");
  }
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(CallFrameTest, InstancesAreLockedAtTheirTemplate) {
  write_property("T/0/", property_file({"Name"}, {"template"}));
  write_property("T/5/", property_file({"Name"}, {"five"}));
  const HeldLock held("T/0/property.conf", LOCK_EX);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval("T.5.", "Name", value.data(), 0), 9u);
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run("T.5.", "Name", "new", 0), 9u) << call.name;
  }
}

TEST_F(CallFrameTest, TimeoutIsPassedThrough) {
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", value.data(), 5), 9u) << "no try at all";
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", value.data(), ZRCFG_WAIT_FOREVER), 0u);
  for (const WriteCall &call : writes()) {
    EXPECT_EQ(call.run(kUrl, "Name", "new", 5), 9u) << call.name;
    EXPECT_EQ(call.run(kUrl, "Name", "new", ZRCFG_WAIT_FOREVER), 0u) << call.name;
  }
}

TEST_F(CallFrameTest, ReadLogsEveryStepInOrder) {
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name", value.data(), 0), 0u);
  EXPECT_THAT(fixed_log(),
              ElementsAre("getLockFile() objPath=Gateway/Device/!\n",
                          "objPath=Gateway/Device/ lockfile=Gateway/Device/property.conf lockfd=N, "
                          "rwType=0, lock succ.\n",
                          "property_file=Gateway/Device/property.conf exist!",
                          "property_file = Gateway/Device/property.conf\n",
                          "Find the param!param name=Name!\n"));
}

TEST_F(CallFrameTest, WritesLogEveryStepInOrder) {
  std::string stored = "stored";
  for (const WriteCall &call : writes()) {
    clear_log();
    EXPECT_EQ(call.run(kUrl, "Name", call.name, 0), 0u);
    EXPECT_THAT(
        fixed_log(),
        ElementsAre("getLockFile() objPath=Gateway/Device/!\n",
                    "objPath=Gateway/Device/ lockfile=Gateway/Device/property.conf lockfd=N, "
                    "rwType=1, lock succ.\n",
                    "property_file=Gateway/Device/property.conf exist!",
                    "property_file = Gateway/Device/property.conf\n",
                    "Find the param! param name=Name! pRead=" + stored +
                        " value_struct=" + call.name + "\n",
                    "read finish!\n"))
        << call.name;
    stored = call.name;
  }
}

TEST_F(CallFrameTest, FailedWorkIsLoggedWithTheStepAndClosesTheObject) {
  PropertyFile short_file = property_file({"Name", "Second"}, {"", ""});
  short_file.values = "only\n";
  write_property(kDir, short_file);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Second", value.data(), 0), 10u);
  EXPECT_EQ(last_fixed_log(), "getSingleParamValueByParamName() fail ret=10!\n");
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Unknown", "x", 0), 5u);
  EXPECT_EQ(last_fixed_log(), "setSingleParamValueByParamName() fail ret=5!\n");
  EXPECT_EQ(zrcfg_setsingleparamval_ext(kUrl, "Unknown", "x", 0, &changed_), 5u);
  EXPECT_EQ(last_fixed_log(), "setSingleParamValueByParamName() fail ret=5!\n");
  EXPECT_EQ(changed_, 1);
  changed_ = 77;
  EXPECT_EQ(
      zrcfg_setsingleparamval_ext_get_old_value(kUrl, "Unknown", "x", 0, &changed_, old_.data()),
      5u);
  EXPECT_EQ(last_fixed_log(), "set_single_param_value_by_param_name() fail ret=5!\n");
  EXPECT_EQ(changed_, 1);
  EXPECT_TRUE(can_lock(kFile, LOCK_EX));
}

}  // namespace
}  // namespace zrcfg_test
