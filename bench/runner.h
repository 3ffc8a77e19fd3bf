// Interleaved measuring: rounds in which every store has its turn, medians with spread.
#ifndef ZRCFG_BENCH_RUNNER_H_
#define ZRCFG_BENCH_RUNNER_H_

#include <string>
#include <vector>

#include "bench/workload.h"

namespace bench {

// The middle of a sample, and the borders of its middle half.
struct Spread {
  double median = 0;
  double low = 0;
  double high = 0;
};

Spread spread_of(std::vector<double> sample);

// What was measured of one store in one workload.
struct Figure {
  const char *store;
  Spread microseconds;  // An operation; for W9 the reciprocal of the throughput.
  Spread ratio;         // To the reference, round by round.
};

struct Result {
  const char *id;
  const char *title;
  std::vector<Figure> figures;
};

struct Contender {
  const Store *store;
  unsigned medium;
};

struct Plan {
  unsigned rounds;
  double batch_seconds;  // About how long one store's turn takes.
};

// Microseconds for each round (first index) and contender. The reference is the contender whose
// store is floor-merged.
Result summarise(const char *id, const char *title, const std::vector<Contender> &contenders,
                 const std::vector<std::vector<double>> &rounds);

// Runs a workload. Throws when an operation fails.
Result run_workload(const Workload &workload, const std::vector<Contender> &contenders,
                    const Plan &plan);

double now_seconds();

}  // namespace bench

#endif  // ZRCFG_BENCH_RUNNER_H_
