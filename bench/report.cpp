// The figures as tables for people and as JSON for scripts.
#include "bench/report.h"

#include <string.h>

namespace bench {
namespace {

constexpr double kMostOverEmpty = 150;  // Microseconds of a cold start above an empty process.

// How much slower than the merged floor the library may be.
struct FloorTarget {
  const char *workload;
  double most;
};
constexpr FloorTarget kFloorTargets[] = {{"W1", 1.2}, {"W2", 1.2},  {"W3", 1.2},
                                         {"W4", 1.3}, {"W4l", 1.3}, {"W5", 1.3},
                                         {"W6", 1.3}, {"W7", 1.1},  {"W9", 1 / 0.85}};

// The peers that the library is to beat, and where.
struct PeerTarget {
  const char *store;
  const char *workloads;
};
constexpr PeerTarget kPeerTargets[] = {{"json-files", " W1 W2 W3 W4 W4l W5 W6 W7 W9 "},
                                       {"sqlite-wal", " W2 W4 W5 W7 "}};

const Figure *find(const Result &result, const char *store) {
  for (const Figure &figure : result.figures) {
    if (strcmp(figure.store, store) == 0) {
      return &figure;
    }
  }
  return nullptr;
}

void print_head(const Result &first, const char *title) {
  printf("\n%s\n\n| |", title);
  for (const Figure &figure : first.figures) {
    printf(" %s |", figure.store);
  }
  printf("\n|---|");
  for (size_t i = 0; i < first.figures.size(); ++i) {
    printf("---:|");
  }
  printf("\n");
}

void print_cold(const std::vector<ColdFigure> &cold) {
  printf(
      "\nW8, a fresh process reads one value: microseconds from start to end\n\n"
      "| | process | above an empty one |\n|---|---:|---:|\n");
  for (const ColdFigure &figure : cold) {
    printf("| %s | %.0f | %.0f [%.0f, %.0f] |\n", figure.store, figure.microseconds.median,
           figure.over_empty.median, figure.over_empty.low, figure.over_empty.high);
  }
}

bool print_target(const char *workload, const char *what, double value, double most) {
  const bool met = value <= most;
  printf("| %s | %s | %.2f | %.2f | %s |\n", workload, what, value, most, met ? "met" : "MISSED");
  return met;
}

bool has_word(const char *words, const char *word) {
  char wanted[16];
  snprintf(wanted, sizeof wanted, " %s ", word);
  return strstr(words, wanted) != nullptr;
}

bool print_targets_of(const Result &result) {
  const Figure *const own = find(result, "zrcfg");
  bool met = true;
  for (const FloorTarget &target : kFloorTargets) {
    if (own != nullptr && strcmp(target.workload, result.id) == 0) {
      met = print_target(result.id, "to floor-merged", own->ratio.median, target.most) && met;
    }
  }
  for (const PeerTarget &target : kPeerTargets) {
    const Figure *const peer = find(result, target.store);
    if (own != nullptr && peer != nullptr && has_word(target.workloads, result.id)) {
      met = print_target(result.id, target.store,
                         own->microseconds.median / peer->microseconds.median, 1.0) &&
            met;
    }
  }
  return met;
}

void write_spread(FILE *out, const char *name, const Spread &spread) {
  fprintf(out, "\"%s\": [%.4f, %.4f, %.4f]", name, spread.median, spread.low, spread.high);
}

}  // namespace

void print_tables(const Report &report) {
  if (!report.results.empty()) {
    print_head(report.results[0], "Microseconds for each operation, median");
    for (const Result &result : report.results) {
      printf("| %s %s |", result.id, result.title);
      for (const Figure &figure : result.figures) {
        printf(" %.2f |", figure.microseconds.median);
      }
      printf("\n");
    }
    print_head(report.results[0], "Ratio to floor-merged in the same round: median, middle half");
    for (const Result &result : report.results) {
      printf("| %s |", result.id);
      for (const Figure &figure : result.figures) {
        printf(" %.2f [%.2f, %.2f] |", figure.ratio.median, figure.ratio.low, figure.ratio.high);
      }
      printf("\n");
    }
  }
  if (!report.cold.empty()) {
    print_cold(report.cold);
  }
}

bool print_targets(const Report &report) {
  printf("\nTargets\n\n| | zrcfg in relation | ratio | at most | |\n|---|---|---:|---:|---|\n");
  bool met = true;
  for (const Result &result : report.results) {
    met = print_targets_of(result) && met;
  }
  for (const ColdFigure &figure : report.cold) {
    if (strcmp(figure.store, "zrcfg") == 0) {
      met = print_target("W8", "microseconds above an empty process", figure.over_empty.median,
                         kMostOverEmpty) &&
            met;
    }
  }
  return met;
}

bool write_json(const Report &report, const char *path) {
  FILE *const out = fopen(path, "we");
  if (out == nullptr) {
    return false;
  }
  fprintf(out, "{\n\"workloads\": {\n");
  for (size_t i = 0; i < report.results.size(); ++i) {
    const Result &result = report.results[i];
    fprintf(out, "  \"%s\": {\n", result.id);
    for (size_t j = 0; j < result.figures.size(); ++j) {
      const Figure &figure = result.figures[j];
      fprintf(out, "    \"%s\": {", figure.store);
      write_spread(out, "microseconds", figure.microseconds);
      fprintf(out, ", ");
      write_spread(out, "ratio", figure.ratio);
      fprintf(out, "}%s\n", j + 1 < result.figures.size() ? "," : "");
    }
    fprintf(out, "  }%s\n", i + 1 < report.results.size() ? "," : "");
  }
  fprintf(out, "},\n\"cold\": {\n");
  for (size_t i = 0; i < report.cold.size(); ++i) {
    fprintf(out, "  \"%s\": {", report.cold[i].store);
    write_spread(out, "microseconds", report.cold[i].microseconds);
    fprintf(out, ", ");
    write_spread(out, "over_empty", report.cold[i].over_empty);
    fprintf(out, "}%s\n", i + 1 < report.cold.size() ? "," : "");
  }
  fprintf(out, "}\n}\n");
  return fclose(out) == 0;
}

}  // namespace bench
