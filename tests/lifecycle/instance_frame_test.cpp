// What the calls on instances share: checks of arguments, opening, locks, results of a failed open.
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "support/lock_holder.h"
#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

using InstanceFrameTest = InstanceCallTest;

constexpr char kNullText[] = "Input parameters can't be NULL!\n";

std::string open_failed(int result) {
  return "createObjByPath() fail ret=" + std::to_string(result) + "!\n";
}

TEST_P(InstanceFrameTest, SucceedsWithEveryKindOfTimeOut) {
  for (const int timeout : {ZRCFG_NO_LOCK, ZRCFG_WAIT_FOREVER, 0, 10, 1000, -10}) {
    SetUp();
    EXPECT_EQ(run(timeout), 0u) << timeout;
    expect_tree(done());
  }
}

TEST_P(InstanceFrameTest, NullUrlGives10AndOneLine) {
  EXPECT_EQ(run_on(nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), Lines{kNullText});
  EXPECT_TRUE(outputs_.untouched());
  expect_unchanged();
}

TEST_P(InstanceFrameTest, UrlOf256CharactersGives1) {
  for (const size_t length : {256u, 257u, 300u, 5000u}) {
    const std::string url = url_of(path_of(length));
    EXPECT_EQ(run_on(url.c_str(), 0), 1u) << length;
    const std::string text = "bjUrl len=" + std::to_string(length) + " out of range!\n";
    const InstanceCall &call = GetParam();
    // The fixed calls name their URL when its length is known to be good.
    const Lines lines = lifecycle_log();
    const Lines refused = {(call.exports ? "o" : "pO") + text};
    EXPECT_TRUE(lines == opening_lines(call, url, 2) + refused || (call.fixed && lines == refused))
        << ::testing::PrintToString(lines);
    EXPECT_TRUE(outputs_.untouched());
  }
  expect_unchanged();
}

TEST_P(InstanceFrameTest, MissingTableGives9WithALockAnd8Without) {
  for (const char *url : {"Gateway.None.", "None.Table.", "Gateway.Tabl."}) {
    EXPECT_EQ(run_on(url, 0), 9u) << url;
    EXPECT_EQ(lifecycle_log().back(), open_failed(9)) << url;
    EXPECT_EQ(run_on(url, ZRCFG_NO_LOCK), 8u) << url;
    EXPECT_EQ(lifecycle_log().back(), open_failed(8)) << url;
    EXPECT_TRUE(outputs_.untouched());
  }
  expect_unchanged();
}

TEST_P(InstanceFrameTest, MissingTableBelowALockedOneGives8) {
  for (const char *url : {"Gateway.Table.7.Sub.", "Gateway.Table.1.None."}) {
    EXPECT_EQ(run_on(url, 0), 8u) << url;
    EXPECT_EQ(lifecycle_log().back(), open_failed(8)) << url;
    EXPECT_TRUE(outputs_.untouched());
  }
  expect_unchanged();
}

TEST_P(InstanceFrameTest, TableWithoutPropertyFileGives8WhereItsLockFileIsElsewhere) {
  unlink(property_path(table_dir(GetParam())).c_str());
  remember();
  EXPECT_EQ(run(0), GetParam().fixed ? 9u : 8u);
  EXPECT_EQ(run(ZRCFG_NO_LOCK), 8u);
  EXPECT_EQ(lifecycle_log().back(), open_failed(8));
  expect_unchanged();
}

TEST_P(InstanceFrameTest, MalformedTableGives10) {
  for (const std::string &bytes : {std::string(), std::string("\0\0\0\x05", 4)}) {
    write_property(table_dir(GetParam()), bytes);
    remember();
    EXPECT_EQ(run(0), 10u);
    EXPECT_EQ(lifecycle_log().back(), open_failed(10));
    EXPECT_TRUE(outputs_.untouched());
    expect_unchanged();
  }
}

TEST_P(InstanceFrameTest, EveryLockOnTheLockFileKeepsTheCallOut) {
  for (const Held held : {Held::kShared, Held::kExclusive}) {
    const LockHolder holder(GetParam().lock, held);
    for (const int timeout : {0, 5, 30}) {
      EXPECT_EQ(run(timeout), 9u) << timeout;
      EXPECT_EQ(lifecycle_log().back(), open_failed(9));
      EXPECT_TRUE(outputs_.untouched());
    }
    expect_unchanged();
  }
}

TEST_P(InstanceFrameTest, OtherLocksDoNot) {
  const LockHolder one("Gateway/Table/1/property.conf", Held::kExclusive);
  const LockHolder other(
      GetParam().fixed ? "Gateway/Table/0/property.conf" : "Gateway/Table/property.conf",
      Held::kExclusive);
  EXPECT_EQ(run(0), 0u);
  expect_tree(done());
}

TEST_P(InstanceFrameTest, TimeOutBelow10FailsOnFreeFiles) {
  EXPECT_EQ(run(9), 9u);
  expect_unchanged();
}

TEST_P(InstanceFrameTest, TimeOutIsWaitedOut) {
  const LockHolder holder(GetParam().lock, Held::kShared);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(run(50), 9u);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
}

TEST_P(InstanceFrameTest, NoLockPassesEveryLock) {
  const LockHolder own(GetParam().lock, Held::kExclusive);
  const LockHolder parent(kParentLock, Held::kExclusive);
  EXPECT_EQ(run(ZRCFG_NO_LOCK), 0u);
  expect_tree(done());
}

TEST_P(InstanceFrameTest, CallersUrlIsNotModified) {
  std::string url = table_url(GetParam());
  EXPECT_EQ(run_on(url.c_str(), 0), 0u);
  EXPECT_EQ(url, table_url(GetParam()));
}

TEST_P(InstanceFrameTest, OutputsMayBeNull) {
  const InstanceCall &call = GetParam();
  const std::string instance = std::string(kTableUrl) + "2";
  uint32_t result = 0;
  if (call.exports) {
    result = call.creates ? zrcfg_exportaddobject(instance.c_str(), 0, 0, nullptr)
                          : zrcfg_exportdelobject(instance.c_str(), 0, 0, nullptr);
  } else if (call.name == std::string("Add")) {
    result = zrcfg_addobject(kTableUrl, nullptr, 0);
  } else {
    result = run(0);
  }
  EXPECT_EQ(result, 0u);
  expect_tree(done());
}

// Below an outer instance every lock is that of the outer template; each is taken after the one
// before it was released, so that the call does not keep itself out.
TEST_P(InstanceFrameTest, OuterTemplateIsTheLockOfTableAndParent) {
  const std::string inner = "Outer/1/" + table_dir(GetParam());
  write_property("Outer/0/", property_file({"X"}, {"x"}));
  write_property("Outer/0/Gateway/Table/0/", property_file({"X"}, {"x"}));
  for (const auto &[path, entry] : tree_) {
    if (entry == kDirEntry) {
      make_store_dir("Outer/1/" + path + "/");
    } else {
      make_store_dir("Outer/1/" + path.substr(0, path.rfind('/')) + "/");
      write_store_file("Outer/1/" + path, entry.substr(5));
    }
  }
  const Tree expected_inner = done();
  remember();
  const std::string url = url_of(inner);
  {
    const LockHolder holder("Outer/0/property.conf", Held::kShared);
    EXPECT_EQ(run_on(url.c_str(), 0), 9u);
    expect_unchanged();
  }
  const LockHolder innermost("Outer/1/" + std::string(GetParam().lock), Held::kExclusive);
  EXPECT_EQ(run_on(url.c_str(), 0), 0u);
  Tree expected = without(tree_, "Outer/1");
  expected["Outer/1"] = kDirEntry;
  for (const auto &[path, entry] : expected_inner) {
    expected["Outer/1/" + path] = entry;
  }
  expect_tree(expected);
}

INSTANTIATE_TEST_SUITE_P(Calls, InstanceFrameTest, ::testing::ValuesIn(instance_calls()),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
