// Runs every operation under callgrind, which dumps the instructions of each: COUNT times, after
// two that are not counted. usage: count_instructions COUNT [INSTANCES RECORDS REQUESTS]
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

#include "tests/budget/operations.h"
#include "tests/support/property_builder.h"

int main(int argc, char **argv) {
  using namespace zrcfg_test;
  StoreSize size;
  if (argc == 5) {
    size = {atoi(argv[2]), atoi(argv[3]), atoi(argv[4])};
  } else if (argc != 2) {
    return 2;
  }
  if (store_entry_exists("Gate/")) {
    fputs("the store is not empty\n", stderr);
    return 2;
  }
  make_budget_store(size);
  const unsigned count = static_cast<unsigned>(atoi(argv[1]));
  for (const BudgetOperation &operation : kBudgetOperations) {
    for (unsigned turn = 0; turn < count + 2; ++turn) {
      if (turn == 2) {
        CALLGRIND_ZERO_STATS;
        CALLGRIND_TOGGLE_COLLECT;
      }
      if (!operation.run(size, turn)) {
        fprintf(stderr, "%s fails\n", operation.name);
        return 1;
      }
    }
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(operation.name);
  }
  return 0;
}
