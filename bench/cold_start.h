// W8: what it costs a fresh process to read one value.
#ifndef ZRCFG_BENCH_COLD_START_H_
#define ZRCFG_BENCH_COLD_START_H_

#include <string>
#include <vector>

#include "bench/runner.h"
#include "bench/tree.h"

namespace bench {

// A program that reads one value and ends.
struct ColdProgram {
  const char *store;  // Null for the empty process.
  std::string path;
  std::string dir;      // What it is to open.
  std::string preload;  // Libraries that are not installed, by their paths, for the loader.
};

struct ColdFigure {
  const char *store;
  Spread microseconds;  // From starting the process to its end.
  Spread over_empty;    // The same less that of an empty process in the same round.
};

// Runs the programs in interleaved rounds. Throws when one does not find the expected value. The
// first program is the empty one.
std::vector<ColdFigure> measure_cold_starts(const std::vector<ColdProgram> &programs,
                                            const Object &object, const Parameter &parameter,
                                            unsigned rounds);

}  // namespace bench

#endif  // ZRCFG_BENCH_COLD_START_H_
