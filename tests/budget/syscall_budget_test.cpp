// The system calls of each operation: no more than today.
#include <gtest/gtest.h>

#include "tests/budget/operations.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

// Calls of libc functions that ask the system, as tests/support/libc_hooks.h counts them; reading
// and closing a directory stream is not among what is counted there, its opening is.
struct SyscallBudget {
  const char *operation;
  unsigned most;
};

// For the default size: four instances with four objects each below them.
constexpr SyscallBudget kBudgets[] = {
    {"W1", 7}, {"W2", 9}, {"W3", 7}, {"W4", 7}, {"W4l", 7}, {"W5", 9}, {"W6", 194}, {"W7", 117},
};

unsigned calls_of(const BudgetOperation &operation, const StoreSize &size, std::string &described) {
  unsigned most = 0;
  for (unsigned turn = 0; turn < 4; ++turn) {
    CallWatch watch;
    EXPECT_TRUE(operation.run(size, turn)) << operation.name;
    watch.stop();
    if (watch.system_calls() > most) {
      most = watch.system_calls();
      described = watch.describe();
    }
  }
  return most;
}

class SyscallBudgetTest : public StoreTest {};

TEST_F(SyscallBudgetTest, EveryOperationStaysInItsBudget) {
  const StoreSize size;
  make_budget_store(size);
  ASSERT_EQ(std::size(kBudgets), kBudgetOperations.size());
  for (size_t i = 0; i < kBudgetOperations.size(); ++i) {
    ASSERT_STREQ(kBudgets[i].operation, kBudgetOperations[i].name);
    std::string described;
    const unsigned calls = calls_of(kBudgetOperations[i], size, described);
    EXPECT_LE(calls, kBudgets[i].most) << kBudgets[i].operation << "\n" << described;
    RecordProperty(kBudgets[i].operation, std::to_string(calls));
  }
}

}  // namespace
}  // namespace zrcfg_test
