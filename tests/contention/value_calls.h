// The workers' calls on values and attributes.
#ifndef ZRCFG_TESTS_CONTENTION_VALUE_CALLS_H_
#define ZRCFG_TESTS_CONTENTION_VALUE_CALLS_H_

#include <random>

#include "tests/contention/board.h"

namespace contention {

// Who calls, and what it has seen.
struct Worker {
  Board &board;
  WorkerState &state;
  unsigned number;
  std::mt19937 random;
  // The highest sequence number seen of each worker's value in each instance.
  int64_t seen[kMostWorkers][kInstances] = {};
  uint64_t attribute_rounds = 0;

  unsigned pick(unsigned bound) { return static_cast<unsigned>(random() % bound); }
  // Mostly without limit; now and then within a time that may be too short.
  int pick_timeout();
};

void read_one(Worker &worker);
void read_several(Worker &worker);
void list_values(Worker &worker);
void write_one(Worker &worker);
void write_several(Worker &worker);
void change_attribute(Worker &worker);

// Takes the lock of an instance for several calls, then lets go.
void write_under_own_lock(Worker &worker);

}  // namespace contention

#endif  // ZRCFG_TESTS_CONTENTION_VALUE_CALLS_H_
