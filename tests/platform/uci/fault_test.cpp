// Tests of the reader on the day that memory or the file fails.
#include <unistd.h>

#include <cerrno>
#include <string>

#include "tests/platform/uci/failing_calls.h"
#include "tests/platform/uci/uci_support.h"

namespace zrcfg_test {
namespace {

class UciFaultTest : public StoreTest {
 protected:
  void TearDown() override {
    clear_call_faults();
    StoreTest::TearDown();
  }

  // Loads with the faults in force; the context is made before.
  static int load_with(const CallFaults &faults, std::string *described = nullptr) {
    UciContext context;
    uci_package *package = nullptr;
    set_call_faults(faults);
    const int result = context.load(store_path("p"), &package);
    clear_call_faults();
    EXPECT_EQ(result == UCI_OK, package != nullptr);
    if (described != nullptr && package != nullptr) {
      *described = describe(package);
    }
    return result;
  }
};

// More than fits the first block of elements and the first table of options.
std::string large_text() {
  std::string text = "package p\nconfig t s\n";
  for (int i = 0; i < 150; ++i) {
    text += "option n" + std::to_string(i) + " 1\nlist l" + std::to_string(i % 3) + " 2\n";
  }
  return text + "config t\n";
}

TEST_F(UciFaultTest, EveryFailingAllocationOfALoadIsOutOfMemory) {
  write_store_file("p", large_text());
  CallFaults faults;
  int refused = 0;
  for (;;) {
    ++faults.failing_allocation;
    const int result = load_with(faults);
    if (allocations_made() < faults.failing_allocation) {
      EXPECT_EQ(result, UCI_OK);
      break;
    }
    EXPECT_EQ(result, UCI_ERR_MEM) << "allocation " << faults.failing_allocation;
    ++refused;
  }
  EXPECT_GE(refused, 6) << "package, text, two blocks, two tables at least";
}

TEST_F(UciFaultTest, ContextUsableAfterAFailedLoad) {
  write_store_file("p", "config t s\n");
  UciContext context;
  CallFaults faults;
  faults.failing_allocation = 2;
  set_call_faults(faults);
  EXPECT_EQ(context.load(store_path("p"), nullptr), UCI_ERR_MEM);
  clear_call_faults();
  EXPECT_EQ(context.error_text(), "Out of memory");
  EXPECT_EQ(context.load(store_path("p"), nullptr), UCI_OK);
}

TEST_F(UciFaultTest, NoMemoryForAContextGivesNone) {
  CallFaults faults;
  for (faults.failing_allocation = 1; faults.failing_allocation <= 2; ++faults.failing_allocation) {
    set_call_faults(faults);
    EXPECT_EQ(uci_alloc_context(), nullptr);
    clear_call_faults();
    EXPECT_EQ(allocations_made(), faults.failing_allocation);
  }
}

TEST_F(UciFaultTest, NoMemoryForThePathOfABareName) {
  UciContext context;
  CallFaults faults;
  faults.failing_allocation = 1;
  set_call_faults(faults);
  EXPECT_EQ(context.load("name", nullptr), UCI_ERR_MEM);
}

TEST_F(UciFaultTest, NoMemoryForANewDirectoryKeepsTheOld) {
  UciContext context;
  ASSERT_EQ(uci_set_confdir(context.get(), "/var"), UCI_OK);
  CallFaults faults;
  faults.failing_allocation = 1;
  set_call_faults(faults);
  EXPECT_EQ(uci_set_confdir(context.get(), "/tmp"), UCI_ERR_MEM);
  clear_call_faults();
  EXPECT_STREQ(context.get()->confdir, "/var");
}

TEST_F(UciFaultTest, NoMemoryForTheErrorTextGivesNull) {
  UciContext context;
  char *text = const_cast<char *>("untouched");
  CallFaults faults;
  faults.failing_allocation = 1;
  set_call_faults(faults);
  uci_get_errorstr(context.get(), &text, nullptr);
  EXPECT_EQ(text, nullptr);
}

TEST_F(UciFaultTest, FailingOpenIsTold) {
  write_store_file("p", "config t s\n");
  struct {
    int error;
    int result;
  } const rows[] = {{EACCES, UCI_ERR_IO},       {EPERM, UCI_ERR_IO},        {EIO, UCI_ERR_IO},
                    {EMFILE, UCI_ERR_IO},       {ENFILE, UCI_ERR_IO},       {ENOMEM, UCI_ERR_MEM},
                    {ENOENT, UCI_ERR_NOTFOUND}, {ENOTDIR, UCI_ERR_NOTFOUND}};
  for (const auto &row : rows) {
    CallFaults faults;
    faults.open_errno = row.error;
    faults.opens = 1;
    EXPECT_EQ(load_with(faults), row.result) << row.error;
  }
}

TEST_F(UciFaultTest, FailingReadIsAnIoError) {
  write_store_file("p", "config t s\n");
  CallFaults faults;
  faults.read_errno = EIO;
  faults.reads = 1;
  EXPECT_EQ(load_with(faults), UCI_ERR_IO);
  faults = {};
  faults.fstat_fails = true;
  EXPECT_EQ(load_with(faults), UCI_ERR_IO);
}

TEST_F(UciFaultTest, InterruptedCallsAreMadeAgain) {
  write_store_file("p", "config t s\n");
  CallFaults faults;
  faults.open_errno = EINTR;
  faults.opens = 3;
  faults.read_errno = EINTR;
  faults.reads = 3;
  EXPECT_EQ(load_with(faults), UCI_OK);
}

TEST_F(UciFaultTest, ShortReadsAddUp) {
  write_store_file("p", "config t s\noption a 1\n");
  for (const size_t limit : {1, 2, 7}) {
    CallFaults faults;
    faults.read_limit = limit;
    std::string described;
    EXPECT_EQ(load_with(faults, &described), UCI_OK);
    EXPECT_EQ(described, "t s{a=1}");
  }
}

TEST_F(UciFaultTest, FileThatGrowsOrShrinksIsReadAsItIs) {
  const std::string value(5000, 'x');
  write_store_file("p", "config t s\noption a " + value + "\n");
  for (const long told : {0L, 1L, 100L, 4000L, 6000L, 100000L}) {
    CallFaults faults;
    faults.told_size = told;
    std::string described;
    EXPECT_EQ(load_with(faults, &described), UCI_OK) << told;
    EXPECT_EQ(described, "t s{a=" + value + "}") << told;
  }
}

TEST_F(UciFaultTest, FileThatGrowsBeyondTheLimitIsRefused) {
  write_store_file("p", "");
  ASSERT_EQ(truncate("/var/p", (16 << 20) + 2), 0);
  CallFaults faults;
  faults.told_size = 10;
  EXPECT_EQ(load_with(faults), UCI_ERR_MEM);
}

}  // namespace
}  // namespace zrcfg_test
