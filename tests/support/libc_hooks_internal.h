// Between the interposed libc functions and their switchboard.
#ifndef ZRCFG_TESTS_SUPPORT_LIBC_HOOKS_INTERNAL_H_
#define ZRCFG_TESTS_SUPPORT_LIBC_HOOKS_INTERNAL_H_

#include "tests/support/libc_hooks.h"

namespace zrcfg_test {

// One call, as its interposed function sees it.
struct HookedCall {
  Call call;
  const char *function;
  const char *path;
  int fd;
  int flags;
  long long amount;
};

// What is to become of a call: a nonzero `error` fails it, `limit` bounds the bytes it moves. With
// kKilled the process dies behind them.
struct Verdict {
  int error;
  size_t limit;
};

bool hooks_active();
bool sleeps_skipped();
// Counts a call and decides on it.
Verdict judge_call(const HookedCall &made);
void die();
void record_call(const HookedCall &made, long long result);

// Finds the library's place in memory, so that only its own allocations are watched.
void prepare_hooks();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_LIBC_HOOKS_INTERNAL_H_
