// zrcfg-bench-one: one workload on one store a given number of times, for profilers and counters.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <exception>

#include "bench/workload.h"

int main(int argc, char **argv) {
  using namespace bench;
  if (argc != 4) {
    fputs("usage: zrcfg-bench-one zrcfg|floor|floor-merged WORKLOAD COUNT\n", stderr);
    return 2;
  }
  try {
    const Tree tree = read_tree("/var/", kRoot);
    for (const Store *store : {&kZrcfgStore, &kFloorStore, &kFloorMergedStore}) {
      for (const Workload &workload : make_workloads(tree)) {
        if (strcmp(store->name, argv[1]) != 0 || strcmp(workload.id, argv[2]) != 0) {
          continue;
        }
        for (unsigned i = 0; i < static_cast<unsigned>(atoi(argv[3])); ++i) {
          if (!workload.run(*store, 0, i)) {
            fprintf(stderr, "%s fails\n", argv[2]);
            return 1;
          }
        }
        return 0;
      }
    }
  } catch (const std::exception &error) {
    fprintf(stderr, "%s\n", error.what());
  }
  return 2;
}
