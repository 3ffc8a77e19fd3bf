// The operations that have budgets, on a store of a given size.
#ifndef ZRCFG_TESTS_BUDGET_OPERATIONS_H_
#define ZRCFG_TESTS_BUDGET_OPERATIONS_H_

#include <string>
#include <vector>

#include "zrcfg.h"

namespace zrcfg_test {

// What the store holds: "Gate.Port." is a table, each instance of it has `records` parameters and
// four objects below it.
struct StoreSize {
  int instances = 4;
  int records = 40;
  int requests = 40;  // Nodes of the list that is read.
};

void make_budget_store(const StoreSize &size);

// A caller's request list over the first parameters of an object.
class BudgetList {
 public:
  BudgetList(int count, int records, const std::string &value);
  ParamValueEntry *head() { return nodes_.data(); }

 private:
  std::vector<ParamValueEntry> nodes_;
  std::vector<std::string> values_;
};

struct BudgetOperation {
  const char *name;
  bool (*run)(const StoreSize &size, unsigned turn);  // Whether the call did what it should.
};

extern const std::vector<BudgetOperation> kBudgetOperations;

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_BUDGET_OPERATIONS_H_
