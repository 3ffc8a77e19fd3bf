// W9: several processes on the same instances, with a check for lost updates.
#ifndef ZRCFG_BENCH_MANY_PROCESSES_H_
#define ZRCFG_BENCH_MANY_PROCESSES_H_

#include <vector>

#include "bench/runner.h"

namespace bench {

inline constexpr unsigned kMostProcesses = 8;

// Where the processes work: the instances, and for each process a parameter of its own in each.
struct SharedPlaces {
  std::vector<std::string> urls;
  std::vector<std::string> names;
};

SharedPlaces shared_places(const Tree &tree);

// Runs `processes` for `seconds`, each 80 % reads and 20 % writes; every process at last compares
// the values that it has written. Returns microseconds for each operation of all together. Throws
// when an operation fails or an update is lost.
double run_processes(const Store &store, const SharedPlaces &places, unsigned processes,
                     double seconds);

Result run_many_processes(const std::vector<Contender> &contenders, const SharedPlaces &places,
                          unsigned processes, unsigned rounds, double seconds);

}  // namespace bench

#endif  // ZRCFG_BENCH_MANY_PROCESSES_H_
