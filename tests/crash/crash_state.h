// Tells which state of docs/crash.md an interrupted change has left.
#ifndef ZRCFG_TESTS_CRASH_CRASH_STATE_H_
#define ZRCFG_TESTS_CRASH_CRASH_STATE_H_

#include <string>
#include <vector>

#include "tests/crash/changing_calls.h"

namespace zrcfg_test {

inline constexpr char kUnknownState[] = "unknown";

// The state that `found` is, given the store before and after the whole call.
std::string state_of(const ChangingCall &call, const Tree &before, const Tree &after,
                     const Tree &found);

// Paths whose entry is not the same in both, in order.
std::vector<std::string> changed_paths(const Tree &one, const Tree &other);

bool starts_with(const std::string &text, const std::string &beginning);

// Whether `found` has the new bytes in front and behind them the end of the longer old ones.
bool is_tail(const std::string &old_bytes, const std::string &new_bytes, const std::string &found);

// The bytes that an entry of a tree stands for, of a file.
std::string file_bytes(const Tree &tree, const std::string &path);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CRASH_CRASH_STATE_H_
