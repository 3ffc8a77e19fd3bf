// zrcfg-bench: measures the store below /var, its floors and its peers on the same data.
#include <limits.h>
#include <string.h>
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <stdexcept>

#include "bench/cold_start.h"
#include "bench/many_processes.h"
#include "bench/report.h"
#include "bench/runner.h"
#include "bench/verify.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

constexpr char kUsage[] =
    "usage: zrcfg-bench [--quick] [--check] [--only WORKLOAD] [--json FILE]\n"
    "Run it with scripts/bench, which builds the store and starts it with that as its /var.\n";
constexpr char kPeerDir[] = "/var/peers";
constexpr unsigned kProcesses = 4;

struct Options {
  bool quick = false;
  bool check = false;  // A missed target is a failure.
  const char *only = nullptr;
  const char *json = nullptr;

  bool wants(const char *id) const { return only == nullptr || strcmp(only, id) == 0; }
};

// How much is measured. The slow workloads take a turn of at least one operation.
struct Effort {
  Plan fast;
  Plan slow;
  unsigned cold_rounds;
  unsigned process_rounds;
  double process_seconds;
};
constexpr Effort kFull = {{301, 0.0005}, {61, 0.001}, 101, 15, 0.06};
constexpr Effort kQuick = {{61, 0.0005}, {9, 0.001}, 21, 3, 0.05};

const Store *const kStores[] = {
    &kZrcfgStore,         &kFloorStore, &kFloorMergedStore, &kSqliteWalStore,
    &kSqliteJournalStore, &kTdbStore,   &kLmdbStore,        &kJsonStore,
};

bool works_on_the_tree(const Store *store) {
  return store == &kZrcfgStore || store == &kFloorStore || store == &kFloorMergedStore;
}

std::string peer_dir(const Store *store) {
  return std::string(kPeerDir) + "/" + store->name;
}

// Fills and verifies all stores; they are then closed.
std::vector<Contender> prepare(const Tree &tree) {
  std::vector<Contender> contenders;
  unsigned media = 0;
  for (const Store *store : kStores) {
    fs::create_directories(peer_dir(store));
    if (!store->create(tree, peer_dir(store).c_str()) || !store->open()) {
      throw std::runtime_error(std::string(store->name) + " cannot be filled");
    }
    verify_store(*store, tree);
    store->close();
    contenders.push_back({store, works_on_the_tree(store) ? 0 : ++media});
  }
  return contenders;
}

std::vector<ColdProgram> cold_programs() {
  char self[PATH_MAX] = "";
  if (readlink("/proc/self/exe", self, sizeof self - 1) == -1) {
    throw std::runtime_error("no /proc/self/exe");
  }
  const std::string dir = fs::path(self).parent_path().string() + "/cold-";
  return {{"empty process", dir + "empty", "-", ""},
          {"zrcfg", dir + "zrcfg", "-", ZRCFG_BENCH_PRELOAD},
          {"floor", dir + "floor", "-", ""},
          {"floor-merged", dir + "floor-merged", "-", ""},
          {"sqlite-wal", dir + "sqlite", peer_dir(&kSqliteWalStore), ""},
          {"tdb", dir + "tdb", peer_dir(&kTdbStore), ""},
          {"lmdb", dir + "lmdb", peer_dir(&kLmdbStore), ""},
          {"json-files", dir + "json", peer_dir(&kJsonStore), ""}};
}

// The object with the most parameters that is an instance, and its middle parameter.
const Object &cold_object(const Tree &tree) {
  const Object *chosen = &tree.front();
  for (const Object &object : tree) {
    if (!object.in_template && object.parameters.size() > chosen->parameters.size()) {
      chosen = &object;
    }
  }
  return *chosen;
}

bool is_slow(const Workload &workload) {
  return strcmp(workload.id, "W6") == 0 || strcmp(workload.id, "W7") == 0;
}

void measure(const Options &options, const Tree &tree, Report &report) {
  const Effort &effort = options.quick ? kQuick : kFull;
  const std::vector<Contender> contenders = prepare(tree);
  printf("%zu stores verified, %zu objects\n", contenders.size(), tree.size());
  if (options.wants("W8")) {
    const Object &object = cold_object(tree);
    report.cold =
        measure_cold_starts(cold_programs(), object,
                            object.parameters[object.parameters.size() / 2], effort.cold_rounds);
  }
  if (options.wants("W9")) {
    report.results.push_back(run_many_processes(contenders, shared_places(tree), kProcesses,
                                                effort.process_rounds, effort.process_seconds));
  }
  for (const Contender &contender : contenders) {
    contender.store->open();
  }
  size_t at = 0;
  for (const Workload &workload : make_workloads(tree)) {
    if (options.wants(workload.id)) {
      const Result result =
          run_workload(workload, contenders, is_slow(workload) ? effort.slow : effort.fast);
      report.results.insert(report.results.begin() + static_cast<std::ptrdiff_t>(at++), result);
    }
  }
  for (const Contender &contender : contenders) {
    contender.store->close();
  }
  fs::remove_all(kPeerDir);
}

bool parse(int argc, char **argv, Options &options) {
  for (int i = 1; i < argc; ++i) {
    if (strcmp(argv[i], "--quick") == 0) {
      options.quick = true;
    } else if (strcmp(argv[i], "--check") == 0) {
      options.check = true;
    } else if (strcmp(argv[i], "--only") == 0 && i + 1 < argc) {
      options.only = argv[++i];
    } else if (strcmp(argv[i], "--json") == 0 && i + 1 < argc) {
      options.json = argv[++i];
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace
}  // namespace bench

int main(int argc, char **argv) {
  using namespace bench;
  Options options;
  if (!parse(argc, argv, options)) {
    fputs(kUsage, stderr);
    return 2;
  }
  try {
    Report report;
    measure(options, read_tree("/var/", kRoot), report);
    print_tables(report);
    const bool met = print_targets(report);
    if (options.json != nullptr && !write_json(report, options.json)) {
      throw std::runtime_error(std::string(options.json) + " cannot be written");
    }
    return met || !options.check ? 0 : 1;
  } catch (const std::exception &error) {
    fprintf(stderr, "zrcfg-bench: %s\n", error.what());
    return 1;
  }
}
