// W8: what it costs a fresh process to read one value.
#include "bench/cold_start.h"

#include <math.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <stdexcept>

namespace bench {
namespace {

constexpr unsigned kStartsPerTurn = 6;

double run_once(const ColdProgram &program, const Object &object, const Parameter &parameter) {
  const char *const arguments[] = {program.path.c_str(),    program.dir.c_str(),
                                   object.url.c_str(),      parameter.name.c_str(),
                                   parameter.value.c_str(), nullptr};
  // Naming libraries by their paths spares the loader the search along the build's folders, which
  // installed libraries do not cause either.
  const std::string preload = "LD_PRELOAD=" + program.preload;
  const char *const environment[] = {preload.c_str(), nullptr};
  const double start = now_seconds();
  pid_t child = -1;
  int status = 0;
  if (posix_spawn(&child, arguments[0], nullptr, nullptr, const_cast<char *const *>(arguments),
                  const_cast<char *const *>(environment)) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    throw std::runtime_error(program.path + " does not find the value");
  }
  return (now_seconds() - start) * 1e6;
}

// The fastest of a few starts: the others met somebody else on the processor.
double run_turn(const ColdProgram &program, const Object &object, const Parameter &parameter) {
  double shortest = HUGE_VAL;
  for (unsigned i = 0; i < kStartsPerTurn; ++i) {
    shortest = std::min(shortest, run_once(program, object, parameter));
  }
  return shortest;
}

}  // namespace

std::vector<ColdFigure> measure_cold_starts(const std::vector<ColdProgram> &programs,
                                            const Object &object, const Parameter &parameter,
                                            unsigned rounds) {
  std::vector<std::vector<double>> times(programs.size());
  std::vector<std::vector<double>> over(programs.size());
  for (unsigned round = 0; round < rounds; ++round) {
    for (size_t i = 0; i < programs.size(); ++i) {
      times[i].push_back(run_turn(programs[i], object, parameter));
      over[i].push_back(times[i].back() - times[0].back());
    }
  }
  std::vector<ColdFigure> figures;
  for (size_t i = 0; i < programs.size(); ++i) {
    figures.push_back({programs[i].store, spread_of(times[i]), spread_of(over[i])});
  }
  return figures;
}

}  // namespace bench
