// Interleaved measuring: rounds in which every store has its turn, medians with spread.
#include "bench/runner.h"

#include <math.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <stdexcept>

namespace bench {
namespace {

constexpr double kMicro = 1e6;
constexpr unsigned kMostOperations = 2000;

constexpr unsigned kMostTries = 5;

// Operations before each turn that are not timed, so that the neighbour's traces in the caches do
// not count; as a part of the turn.
constexpr unsigned kWarmUpPart = 8;

// The operations that a store has made in a workload so far, and how many a turn holds.
struct Turn {
  unsigned next = 0;
  unsigned batch = 1;
};

void run_operations(const Workload &workload, const Contender &contender, Turn &turn,
                    unsigned count) {
  for (unsigned i = 0; i < count; ++i) {
    if (!workload.run(*contender.store, contender.medium, turn.next++)) {
      throw std::runtime_error(std::string(workload.id) + " fails on " + contender.store->name);
    }
  }
}

// How often this process had to give its processor away to another one.
long preemptions() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_nivcsw;
}

// A turn in which another process got the processor says little and is repeated; when there is no
// other kind, the shortest one counts.
double run_batch(const Workload &workload, const Contender &contender, Turn &turn) {
  double shortest = HUGE_VAL;
  for (unsigned tries = 0; tries < kMostTries; ++tries) {
    run_operations(workload, contender, turn, turn.batch / kWarmUpPart);
    const long before = preemptions();
    const double start = now_seconds();
    run_operations(workload, contender, turn, turn.batch);
    const double seconds = (now_seconds() - start) / turn.batch;
    if (preemptions() == before) {
      return seconds;
    }
    shortest = std::min(shortest, seconds);
  }
  return shortest;
}

// Finds the batch that fills a turn; also warms caches up.
void calibrate(const Workload &workload, const Contender &contender, Turn &turn, double seconds) {
  for (;;) {
    const double each = run_batch(workload, contender, turn);
    const double wanted = std::clamp(seconds / each, 1.0, double{kMostOperations});
    const unsigned batch = static_cast<unsigned>(wanted);
    if (batch <= turn.batch * 2) {
      turn.batch = batch;
      return;
    }
    turn.batch = batch < turn.batch * 8 ? batch : turn.batch * 8;
  }
}

}  // namespace

double now_seconds() {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

Spread spread_of(std::vector<double> sample) {
  std::sort(sample.begin(), sample.end());
  const size_t last = sample.size() - 1;
  return {sample[last / 2], sample[last / 4], sample[last - last / 4]};
}

Result summarise(const char *id, const char *title, const std::vector<Contender> &contenders,
                 const std::vector<std::vector<double>> &rounds) {
  size_t reference = 0;
  while (contenders.at(reference).store != &kFloorMergedStore) {
    ++reference;
  }
  Result result = {id, title, {}};
  for (size_t i = 0; i < contenders.size(); ++i) {
    std::vector<double> times;
    std::vector<double> ratios;
    for (const std::vector<double> &round : rounds) {
      times.push_back(round[i]);
      ratios.push_back(round[i] / round[reference]);
    }
    result.figures.push_back({contenders[i].store->name, spread_of(times), spread_of(ratios)});
  }
  return result;
}

Result run_workload(const Workload &workload, const std::vector<Contender> &contenders,
                    const Plan &plan) {
  std::vector<Turn> turns(contenders.size());
  for (size_t i = 0; i < contenders.size(); ++i) {
    calibrate(workload, contenders[i], turns[i], plan.batch_seconds);
  }
  std::vector<std::vector<double>> rounds(plan.rounds, std::vector<double>(contenders.size()));
  std::vector<size_t> order(contenders.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::mt19937 random(1);
  for (unsigned round = 0; round < plan.rounds; ++round) {
    // The order changes by chance, so that nothing that recurs always meets the same store.
    std::shuffle(order.begin(), order.end(), random);
    for (const size_t i : order) {
      rounds[round][i] = run_batch(workload, contenders[i], turns[i]) * kMicro;
    }
  }
  return summarise(workload.id, workload.title, contenders, rounds);
}

}  // namespace bench
