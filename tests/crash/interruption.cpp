// Runs a changing call in a process that is killed, and names the moments as docs/crash.md does.
#include "tests/crash/interruption.h"

#include <signal.h>
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zrcfg_test {
namespace {

constexpr unsigned kMostChanges = 200;

}  // namespace

bool run_and_kill(const ChangingCall &call, const std::vector<Fault> &faults) {
  fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    (void)freopen("/dev/null", "w", stdout);
    CallWatch watch(faults, true);
    _exit(call.run() == 0 ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(locked_property_files(), Lines()) << call.name;
  if (WIFEXITED(status)) {
    EXPECT_EQ(WEXITSTATUS(status), 0) << call.name;
    return false;
  }
  EXPECT_EQ(WTERMSIG(status), SIGKILL) << call.name;
  return true;
}

std::vector<Tree> stages_of(const ChangingCall &call, const std::function<void()> &set_up) {
  std::vector<Tree> stages;
  bool killed = true;
  for (unsigned nth = 1; killed && nth < kMostChanges; ++nth) {
    set_up();
    killed = run_and_kill(call, {kill_at(Call::kChange, nth)});
    stages.push_back(tree_without_slots());
  }
  EXPECT_FALSE(killed) << call.name;
  return stages;
}

std::string Moments::of_counter(const std::string &before, const std::string &after) {
  if (starts_with(before, after)) {
    return "between the counter's write and its truncation";
  }
  ++counter_writes_;
  return counter_writes_ == 1 ? "before the counter is written"
                              : "before the counter is written again";
}

std::string Moments::name(const Tree &before, const Tree &after) {
  const std::vector<std::string> paths = changed_paths(before, after);
  if (paths.size() != 1) {
    return "several changes";
  }
  const std::string &path = paths[0];
  if (path == call_.file) {
    if (starts_with(before.at(path), after.at(path))) {
      return "between the write and the truncation of a shorter section";
    }
    return before == first_ ? "in front of the write" : "between two writes";
  }
  if (path == kParentLock) {
    return of_counter(before.at(path), after.at(path));
  }
  if (call_.instance.empty()) {
    return before == first_ ? "in front of the first change" : "between two changes";
  }
  const bool removed = after.count(path) == 0;
  if (before == first_) {
    return removed ? "in front of the first removal" : "in front of the making of its directory";
  }
  if (path == call_.instance) {
    return removed ? "before the directory is removed" : "in front of the making of its directory";
  }
  return removed ? "before the directory is removed" : "before the last file is written";
}

std::vector<size_t> page_borders_within(const ChangingCall &call, const Tree &before,
                                        const Tree &after) {
  if (call.file.empty() || call.group == group::kCounter) {
    return {};
  }
  // Behind the last byte that changes there is nothing to be torn.
  const std::string old_bytes = file_bytes(before, call.file);
  const std::string new_bytes = file_bytes(after, call.file);
  const size_t start = static_cast<size_t>(call.write_at);
  size_t last = new_bytes.size();
  while (last > start && old_bytes.size() == new_bytes.size() &&
         old_bytes[last - 1] == new_bytes[last - 1]) {
    --last;
  }
  const size_t first_border = (start / kPage + 1) * kPage;
  const size_t last_border = (last - 1) / kPage * kPage;
  if (first_border > last_border) {
    return {};
  }
  return {first_border - start, last_border - start};
}

}  // namespace zrcfg_test
