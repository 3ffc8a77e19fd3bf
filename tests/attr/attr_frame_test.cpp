// Tests of what all attribute calls have in common: null, lengths, opening, locks, closing.
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "tests/attr/attr_calls.h"
#include "tests/attr/attr_support.h"
#include "tests/support/lock_holder.h"

namespace zrcfg_test {
namespace {

std::string url_line(const AttrCall &call, const std::string &url) {
  std::string line = call.url_line;
  const size_t at = line.find("URL");
  return at == std::string::npos ? line : line.replace(at, 3, url);
}

class AttrFrameTest : public AttrTest, public ::testing::WithParamInterface<AttrCall> {
 protected:
  void SetUp() override {
    AttrTest::SetUp();
    if (!HasFatalFailure()) {
      store(property_file({"A"}, {"value"}));
    }
  }

  uint32_t run(int timeout = 0) { return run_on(kUrl, timeout); }
  uint32_t run_on(const char *url, int timeout) {
    clear_log();
    const AttrOutcome outcome = GetParam().run(url, timeout);
    untouched_ = outcome.untouched;
    return outcome.result;
  }

  // What the call makes of a file of one record.
  static std::string after(std::string bytes) {
    if (GetParam().writes && GetParam().of_object) {
      bytes[kHeaderAt + 7] = 9;
      bytes[kHeaderAt + 4] = static_cast<char>((length_word(bytes) - 184) / 124);
    } else if (GetParam().writes) {
      model_noti(bytes, record_at(0), 9);
    }
    return bytes;
  }

  void expect_done() {
    if (GetParam().writes) {
      expect_file(after(before_));
    } else {
      EXPECT_FALSE(untouched_);
      expect_untouched();
    }
  }

  void expect_opening_failed(uint32_t result) {
    EXPECT_TRUE(untouched_);
    EXPECT_EQ(attr_log().back(), "createObjByPath() fail ret=" + std::to_string(result) + "!\n");
  }

  bool untouched_ = false;
};

TEST_P(AttrFrameTest, Succeeds) {
  EXPECT_EQ(run(), 0u);
  expect_done();
  if (*GetParam().url_line != '\0') {
    EXPECT_EQ(log_texts().front(), url_line(GetParam(), kUrl));
  }
}

TEST_P(AttrFrameTest, NullUrlGives10WithItsTextAlone) {
  EXPECT_EQ(run_on(nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(1, kNullText));
  EXPECT_TRUE(untouched_);
  expect_untouched();
}

TEST_P(AttrFrameTest, UrlOf256CharactersGives1WithoutTouchingAFile) {
  for (const size_t length : {256u, 257u, 1000u}) {
    const std::string url(length, 'u');
    EXPECT_EQ(run_on(url.c_str(), 0), 1u);
    EXPECT_TRUE(untouched_);
    const std::string refusal = "pObjUrl len=" + std::to_string(length) + " out of range!\n";
    EXPECT_EQ(attr_log().back(), refusal);
    if (*GetParam().url_line != '\0') {
      EXPECT_EQ(attr_log(), (std::vector<std::string>{url_line(GetParam(), url), refusal}));
    }
  }
  expect_untouched();
}

TEST_P(AttrFrameTest, UrlOf255CharactersIsServed) {
  const std::string dir = long_path(255, '/');
  const std::string bytes = property_file({"A"}, {"a"}).bytes();
  write_property(dir, bytes);
  EXPECT_EQ(run_on(long_path(255, '.').c_str(), 0), 0u);
  expect_bytes(without_slots(read_property(dir)), without_slots(after(bytes)), "long path");
}

TEST_P(AttrFrameTest, CallersUrlIsNotModified) {
  std::string url = kUrl;
  EXPECT_EQ(run_on(url.c_str(), 0), 0u);
  EXPECT_EQ(url, kUrl);
}

TEST_P(AttrFrameTest, MissingObjectGives9WithALockAnd8Without) {
  for (const char *url : {"Gateway.None.", "None.", "Gateway.Device", ""}) {
    EXPECT_EQ(run_on(url, 0), 9u) << url;
    expect_opening_failed(9);
    EXPECT_EQ(run_on(url, ZRCFG_NO_LOCK), 8u) << url;
    expect_opening_failed(8);
  }
  expect_untouched();
  EXPECT_FALSE(store_entry_exists("Gateway/None"));
}

TEST_P(AttrFrameTest, InstanceWithoutFileGives8UnderItsTemplatesLock) {
  write_property("Table/0/", property_file({"A"}, {"value"}));
  make_store_dir("Table/7/");
  for (const int timeout : {0, ZRCFG_NO_LOCK}) {
    EXPECT_EQ(run_on("Table.7.", timeout), 8u);
    expect_opening_failed(8);
  }
  EXPECT_FALSE(store_entry_exists("Table/7/property.conf"));
}

TEST_P(AttrFrameTest, FileThatCannotBeOpenedGives8WithoutALock) {
  make_unopenable(kFile);
  EXPECT_EQ(run(ZRCFG_NO_LOCK), 8u);
  expect_opening_failed(8);
}

TEST_P(AttrFrameTest, ObjectWithoutServedRecordsHasItsOwnResult) {
  for (const size_t count : {0u, 256u, 512u}) {
    store(filled_file(std::vector<std::string>(count, "A"), Fill::kZeros));
    EXPECT_EQ(run(), GetParam().without_records);
    EXPECT_EQ(untouched_, !GetParam().of_object || GetParam().writes);
    if (GetParam().writes && GetParam().of_object) {
      expect_done();
    } else {
      expect_untouched();
    }
  }
}

TEST_P(AttrFrameTest, WriterElsewhereKeepsEveryCallOut) {
  const LockHolder holder(kFile, Held::kExclusive);
  EXPECT_EQ(run(0), 9u);
  expect_opening_failed(9);
  EXPECT_EQ(run(5), 9u);
  EXPECT_EQ(run(30), 9u);
  expect_untouched();
}

TEST_P(AttrFrameTest, ReaderElsewhereKeepsThoseOutThatTakeTheExclusiveLock) {
  const LockHolder holder(kFile, Held::kShared);
  if (GetParam().lock == CallLock::kShared) {
    EXPECT_EQ(run(0), 0u);
    expect_done();
  } else {
    EXPECT_EQ(run(0), 9u);
    expect_untouched();
  }
}

TEST_P(AttrFrameTest, TemplatesLockCountsForAnInstance) {
  const std::string bytes = property_file({"A"}, {"value"}).bytes();
  write_property("Table/0/", bytes);
  write_property("Table/7/", bytes);
  {
    const LockHolder holder("Table/0/property.conf", Held::kExclusive);
    EXPECT_EQ(run_on("Table.7.", 0), 9u);
  }
  expect_bytes(read_property("Table/7/"), bytes, "7");
  const LockHolder holder("Table/7/property.conf", Held::kExclusive);
  EXPECT_EQ(run_on("Table.7.", 0), 0u);
  expect_bytes(without_slots(read_property("Table/7/")), without_slots(after(bytes)), "7");
  expect_bytes(read_property("Table/0/"), bytes, "0");
}

TEST_P(AttrFrameTest, NoLockMeansNoWaiting) {
  const LockHolder holder(kFile, Held::kExclusive);
  EXPECT_EQ(run(ZRCFG_NO_LOCK), 0u);
  EXPECT_TRUE(log_contains("no need to be locked.\n"));
  expect_done();
  EXPECT_FALSE(shared_lockable(kFile)) << "the holder was disturbed";
}

TEST_P(AttrFrameTest, TimeOutBelow10FailsOnAFreeFile) {
  EXPECT_EQ(run(9), 9u);
  expect_untouched();
  EXPECT_EQ(run(10), 0u);
  expect_done();
}

TEST_P(AttrFrameTest, TimeOutIsWaitedOut) {
  const LockHolder holder(kFile, Held::kExclusive);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(run(50), 9u);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
}

TEST_P(AttrFrameTest, WaitWithoutLimitEndsWithTheHolder) {
  LockHolder holder(kFile, Held::kExclusive);
  std::atomic<bool> released{false};
  std::thread other([&holder, &released] {
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    released = true;
    holder.release();
  });
  const uint32_t result = run(ZRCFG_WAIT_FOREVER);
  const bool waited = released;
  other.join();
  EXPECT_EQ(result, 0u);
  EXPECT_TRUE(waited);
  expect_done();
}

TEST_P(AttrFrameTest, FileThatMayOnlyBeReadIsReadAndNotWritten) {
  {
    const UserWithMode reader(kFile, 0444);
    EXPECT_EQ(run(), GetParam().writes ? 8u : 0u);
  }
  EXPECT_EQ(log_count(kUnable), GetParam().writes ? 1u : 0u);
  expect_untouched();
}

TEST_P(AttrFrameTest, LengthWordOutOfRangeGives10) {
  for (const uint32_t length : {0u, 183u, (16u << 20) + 1, 0xffffffffu}) {
    PropertyFile file = property_file({"A"}, {"value"});
    file.length_word = length;
    store(file);
    EXPECT_EQ(run(), 10u) << length;
    expect_opening_failed(10);
    expect_untouched();
  }
  for (const size_t size : {0u, 3u}) {
    write_property(kDir, std::string(size, '\0'));
    EXPECT_EQ(run(), 10u);
    EXPECT_EQ(read_property(kDir).size(), size);
  }
}

// Missing bytes read as zero; a name that is cut away is none.
TEST_P(AttrFrameTest, FileCutAnywhereInItsHeadIsNoCrash) {
  const std::string whole = property_file({"A"}, {"a"}).head_bytes();
  const bool by_name =
      !GetParam().of_object && std::string(GetParam().name).find("All") == std::string::npos;
  for (size_t size = 4; size < whole.size(); size += 3) {
    write_property(kDir, whole.substr(0, size));
    const bool known = !by_name || size > record_at(0) + 8;
    EXPECT_EQ(run(), known ? 0 : GetParam().without_records) << size;
    const std::string now = read_property(kDir);
    if (!known || !GetParam().writes) {
      expect_bytes(now, whole.substr(0, size), std::to_string(size));
      continue;
    }
    std::string expected = whole.substr(0, size);
    expected.resize(whole.size(), '\0');
    ASSERT_LE(now.size(), whole.size());
    expect_bytes(without_slots(now + std::string(whole.size() - now.size(), '\0')),
                 without_slots(after(expected)), std::to_string(size));
  }
}

TEST_P(AttrFrameTest, LengthWordBeyondTheFileIsNoCrash) {
  for (const uint32_t extra : {1u, 123u, 124u, 125u, 12400u, 124u * 300}) {
    PropertyFile file = property_file({"A"}, {"value"});
    file.length_word = 184 + 124 + extra;
    store(file);
    EXPECT_EQ(run(), 0u) << extra;
    const std::string now = read_property(kDir);
    const std::string expected = after(before_);
    ASSERT_GE(now.size(), before_.size());
    const size_t head = record_at(1) - 4;  // Without the slot of the first record.
    expect_bytes(without_slots(now.substr(0, head)), without_slots(expected.substr(0, head)),
                 std::to_string(extra));
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, AttrFrameTest, ::testing::ValuesIn(attr_calls()),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
