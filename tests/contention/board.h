// What the workers share: when to stop, what they have done, and what went wrong.
#ifndef ZRCFG_TESTS_CONTENTION_BOARD_H_
#define ZRCFG_TESTS_CONTENTION_BOARD_H_

#include <stddef.h>
#include <stdint.h>

#include <atomic>

namespace contention {

inline constexpr unsigned kMostWorkers = 16;
// A word of the target, since processes share it: larger atomics take locks of one process there.
using Count = uintptr_t;

inline constexpr unsigned kInstances = 4;  // Of the table whose values are written.
inline constexpr unsigned kMostOwned = 6;  // Instances that one worker has at a time.

// Kinds of calls, for the report.
enum Kind { kRead, kBulkRead, kList, kWrite, kBulkWrite, kAttribute, kAdd, kDelete, kTree, kKinds };
const char *kind_name(unsigned kind);

// The state of one worker; it outlives a worker that is killed.
struct WorkerState {
  std::atomic<Count> calls[kKinds];
  std::atomic<Count> longest[kKinds];  // Microseconds of one call, its wait for the lock in it.
  std::atomic<Count> busy;             // Calls that gave up within their time-out, as asked.
  std::atomic<Count> partial;          // Listings of the tree without a table that was locked.
  // Sequence numbers of the values of this worker, before and after each write.
  std::atomic<Count> intended[kInstances];
  std::atomic<Count> written[kInstances];
  std::atomic<uint32_t> owned[kMostOwned];  // Instance numbers, 0 for none.
};

struct Board {
  std::atomic<bool> go;
  std::atomic<bool> stop;
  std::atomic<unsigned> faults;
  std::atomic<unsigned> killed;
  unsigned workers;
  WorkerState states[kMostWorkers];
};

// In memory that child processes share.
Board &make_board(unsigned workers);

uint64_t total_calls(const Board &board);

// Prints what is wrong, for the first few, and counts it.
void fault(Board &board, const char *format, ...) __attribute__((format(printf, 2, 3)));

// Measures one call of a worker.
class Timed {
 public:
  Timed(WorkerState &state, Kind kind);
  ~Timed();
  Timed(const Timed &) = delete;
  Timed &operator=(const Timed &) = delete;

 private:
  WorkerState &state_;
  Kind kind_;
  uint64_t start_;
};

uint64_t now_microseconds();

}  // namespace contention

#endif  // ZRCFG_TESTS_CONTENTION_BOARD_H_
