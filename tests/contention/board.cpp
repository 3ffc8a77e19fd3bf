// What the workers share: when to stop, what they have done, and what went wrong.
#include "tests/contention/board.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <time.h>

#include <new>

namespace contention {
namespace {

constexpr unsigned kPrintedFaults = 10;

}  // namespace

const char *kind_name(unsigned kind) {
  static const char *const names[kKinds] = {"read one",     "read several",    "list values",
                                            "write one",    "write several",   "attribute",
                                            "add instance", "delete instance", "list tree"};
  return names[kind];
}

Board &make_board(unsigned workers) {
  void *const memory =
      mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    perror("shared memory");
    exit(2);
  }
  Board *const board = new (memory) Board();
  board->workers = workers;
  return *board;
}

uint64_t total_calls(const Board &board) {
  uint64_t total = 0;
  for (unsigned worker = 0; worker < board.workers; ++worker) {
    for (const std::atomic<Count> &calls : board.states[worker].calls) {
      total += calls;
    }
  }
  return total;
}

void fault(Board &board, const char *format, ...) {
  if (board.faults++ >= kPrintedFaults) {
    return;
  }
  char text[512];
  va_list arguments;
  va_start(arguments, format);
  (void)vsnprintf(text, sizeof text, format, arguments);  // A cut text will do.
  va_end(arguments);
  fprintf(stderr, "FAULT: %s\n", text);
}

Timed::Timed(WorkerState &state, Kind kind)
    : state_(state), kind_(kind), start_(now_microseconds()) {}

Timed::~Timed() {
  const uint64_t taken = now_microseconds() - start_;
  ++state_.calls[kind_];
  if (taken > state_.longest[kind_]) {
    state_.longest[kind_] = static_cast<Count>(taken);
  }
}

uint64_t now_microseconds() {
  timespec now = {};
  (void)clock_gettime(CLOCK_MONOTONIC, &now);  // Cannot fail for this clock.
  return static_cast<uint64_t>(now.tv_sec) * 1000000u + static_cast<uint64_t>(now.tv_nsec) / 1000u;
}

}  // namespace contention
