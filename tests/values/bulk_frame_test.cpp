// Tests of what all calls on several values have in common: null, lengths, opening, locks, closing.
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "tests/support/lock_holder.h"
#include "tests/support/user_rights.h"
#include "tests/values/bulk_calls.h"
#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

std::string url_line(const BulkCall &call, const std::string &url) {
  std::string line = call.url_line;
  const size_t at = line.find("URL");
  return at == std::string::npos ? line : line.replace(at, 3, url);
}

class BulkFrameTest : public ValuesTest, public ::testing::WithParamInterface<BulkCall> {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (!HasFatalFailure()) {
      store_section("stored\nb\nc\n");
    }
  }

  int run(int timeout = 0) { return run_on(kUrl, timeout); }
  int run_on(const char *url, int timeout) {
    clear_log();
    const BulkOutcome outcome = GetParam().run(url, timeout);
    outputs_untouched_ = outcome.untouched;
    return outcome.result;
  }

  void expect_done() {
    if (GetParam().writes) {
      expect_section("written\nb\nc\n");
    } else {
      expect_untouched();
    }
  }

  void expect_opening_failed(int result) {
    EXPECT_TRUE(outputs_untouched_);
    EXPECT_EQ(value_log().back(), "createObjByPath() fail ret=" + std::to_string(result) + "!\n");
  }

  bool outputs_untouched_ = false;
};

TEST_P(BulkFrameTest, Succeeds) {
  EXPECT_EQ(run(), 0);
  expect_done();
  if (*GetParam().url_line != '\0') {
    EXPECT_EQ(log_texts().front(), url_line(GetParam(), kUrl));
  }
}

TEST_P(BulkFrameTest, NullUrlGives10) {
  EXPECT_EQ(run_on(nullptr, 0), 10);
  if (*GetParam().null_text != '\0') {
    EXPECT_EQ(log_texts(), std::vector<std::string>(1, GetParam().null_text));
  }
  expect_untouched();
}

TEST_P(BulkFrameTest, UrlOf256CharactersGives1WithoutTouchingAFile) {
  for (const size_t length : {256u, 257u, 1000u}) {
    const std::string url(length, 'u');
    EXPECT_EQ(run_on(url.c_str(), 0), 1);
    const std::vector<std::string> lines = value_log();
    const std::string refusal = "pObjUrl len=" + std::to_string(length) + " out of range!\n";
    EXPECT_EQ(lines.back(), refusal);
    if (*GetParam().url_line != '\0') {
      EXPECT_EQ(lines, (std::vector<std::string>{url_line(GetParam(), url), refusal}));
    }
  }
  expect_untouched();
}

TEST_P(BulkFrameTest, UrlOf255CharactersIsServed) {
  const std::string dir = long_path(255, '/');
  const PropertyFile file = property_file({"A", "B"}, {"stored", "b"});
  write_property(dir, file);
  EXPECT_EQ(run_on(long_path(255, '.').c_str(), 0), 0);
  EXPECT_EQ(read_property(dir),
            GetParam().writes ? file.head_bytes() + "written\nb\n" : file.bytes());
}

TEST_P(BulkFrameTest, CallersUrlIsNotModified) {
  std::string url = kUrl;
  EXPECT_EQ(run_on(url.c_str(), 0), 0);
  EXPECT_EQ(url, kUrl);
}

TEST_P(BulkFrameTest, MissingObjectGives9WithALockAnd8Without) {
  make_store_dir("Gateway/Bare/");
  for (const char *url : {"Gateway.None.", "None.", "Gateway.Device", "Gateway.Bare."}) {
    EXPECT_EQ(run_on(url, 0), 9) << url;
    expect_opening_failed(9);
    EXPECT_EQ(run_on(url, ZRCFG_NO_LOCK), 8) << url;
    expect_opening_failed(8);
  }
  EXPECT_EQ(read_property(kDir), file_.bytes());
  EXPECT_FALSE(store_entry_exists("Gateway/None"));
}

TEST_P(BulkFrameTest, EmptySectionHasItsOwnResult) {
  store_section("");
  EXPECT_EQ(run(), GetParam().empty_section);
  expect_untouched();
}

TEST_P(BulkFrameTest, WriterElsewhereKeepsEveryCallOut) {
  const LockHolder holder(kFile, Held::kExclusive);
  EXPECT_EQ(run(0), 9);
  expect_opening_failed(9);
  EXPECT_EQ(run(5), 9);
  EXPECT_EQ(run(30), 9);
  expect_untouched();
}

TEST_P(BulkFrameTest, ReaderElsewhereKeepsWritersOutOnly) {
  const LockHolder holder(kFile, Held::kShared);
  EXPECT_EQ(run(0), GetParam().writes ? 9 : 0);
  expect_untouched();
}

TEST_P(BulkFrameTest, TemplatesLockCountsForAnInstance) {
  const PropertyFile file = property_file({"A"}, {"stored"});
  write_property("Table/0/", file);
  write_property("Table/7/", file);
  {
    const LockHolder holder("Table/0/property.conf", Held::kExclusive);
    EXPECT_EQ(run_on("Table.7.", 0), 9);
  }
  const LockHolder holder("Table/7/property.conf", Held::kExclusive);
  EXPECT_EQ(run_on("Table.7.", 0), 0);
  EXPECT_EQ(read_property("Table/0/"), file.bytes());
}

TEST_P(BulkFrameTest, NoLockMeansNoWaiting) {
  const LockHolder holder(kFile, Held::kExclusive);
  EXPECT_EQ(run(ZRCFG_NO_LOCK), 0);
  EXPECT_TRUE(log_contains("no need to be locked.\n"));
  expect_done();
}

TEST_P(BulkFrameTest, TimeOutBelow10FailsOnAFreeFile) {
  EXPECT_EQ(run(9), 9);
  EXPECT_EQ(run(10), 0);
  expect_done();
}

TEST_P(BulkFrameTest, TimeOutIsWaitedOut) {
  const LockHolder holder(kFile, Held::kExclusive);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(run(50), 9);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
}

TEST_P(BulkFrameTest, WaitWithoutLimitEndsWithTheHolder) {
  LockHolder holder(kFile, Held::kExclusive);
  std::atomic<bool> released{false};
  std::thread other([&holder, &released] {
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    released = true;
    holder.release();
  });
  const int result = run(ZRCFG_WAIT_FOREVER);
  const bool waited = released;
  other.join();
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(waited);
  expect_done();
}

TEST_P(BulkFrameTest, FileThatMayOnlyBeReadIsReadAndNotWritten) {
  {
    const UserWithMode reader(kFile, 0444);
    EXPECT_EQ(run(), GetParam().writes ? 7 : 0);
  }
  EXPECT_EQ(log_count("unable to open Gateway/Device/property.conf file\n"),
            GetParam().writes ? 1u : 0u);
  expect_untouched();
}

TEST_P(BulkFrameTest, LengthWordOutOfRangeGives10) {
  for (const uint32_t length : {0u, 183u, (16u << 20) + 1, 0xffffffffu}) {
    PropertyFile file = property_file({"A"}, {"stored"});
    file.length_word = length;
    store(file);
    EXPECT_EQ(run(), 10) << length;
    expect_opening_failed(10);
    expect_untouched();
  }
  for (const size_t size : {0u, 3u}) {
    write_property(kDir, std::string(size, '\0'));
    EXPECT_EQ(run(), 10);
    EXPECT_EQ(read_property(kDir).size(), size);
  }
}

TEST_P(BulkFrameTest, FileCutInItsHeadHasTheResultOfAnEmptySection) {
  const std::string whole = file_.head_bytes();
  for (const size_t size : {whole.size(), whole.size() - 1, size_t{188 + 124}, size_t{320}}) {
    write_property(kDir, whole.substr(0, size));
    EXPECT_EQ(run(), GetParam().empty_section) << size;
    EXPECT_EQ(read_property(kDir), whole.substr(0, size));
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, BulkFrameTest, ::testing::ValuesIn(bulk_calls()),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
