// The texts and codes of bulk calls on the day that memory or the pattern file fails.
#include <errno.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include "tests/faults/fault_operations.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "values/value_list.h"
#include "values/value_table.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr char kUrl[] = "A.B.3.";
constexpr unsigned kMostPlaces = 400;

class Image {
 public:
  Image() { EXPECT_EQ(createObjByPath(&image_, kObjectDir, &fd_, 0, -2), 0u); }
  ~Image() { destroyObj(image_, fd_); }
  Image(const Image &) = delete;
  Image &operator=(const Image &) = delete;
  ZrcfgObject *get() const { return image_; }

 private:
  ZrcfgObject *image_ = nullptr;
  int fd_ = -1;
};

class BulkFaultTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_fault_store();
  }

  static bool logged_one_of(const std::vector<std::string> &texts) {
    for (const std::string &text : texts) {
      if (log_contains(text)) {
        return true;
      }
    }
    return false;
  }
};

TEST_F(BulkFaultTest, TableThatCannotBeBuiltGives15WithItsText) {
  const Image image;
  for (unsigned nth = 1; nth < 10; ++nth) {
    clear_log();
    char *table = nullptr;
    CallWatch watch({fail_once(Call::kAllocate, nth, ENOMEM)});
    const int result = constructParamValues(image.get(), &table);
    watch.stop();
    if (watch.faults_hit() == 0) {
      EXPECT_EQ(result, 0);
      EXPECT_EQ(nth, 3u) << "text and table are two blocks";
      free(table);
      return;
    }
    EXPECT_EQ(result, 15);
    EXPECT_EQ(table, nullptr);
    EXPECT_TRUE(log_contains(nth == 1 ? "pBuf is NULL\n" : "pValue is NULL\n")) << nth;
  }
}

TEST_F(BulkFaultTest, SectionThatCannotBeBuiltGives15WithItsText) {
  const Image image;
  char table[3 * 256] = "new";
  unsigned nth = 1;
  bool told = false;
  for (; nth < 10; ++nth) {
    clear_log();
    CallWatch watch({fail_once(Call::kAllocate, nth, ENOMEM)});
    const int result = setParamValuesToMem(image.get(), table);
    watch.stop();
    if (watch.faults_hit() == 0) {
      EXPECT_EQ(result, 0);
      break;
    }
    EXPECT_EQ(result, 15);
    EXPECT_EQ(read_property(kObjectDir), old_file_bytes());
    told = told || log_contains("pWriteBuf malloc failed\n");
  }
  EXPECT_GT(nth, 1u);
  EXPECT_TRUE(told);
}

TEST_F(BulkFaultTest, ListThatCannotBeBuiltGives15AndKeepsNoNode) {
  const Image image;
  unsigned nth = 1;
  bool told_node = false;
  for (; nth < 20; ++nth) {
    clear_log();
    ParamValueListNode *head = nullptr;
    ParamValueListNode *tail = nullptr;
    CallWatch watch({fail_once(Call::kAllocate, nth, ENOMEM)});
    const int result = constructParamValueList(kUrl, image.get(), &head, &tail);
    watch.stop();
    if (watch.faults_hit() == 0) {
      EXPECT_EQ(result, 0);
      while (head != nullptr) {
        ParamValueListNode *const next = head->next;
        free(head);
        head = next;
      }
      break;
    }
    EXPECT_EQ(result, 15);
    EXPECT_EQ(head, nullptr);
    EXPECT_EQ(tail, nullptr);
    EXPECT_TRUE(logged_one_of({"pValue is NULL\n", "pBuf is NULL\n", "ptr is NULL\n"})) << nth;
    told_node = told_node || log_contains("ptr is NULL\n");
  }
  EXPECT_GE(nth, 5u) << "a block for the text and one for each node";
  EXPECT_TRUE(told_node);
}

TEST_F(BulkFaultTest, CallsLogTheStepThatFailed) {
  ParamValueEntry node = {};
  strcpy(node.name, "First");
  char value[256] = "new";
  node.value = value;
  {
    CallWatch watch({fail_once(Call::kWrite, 1, ENOSPC)});
    EXPECT_EQ(zrcfg_setmultiparamval(kUrl, &node, 0), 7);
  }
  EXPECT_TRUE(log_contains("setParamValuesToMem() fail ret=7!\n"));
  EXPECT_EQ(read_property(kObjectDir), old_file_bytes());
  clear_log();
  CallWatch watch({fail_writable_opens(EROFS)});
  EXPECT_EQ(zrcfg_setmultiparamval_check(kUrl, &node, 0), 7);
  watch.stop();
  EXPECT_TRUE(log_has_in_order(
      {"unable to open A/B/3/property.conf file\n", "setParamValuesToMem() fail ret=7!\n"}));
  EXPECT_EQ(read_property(kObjectDir), old_file_bytes());
}

TEST_F(BulkFaultTest, ReadsAndIdleRollBacksServeAFileThatMayOnlyBeRead) {
  ParamValueEntry node = {};
  strcpy(node.name, "First");
  char value[256] = "new";
  node.value = value;
  CallWatch watch({fail_writable_opens(EROFS)});
  EXPECT_EQ(zrcfg_setmultiparamval_ext(kUrl, &node, 0), 0);
  watch.stop();
  CallWatch reading({fail_writable_opens(EROFS)});
  EXPECT_EQ(zrcfg_getmultiparamval(kUrl, &node, 0), 0);
  reading.stop();
  EXPECT_EQ(reading.faults_hit(), 0u) << "a read does not ask for write access";
  EXPECT_STREQ(value, "the first value");
}

// Under a fault a value that the filter takes may be refused, and one that it does not take may
// only pass when the pattern file seems not to be there.
class PatternFaultTest : public StoreTest, public ::testing::WithParamInterface<Call> {};

TEST_P(PatternFaultTest, FailureRefusesTheValueAndLeavesNothingBehind) {
  write_store_file("regex_file", "config f 'filter1'\n\toption value '^good$'\n");
  const std::map<int, std::string> before = open_descriptors();
  bool hit = true;
  for (unsigned nth = 1; hit; ++nth) {
    ASSERT_LT(nth, kMostPlaces) << "never ends";
    for (const char *value : {"good", "bad"}) {
      clear_log();
      CallWatch watch({fail_once(GetParam(), nth, GetParam() == Call::kAllocate ? ENOMEM : EIO)});
      const int result = check_param_value_valid_regex(1, value);
      watch.stop();
      hit = watch.faults_hit() > 0;
      const bool good = strcmp(value, "good") == 0;
      if (log_contains("no need check param value,\n")) {
        EXPECT_EQ(GetParam(), Call::kAccess);
        EXPECT_EQ(result, 0);
      } else if (!hit) {
        EXPECT_EQ(result, good ? 0 : -1);
      } else {
        EXPECT_TRUE(result == -1 || (good && result == 0)) << result;
      }
      EXPECT_EQ(open_descriptors(), before);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, PatternFaultTest,
                         ::testing::Values(Call::kAccess, Call::kOpen, Call::kFopen, Call::kRead,
                                           Call::kSeek, Call::kStat, Call::kClose, Call::kAllocate,
                                           Call::kRegcomp),
                         [](const auto &row) { return std::string(call_name(row.param)); });

TEST_F(BulkFaultTest, PatternBufferThatCannotBeHadRefusesTheValueWithItsText) {
  write_store_file("regex_file", "config f 'filter1'\n\toption value '^good$'\n");
  CallWatch watch({fail_once(Call::kAllocate, 1, ENOMEM)});
  EXPECT_EQ(check_param_value_valid_regex(1, "good"), -1);
  watch.stop();
  EXPECT_TRUE(log_contains("malloc pattern failed.\n"));
}

}  // namespace
}  // namespace zrcfg_test
