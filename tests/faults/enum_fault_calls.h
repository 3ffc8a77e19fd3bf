// The lists of the enumeration, to be put under faults, on one known tree.
#ifndef ZRCFG_TESTS_FAULTS_ENUM_FAULT_CALLS_H_
#define ZRCFG_TESTS_FAULTS_ENUM_FAULT_CALLS_H_

#include <stdint.h>

#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "zrcfg.h"

namespace zrcfg_test {

using ListedNode = std::pair<std::string, unsigned>;  // Name and rw.

// What a call gave: the nodes, or the names with an rw of 0.
struct Given {
  uint32_t result = 0;
  bool written = false;  // Whether an output was.
  bool tail_is_last = false;
  bool tail_is_null = false;
  std::vector<ListedNode> nodes;
};

struct ListCall {
  const char *name;
  Given (*run)();
  std::set<uint32_t> failures;   // The codes that the call may fail with.
  std::vector<ListedNode> full;  // The list without faults.
};

void PrintTo(const ListCall &call, std::ostream *out);

inline constexpr uint32_t kListFailed = 0xFFFFFFFFu;
extern NODE_INFO output_mark;  // What the outputs hold beforehand.

// The tree of an object A, and the calls on it.
void write_list_tree();
Given run_names();
Given run_construct();
Given run_children();
Given run_object();
Given run_flat();
Given run_walk();

// What they give.
extern const std::vector<ListedNode> kNames;
extern const std::vector<ListedNode> kChildren;
extern const std::vector<ListedNode> kObject;
extern const std::vector<ListedNode> kFlat;
extern const std::vector<ListedNode> kWalk;

// Whether the nodes are some of the list's, in its order.
bool is_part_of(const std::vector<ListedNode> &nodes, const std::vector<ListedNode> &list);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_FAULTS_ENUM_FAULT_CALLS_H_
