// The tables of docs/crash.md, for the tests that compare them with what they find.
#ifndef ZRCFG_TESTS_CRASH_CRASH_DOCUMENT_H_
#define ZRCFG_TESTS_CRASH_CRASH_DOCUMENT_H_

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace zrcfg_test {

// The cells of the table below a heading; an empty first cell repeats the one above it.
std::vector<std::vector<std::string>> document_table(const std::string &heading);

// Moment and state of the rows for a group of calls.
using MomentStates = std::set<std::pair<std::string, std::string>>;
MomentStates documented_moments(const std::string &group);

// What the row of a state says on who mends it.
std::string documented_mender(const std::string &state);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CRASH_CRASH_DOCUMENT_H_
