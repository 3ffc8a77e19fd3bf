// The switchboard behind the interposed libc functions: what is counted, recorded and failed.
#include "tests/support/libc_hooks.h"

#include <fcntl.h>
#include <signal.h>
#include <string.h>
#include <unistd.h>

#include "tests/support/libc_hooks_internal.h"

namespace zrcfg_test {
namespace {

constexpr size_t kFamilies = static_cast<size_t>(Call::kChange) + 1;
constexpr size_t kMaxRecords = 4000;
constexpr size_t kMaxFaults = 8;

// Filled while calls are watched, where allocating or any other libc call would disturb.
struct RawRecord {
  HookedCall made;
  char path[512];
  long long result;
};

struct State {
  bool active;
  bool skip_sleeps;
  unsigned counts[kFamilies];
  Fault faults[kMaxFaults];
  size_t fault_count;
  unsigned hits;
  RawRecord records[kMaxRecords];
  size_t record_count;
};

State state;

unsigned &count_of(Call call) {
  return state.counts[static_cast<size_t>(call)];
}

bool may_change_store(const HookedCall &made) {
  switch (made.call) {
    case Call::kWrite:
    case Call::kTruncate:
      return true;
    case Call::kOpen:
      return (made.flags & O_CREAT) != 0;
    case Call::kOther:
      return strstr(made.function, "sync") == nullptr;
    default:
      return false;
  }
}

bool applies(const Fault &fault, const HookedCall &made) {
  const bool same = fault.call == Call::kChange ? may_change_store(made) : fault.call == made.call;
  if (!same || (fault.only_writable && (made.flags & O_ACCMODE) == O_RDONLY)) {
    return false;
  }
  const unsigned number = count_of(fault.call);
  return number >= fault.nth && number - fault.nth < fault.times;
}

}  // namespace

bool hooks_active() {
  return state.active;
}

bool sleeps_skipped() {
  return state.skip_sleeps;
}

Verdict judge_call(const HookedCall &made) {
  ++count_of(made.call);
  if (may_change_store(made)) {
    ++count_of(Call::kChange);
  }
  for (size_t i = 0; i < state.fault_count; ++i) {
    const Fault &fault = state.faults[i];
    if (!applies(fault, made)) {
      continue;
    }
    ++state.hits;
    if (fault.error == kKilled && fault.limit == kNoLimit) {
      die();
    }
    return {fault.error, fault.error == 0 || fault.error == kKilled ? fault.limit : kNoLimit};
  }
  return {0, kNoLimit};
}

void die() {
  kill(getpid(), SIGKILL);
}

void record_call(const HookedCall &made, long long result) {
  if (state.record_count == kMaxRecords) {
    return;
  }
  RawRecord &record = state.records[state.record_count++];
  record.made = made;
  record.path[0] = '\0';
  if (made.path != nullptr) {
    strncpy(record.path, made.path, sizeof record.path - 1);
    record.path[sizeof record.path - 1] = '\0';
  }
  record.result = result;
}

const char *call_name(Call call) {
  static const char *const kNames[kFamilies] = {
      "open",  "close",  "read",    "write",   "seek",     "truncate",
      "lock",  "access", "stat",    "opendir", "closedir", "fopen",
      "sleep", "other",  "readdir", "regcomp", "allocate", "change"};
  return kNames[static_cast<size_t>(call)];
}

Fault fail_once(Call call, unsigned nth, int error) {
  return {call, nth, 1, error, kNoLimit};
}

Fault fail_times(Call call, unsigned nth, unsigned times, int error) {
  return {call, nth, times, error, kNoLimit};
}

Fault fail_for_ever(Call call, unsigned nth, int error) {
  return {call, nth, kForEver, error, kNoLimit};
}

Fault fail_writable_opens(int error) {
  return {Call::kOpen, 1, kForEver, error, kNoLimit, true};
}

Fault kill_at(Call call, unsigned nth) {
  return {call, nth, 1, kKilled, kNoLimit};
}

Fault kill_within(Call call, unsigned nth, size_t bytes) {
  return {call, nth, 1, kKilled, bytes};
}

Fault cut_short(Call call, unsigned nth, unsigned times, size_t limit) {
  return {call, nth, times, 0, limit};
}

CallWatch::CallWatch(const std::vector<Fault> &faults, bool skip_sleeps) {
  prepare_hooks();
  memset(state.counts, 0, sizeof state.counts);
  state.fault_count = 0;
  for (const Fault &fault : faults) {
    if (state.fault_count < kMaxFaults) {
      state.faults[state.fault_count++] = fault;
    }
  }
  state.hits = 0;
  state.record_count = 0;
  state.skip_sleeps = skip_sleeps;
  state.active = true;
}

CallWatch::~CallWatch() {
  stop();
}

void CallWatch::stop() {
  state.active = false;
}

unsigned CallWatch::count(Call call) const {
  return count_of(call);
}

unsigned CallWatch::system_calls() const {
  unsigned sum = 0;
  for (size_t family = 0; family <= static_cast<size_t>(Call::kOther); ++family) {
    sum += state.counts[family];
  }
  return sum - count(Call::kSleep);
}

unsigned CallWatch::faults_hit() const {
  return state.hits;
}

std::vector<CallRecord> CallWatch::records() const {
  std::vector<CallRecord> result;
  for (size_t i = 0; i < state.record_count; ++i) {
    const RawRecord &raw = state.records[i];
    const bool opening = raw.made.call == Call::kOpen;
    result.push_back({raw.made.call, raw.made.function, raw.path,
                      opening ? static_cast<int>(raw.result) : raw.made.fd, raw.made.flags,
                      raw.made.amount, raw.result});
  }
  return result;
}

std::string CallWatch::describe() const {
  std::string text;
  for (const CallRecord &record : records()) {
    text += record.function + "(" + record.path + " fd=" + std::to_string(record.fd) +
            " flags=" + std::to_string(record.flags) + " amount=" + std::to_string(record.amount) +
            ") = " + std::to_string(record.result) + "\n";
  }
  return text;
}

}  // namespace zrcfg_test
