// One worker: a random mixture of calls, each of which checks what it sees.
#ifndef ZRCFG_TESTS_CONTENTION_WORKER_H_
#define ZRCFG_TESTS_CONTENTION_WORKER_H_

#include "tests/contention/board.h"

namespace contention {

// What a worker does. A victim is killed at some moment, so it makes no instances: one that is
// being made then belongs to nobody.
enum class Role { kReader, kWriter, kVictim };

// Works until the board says stop.
void run_worker(Board &board, unsigned worker, Role role, unsigned seed);

// Afterwards, when nobody works any more: every worker's last value is there, and the instances are
// those that the workers have, each of its owner, and as many as the counter says.
void verify(Board &board);

}  // namespace contention

#endif  // ZRCFG_TESTS_CONTENTION_WORKER_H_
