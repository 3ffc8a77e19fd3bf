// zrcfg-bench-growth: cost of an operation against what the store holds. usage: … FILE
#include <stdio.h>

#include <exception>
#include <functional>
#include <random>
#include <stdexcept>

#include "bench/growth_store.h"
#include "bench/many_processes.h"
#include "bench/runner.h"

namespace bench {
namespace {

const Store *const kStores[] = {&kZrcfgStore, &kFloorMergedStore};

// One operation, measured at every point of a curve.
struct Series {
  const char *name;
  std::function<bool(const Store &store, unsigned i)> run;
};

struct Curve {
  const char *id;
  const char *axis;
  std::vector<unsigned> points;
  // Makes the store for a point, returns the place on the axis.
  std::function<unsigned(unsigned point)> prepare;
  std::vector<Series> series;
};

constexpr unsigned kRounds = 41;

// The medians of a series, a store after the other.
std::vector<double> measure(const Series &series) {
  const Workload workload = {"growth", series.name, [&](const Store &store, unsigned, unsigned i) {
                               return series.run(store, i);
                             }};
  std::vector<Contender> contenders;
  for (const Store *store : kStores) {
    contenders.push_back({store, 0});
  }
  std::vector<double> medians;
  for (const Figure &figure : run_workload(workload, contenders, {kRounds, 0.0004}).figures) {
    medians.push_back(figure.microseconds.median);
  }
  return medians;
}

void write_point(FILE *out, const Curve &curve, unsigned point, bool last) {
  const unsigned x = curve.prepare(point);
  fprintf(out, "      {\"x\": %u", x);
  for (const Series &series : curve.series) {
    const std::vector<double> medians = measure(series);
    fprintf(out, ", \"%s\": [%.3f, %.3f]", series.name, medians[0], medians[1]);
  }
  fprintf(out, "}%s\n", last ? "" : ",");
}

// Values that alternate, so that every write changes something.
const char *other_value(unsigned i) {
  return i % 2 == 0 ? "a value" : "a longer value";
}

// All stores write in turn to the same files: each has to see another value than the last one's.
unsigned g_writes = 0;

bool read_value(const Store &store, const std::string &url, const std::string &name) {
  char value[ZRCFG_VALUE_SIZE];
  return store.read(url.c_str(), name.c_str(), value);
}

bool write_value(const Store &store, const std::string &url, const std::string &name) {
  return store.write(url.c_str(), name.c_str(), other_value(++g_writes));
}

bool enumerate(const Store &store) {
  return store.enumerate(
      "Gate.", [](void *, const char *, unsigned, const char *) {}, nullptr);
}

bool add_and_remove(const Store &store, unsigned group) {
  uint32_t index = 0;
  return store.add(growth_table(group).c_str(), &index) &&
         store.remove(growth_table(group).c_str(), index);
}

std::string port(unsigned group, unsigned instance) {
  return growth_table(group) + std::to_string(instance) + ".";
}

Curve against_tree() {
  static unsigned groups;
  return {"tree",
          "objects in the tree",
          {1, 4, 16, 64, 256},
          [](unsigned point) {
            groups = point;
            return make_growth_store({point, 16, 12});
          },
          {{"W1 read a value",
            [](const Store &store, unsigned i) {
              return read_value(store, port(i % groups + 1, i % 16 + 1), growth_parameter(5));
            }},
           {"W2 write a value",
            [](const Store &store, unsigned i) {
              return write_value(store, port(i % groups + 1, i % 16 + 1), growth_parameter(5));
            }},
           {"W6 enumerate the tree", [](const Store &store, unsigned) { return enumerate(store); }},
           {"W7 add and delete an instance",
            [](const Store &store, unsigned i) { return add_and_remove(store, i % groups + 1); }}}};
}

Curve against_instances() {
  return {"instances",
          "instances in the table",
          {1, 32, 64, 128, 192, 254},
          [](unsigned point) {
            make_growth_store({1, point, 12});
            return point;
          },
          {{"W1 read a value",
            [](const Store &store, unsigned) {
              return read_value(store, port(1, 1), growth_parameter(5));
            }},
           {"W2 write a value",
            [](const Store &store, unsigned) {
              return write_value(store, port(1, 1), growth_parameter(5));
            }},
           {"W7 add and delete the last instance",
            [](const Store &store, unsigned) { return add_and_remove(store, 1); }}}};
}

std::vector<std::string> names_of(unsigned count, unsigned parameters) {
  // Not in the order of the file, as lists of people's choice are not.
  std::vector<std::string> names;
  for (unsigned i = 0; i < count; ++i) {
    names.push_back(growth_parameter(i * 101 % parameters));
  }
  return names;
}

Series read_list(RequestList &list) {
  return {"W4 read all values by name", [&list](const Store &store, unsigned) {
            return store.read_many(port(1, 1).c_str(), list.head());
          }};
}

Series write_list(RequestList &list, const char *name) {
  return {name, [&list](const Store &store, unsigned) {
            list.set_value(0, other_value(++g_writes));
            return store.write_many(port(1, 1).c_str(), list.head());
          }};
}

Curve against_parameters() {
  static unsigned parameters;
  static RequestList list({});
  return {"parameters",
          "parameters in the object",
          {1, 32, 64, 128, 192, 255},
          [](unsigned point) {
            parameters = point;
            make_growth_store({1, 4, point});
            list = RequestList(names_of(point, point));
            return point;
          },
          {{"W1 read the last value",
            [](const Store &store, unsigned) {
              return read_value(store, port(1, 1), growth_parameter(parameters - 1));
            }},
           {"W2 write the last value",
            [](const Store &store, unsigned) {
              return write_value(store, port(1, 1), growth_parameter(parameters - 1));
            }},
           read_list(list),
           write_list(list, "W5 write all values")}};
}

Curve against_list() {
  static RequestList list({});
  return {"list",
          "nodes in the request list, 255 parameters in the object",
          {1, 128, 256, 512, 768, 1001},
          [](unsigned point) {
            make_growth_store({1, 4, 255});
            list = RequestList(names_of(point, 255));
            return point;
          },
          {read_list(list), write_list(list, "W5 write the list")}};
}

void write_curve(FILE *out, const Curve &curve) {
  fprintf(out, "    \"%s\": {\"axis\": \"%s\", \"points\": [\n", curve.id, curve.axis);
  for (size_t i = 0; i < curve.points.size(); ++i) {
    write_point(out, curve, curve.points[i], i + 1 == curve.points.size());
  }
  fprintf(out, "    ]},\n");
}

// Microseconds for each operation of all processes together.
void write_processes(FILE *out) {
  constexpr unsigned kTurns = 9;
  make_growth_store({1, 16, 12});
  SharedPlaces places;
  for (unsigned i = 0; i < 16; ++i) {
    places.urls.push_back(port(1, i + 1));
  }
  for (unsigned i = 0; i < kMostProcesses; ++i) {
    places.names.push_back(growth_parameter(i));
  }
  fprintf(out, "    \"processes\": {\"axis\": \"processes\", \"points\": [\n");
  for (unsigned processes = 1; processes <= kMostProcesses; ++processes) {
    std::vector<double> times[2];
    for (unsigned turn = 0; turn < kTurns; ++turn) {
      times[0].push_back(run_processes(*kStores[0], places, processes, 0.04));
      times[1].push_back(run_processes(*kStores[1], places, processes, 0.04));
    }
    fprintf(out, "      {\"x\": %u, \"W9 an operation of all together\": [%.3f, %.3f]}%s\n",
            processes, spread_of(times[0]).median, spread_of(times[1]).median,
            processes < kMostProcesses ? "," : "");
  }
  fprintf(out, "    ]}\n");
}

void write_figures(FILE *out) {
  fprintf(out, "{\n  \"stores\": [\"zrcfg\", \"floor-merged\"],\n  \"curves\": {\n");
  for (const Curve &curve :
       {against_tree(), against_instances(), against_parameters(), against_list()}) {
    write_curve(out, curve);
    fprintf(stderr, "%s\n", curve.id);
  }
  write_processes(out);
  fprintf(out, "  }\n}\n");
}

}  // namespace
}  // namespace bench

int main(int argc, char **argv) {
  FILE *const out = argc == 2 ? fopen(argv[1], "we") : nullptr;
  if (out == nullptr) {
    fputs("usage: zrcfg-bench-growth FILE, started by scripts/bench --growth FILE\n", stderr);
    return 2;
  }
  try {
    bench::write_figures(out);
  } catch (const std::exception &error) {
    fprintf(stderr, "zrcfg-bench-growth: %s\n", error.what());
    return 1;
  }
  return fclose(out) == 0 ? 0 : 1;
}
