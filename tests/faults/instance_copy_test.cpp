// The copy of files and trees when the system refuses, interrupts or moves less than asked for.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "lifecycle/dir_tree.h"
#include "tests/lifecycle/lifecycle_support.h"
#include "tests/support/libc_hooks.h"

namespace zrcfg_test {
namespace {

constexpr char kSource[] = "large";
constexpr size_t kSourceSize = 40000;  // More than three blocks of any sensible size.

class InstanceCopyTest : public LifecycleTest {
 protected:
  void SetUp() override {
    LifecycleTest::SetUp();
    bytes_.clear();
    for (size_t i = 0; i < kSourceSize; ++i) {
      bytes_ += static_cast<char>('!' + (i + i / 90) % 90);
    }
    write_store_file(kSource, bytes_);
    remember();
  }
  // Copies to a new file; `hits` tells whether the fault was met.
  int copy(const std::vector<Fault> &faults) {
    std::filesystem::remove("/var/copy");
    CallWatch watch(faults);
    const int result = fileCopy(kSource, "copy");
    watch.stop();
    hits_ = watch.faults_hit();
    calls_ = watch.describe();
    EXPECT_EQ(watch.count(Call::kOpen), watch.count(Call::kClose) + failed_opens(watch));
    EXPECT_EQ(read_store_file(kSource), bytes_);
    return result;
  }
  static unsigned failed_opens(const CallWatch &watch) {
    unsigned failed = 0;
    for (const CallRecord &record : watch.records()) {
      failed += record.call == Call::kOpen && record.result == -1 ? 1 : 0;
    }
    return failed;
  }
  void expect_whole_copy(int result) {
    EXPECT_EQ(result, 0) << calls_;
    EXPECT_EQ(read_store_file("copy"), bytes_) << calls_;
  }

  // The copy holds the first `blocks` blocks, of whatever size, and nothing else.
  void expect_blocks(unsigned blocks) {
    const std::string found = read_store_file("copy");
    EXPECT_EQ(found, bytes_.substr(0, found.size()));
    EXPECT_LT(found.size(), bytes_.size());
    EXPECT_EQ(found.empty(), blocks == 0);
    if (blocks > 0) {
      EXPECT_EQ(found.size() % blocks, 0u);
    }
  }

  std::string bytes_;
  unsigned hits_ = 0;
  std::string calls_;
};

TEST_F(InstanceCopyTest, DestinationIsCreatedAndNotTruncatedAndNothingIsInherited) {
  CallWatch watch;
  ASSERT_EQ(fileCopy(kSource, "copy"), 0);
  watch.stop();
  unsigned opens = 0;
  for (const CallRecord &record : watch.records()) {
    if (record.call != Call::kOpen) {
      continue;
    }
    ++opens;
    EXPECT_NE(record.flags & O_CLOEXEC, 0) << record.path;
    EXPECT_EQ(record.flags & (O_TRUNC | O_EXCL | O_APPEND), 0) << record.path;
  }
  EXPECT_EQ(opens, 2u);
  EXPECT_EQ(watch.count(Call::kFopen) + watch.count(Call::kTruncate), 0u);
}

TEST_F(InstanceCopyTest, ShortReadsAndWritesAreContinued) {
  for (const Call call : {Call::kRead, Call::kWrite}) {
    for (const size_t limit : {size_t{1}, size_t{7}, size_t{1000}, size_t{1023}}) {
      for (const unsigned times : {1u, 2u, kForEver}) {
        for (const unsigned nth : {1u, 2u, 3u}) {
          expect_whole_copy(copy({cut_short(call, nth, times, limit)}));
          EXPECT_GT(hits_, 0u);
        }
      }
    }
  }
}

TEST_F(InstanceCopyTest, InterruptedReadsAndWritesBeginAgain) {
  for (const Call call : {Call::kRead, Call::kWrite}) {
    for (const unsigned times : {1u, 5u}) {
      for (const unsigned nth : {1u, 2u, 3u}) {
        expect_whole_copy(copy({fail_times(call, nth, times, EINTR)}));
        EXPECT_EQ(hits_, times);
      }
    }
  }
}

TEST_F(InstanceCopyTest, FailedWritesAreNoFailureAndLeaveWhatWasWritten) {
  for (const int error : {ENOSPC, EIO, EDQUOT, EFBIG}) {
    for (const unsigned nth : {1u, 2u, 3u}) {
      EXPECT_EQ(copy({fail_for_ever(Call::kWrite, nth, error)}), 0) << calls_;
      EXPECT_GT(hits_, 0u);
      expect_blocks(nth - 1);
    }
  }
}

// A write in the middle fails once: what follows still goes to its own place.
TEST_F(InstanceCopyTest, OneFailedWriteShiftsNothing) {
  for (const unsigned nth : {1u, 2u, 3u}) {
    EXPECT_EQ(copy({fail_once(Call::kWrite, nth, ENOSPC)}), 0);
    const std::string found = read_store_file("copy");
    ASSERT_LE(found.size(), bytes_.size());
    const size_t lost = found.find('\0');
    ASSERT_NE(lost, std::string::npos) << "the block that was not written is a gap";
    EXPECT_EQ(found.substr(0, lost), bytes_.substr(0, lost));
    const size_t again = found.find_first_not_of('\0', lost);
    ASSERT_NE(again, std::string::npos);
    EXPECT_EQ(found.substr(again), bytes_.substr(again));
    EXPECT_EQ(lost, (nth - 1) * (again - lost)) << "exactly one block is lost";
  }
}

TEST_F(InstanceCopyTest, WriteThatMovesNothingEnds) {
  EXPECT_EQ(copy({cut_short(Call::kWrite, 1, kForEver, 0)}), 0);
  EXPECT_EQ(read_store_file("copy"), "");
}

TEST_F(InstanceCopyTest, FailedReadGivesMinusOneAndLeavesTheBlocksBefore) {
  for (const int error : {EIO, EISDIR}) {
    for (const unsigned nth : {1u, 2u, 3u}) {
      EXPECT_EQ(copy({fail_for_ever(Call::kRead, nth, error)}), -1);
      expect_blocks(nth - 1);
    }
  }
}

TEST_F(InstanceCopyTest, FailedOpeningGivesMinusOne) {
  for (const int error : {EACCES, EMFILE, ENFILE, ENOSPC, EROFS}) {
    EXPECT_EQ(copy({fail_once(Call::kOpen, 1, error)}), -1);
    EXPECT_FALSE(store_entry_exists("copy"));
    EXPECT_EQ(copy({fail_once(Call::kOpen, 2, error)}), -1);
    EXPECT_FALSE(store_entry_exists("copy"));
  }
}

TEST_F(InstanceCopyTest, FailedSeeksAndClosesDoNotMatter) {
  for (const unsigned nth : {1u, 2u}) {
    expect_whole_copy(copy({fail_for_ever(Call::kSeek, nth, EIO)}));
    expect_whole_copy(copy({fail_for_ever(Call::kClose, nth, EIO)}));
  }
}

// Every directory in turn cannot be opened: it is passed over, and the rest is copied.
TEST_F(InstanceCopyTest, UnopenedDirectoryIsSkippedWhereverItIs) {
  const Tree whole = with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2");
  for (unsigned nth = 1; nth < 60; ++nth) {
    SetUp();
    CallWatch watch({fail_once(Call::kOpen, nth, EMFILE)});
    EXPECT_EQ(dirCopy("Gateway/Table/0", "Gateway/Table/2"), 0);
    watch.stop();
    const Tree found = store_tree();
    EXPECT_EQ(without(found, "Gateway/Table/2"), tree_);
    for (const auto &[path, entry] : subtree(found, "Gateway/Table/2")) {
      ASSERT_EQ(whole.count(path), 1u) << path;
      EXPECT_EQ(entry, whole.at(path)) << path;
    }
    if (watch.faults_hit() == 0) {
      EXPECT_EQ(found, whole);
      EXPECT_GT(nth, 4u) << "four directories were to be opened";
      return;
    }
    EXPECT_TRUE(nth == 1 || found.count("Gateway/Table/2/property.conf") == 1);
  }
}

TEST_F(InstanceCopyTest, UnremovedEntriesDoNotStopARemoval) {
  for (unsigned nth = 1; nth < 30; ++nth) {
    SetUp();
    CallWatch watch({fail_once(Call::kOther, nth, EBUSY)});
    EXPECT_EQ(dirDel("Gateway/Table/0"), 0);
    watch.stop();
    const Tree left = subtree(store_tree(), "Gateway/Table/0");
    EXPECT_EQ(without(store_tree(), "Gateway/Table/0"), without(tree_, "Gateway/Table/0"));
    if (watch.faults_hit() == 0) {
      EXPECT_EQ(left, Tree());
      EXPECT_GT(nth, 8u);
      return;
    }
    // One entry stays, and with it the directories above it.
    size_t deepest = 0;
    for (const auto &[path, entry] : left) {
      deepest = std::max(deepest, static_cast<size_t>(std::count(path.begin(), path.end(), '/')));
    }
    EXPECT_EQ(left.size(), deepest - 1) << ::testing::PrintToString(left);
  }
}

// A tree deeper than its paths can be: no entry is looked at again under a name that was cut.
TEST_F(InstanceCopyTest, DeepTreesAreWalkedOnce) {
  std::string dir = "s/";
  for (int level = 0; level < 170; ++level) {
    dir += "d/";
  }
  make_store_dir(dir);
  {
    CallWatch watch;
    EXPECT_EQ(dirCopy("s", "t"), 0);
    EXPECT_LE(watch.count(Call::kOpen), 171u);
  }
  CallWatch watch;
  EXPECT_EQ(dirDel("s"), 0);
  EXPECT_LE(watch.count(Call::kOpen), 171u);
}

// The place of the call that fails is looked for; what the call gives there is fixed.
class InstanceFailureTest : public LifecycleTest {
 protected:
  // Lets the first, second, … opening fail, beside other faults, until `call` gives `wanted`; false
  // when it never does. The store is fresh for every call.
  bool reach(const std::vector<Fault> &others, uint32_t wanted,
             const std::function<uint32_t()> &call) {
    for (unsigned nth = 1; nth < 20; ++nth) {
      LifecycleTest::SetUp();
      uint32_t result = 0;
      output_ = printed([&] {
        std::vector<Fault> faults = others;
        faults.push_back(fail_once(Call::kOpen, nth, EIO));
        CallWatch watch(faults);
        result = call();
      });
      if (result == wanted) {
        return true;
      }
    }
    return false;
  }
  std::string output_;
};

TEST_F(InstanceFailureTest, TemplateThatCannotBeExaminedGives17AndCreatesNothing) {
  uint8_t flag = 0x5a;
  const std::function<uint32_t()> calls[] = {
      [] { return zrcfg_addobject_with_index("Gateway.Table.", 2, 0); },
      [] { return zrcfg_addobject_static("Gateway.Fixed.", 2, 1, 0); },
      [&flag] {
        flag = 0x5a;  // Earlier tries may have succeeded.
        return zrcfg_exportaddobject("Gateway.Table.2.", 0, 0, &flag);
      },
  };
  for (const auto &call : calls) {
    ASSERT_TRUE(reach({fail_for_ever(Call::kStat, 1, EIO)}, 17, call));
    EXPECT_EQ(output_, "isDir:95 call stat failed!");
    EXPECT_EQ(lifecycle_log().back(), "dirCopy() fail!\n");
    expect_unchanged();
  }
  EXPECT_EQ(flag, 0x5a);
}

TEST_F(InstanceFailureTest, InstanceThatCannotBeOpenedAnyMoreGives18UnderItsText) {
  uint8_t flag = 0x5a;
  const std::pair<const char *, std::function<uint32_t()>> calls[] = {
      {"dirDel() fail!\n", [] { return zrcfg_delobject("Gateway.Table.", 1, 0); }},
      {"dirDel() fail!\n", [] { return zrcfg_delobject_static("Gateway.Fixed.", 1, 0); }},
      {"dirCopy() fail!\n",
       [&flag] {
         flag = 0x5a;
         return zrcfg_exportdelobject("Gateway.Table.1.", 0, 0, &flag);
       }},
  };
  for (const auto &[text, call] : calls) {
    ASSERT_TRUE(reach({}, 18, call));
    EXPECT_EQ(output_, "dirDel:273 open failed.\n");
    EXPECT_EQ(lifecycle_log().back(), text);
    expect_unchanged();
  }
  EXPECT_EQ(flag, 0x5a);
}

TEST_F(InstanceCopyTest, NestedReplacementMakes300TriesTenMillisecondsApart) {
  uint8_t flag = 0x5a;
  CallWatch watch({}, true);
  EXPECT_EQ(zrcfg_exportaddobject("Gateway.Table.1.", 0, 0, &flag), 9u);
  watch.stop();
  unsigned sleeps = 0;
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kSleep) {
      EXPECT_EQ(record.amount, 10000);
      ++sleeps;
    }
  }
  EXPECT_EQ(sleeps, 300u);
  EXPECT_EQ(flag, 0x5a);
  expect_unchanged();
}

}  // namespace
}  // namespace zrcfg_test
