// The figures as tables for people and as JSON for scripts.
#ifndef ZRCFG_BENCH_REPORT_H_
#define ZRCFG_BENCH_REPORT_H_

#include <stdio.h>

#include <vector>

#include "bench/cold_start.h"
#include "bench/runner.h"

namespace bench {

struct Report {
  std::vector<Result> results;
  std::vector<ColdFigure> cold;
};

// Tables in Markdown: times, ratios with their spread, cold starts, and the targets.
void print_tables(const Report &report);

// Whether a target is missed; says which.
bool print_targets(const Report &report);

bool write_json(const Report &report, const char *path);

}  // namespace bench

#endif  // ZRCFG_BENCH_REPORT_H_
