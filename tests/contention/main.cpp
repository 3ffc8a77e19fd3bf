// Processes or threads on the same objects: contention processes|threads|killed SECONDS [WORKERS].
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/contention/board.h"
#include "tests/contention/store.h"
#include "tests/contention/worker.h"
#include "zrcfg.h"

namespace contention {
namespace {

constexpr unsigned kUsualWorkers = 6;
constexpr unsigned kDeadlockSeconds = 60;  // Nobody waits as long for a lock.
constexpr unsigned kLongestLife = 20000;   // Microseconds until a victim is killed.
constexpr uint64_t kSecond = 1000000;

// Half of the workers write; when some are killed, it is the writers but for one.
Role role_of(unsigned worker, bool killing) {
  if (worker % 2 == 1) {
    return Role::kReader;
  }
  return killing && worker > 0 ? Role::kVictim : Role::kWriter;
}

// The file that switches the logger on.
void switch_log_on() {
  (void)mkdir("/usr/local/zr/log_switch", 0755);
  FILE *const file = fopen("/usr/local/zr/log_switch/zrcfg_log_enable", "w");
  if (file == nullptr || fclose(file) != 0) {
    perror("zrcfg_log_enable");
    exit(2);
  }
}

pid_t start_process(Board &board, unsigned worker, Role role, unsigned seed) {
  const pid_t process = fork();
  if (process == 0) {
    run_worker(board, worker, role, seed);
    _exit(0);
  }
  return process;
}

// Ends the program, workers included, when the call of some worker does not come back.
void watch_for_deadlock(int) {
  static const char text[] = "FAULT: deadlock\n";
  (void)!write(STDERR_FILENO, text, sizeof text - 1);
  (void)kill(0, SIGKILL);
}

void kill_and_replace(Board &board, std::vector<pid_t> &processes, unsigned worker, unsigned seed) {
  (void)kill(processes[worker], SIGKILL);
  int status = 0;
  if (waitpid(processes[worker], &status, 0) != processes[worker] || !WIFSIGNALED(status)) {
    fault(board, "worker %u ended by itself", worker);
  }
  ++board.killed;
  processes[worker] = start_process(board, worker, Role::kVictim, seed);
}

void run_processes(Board &board, unsigned seconds, bool killing) {
  std::vector<pid_t> processes;
  for (unsigned worker = 0; worker < board.workers; ++worker) {
    processes.push_back(start_process(board, worker, role_of(worker, killing), worker));
  }
  const uint64_t end = now_microseconds() + seconds * kSecond;
  board.go = true;
  std::mt19937 random(7);
  while (now_microseconds() < end) {
    (void)usleep(static_cast<useconds_t>(random() % kLongestLife));
    for (unsigned worker = 0; killing && worker < board.workers; ++worker) {
      if (role_of(worker, killing) == Role::kVictim && random() % 2 == 0) {
        kill_and_replace(board, processes, worker, static_cast<unsigned>(random()));
      }
    }
  }
  board.stop = true;
  for (const pid_t process : processes) {
    int status = 0;
    if (waitpid(process, &status, 0) != process || status != 0) {
      fault(board, "a worker ended with status %d", status);
    }
  }
}

void run_threads(Board &board, unsigned seconds) {
  std::vector<std::thread> threads;
  for (unsigned worker = 0; worker < board.workers; ++worker) {
    threads.emplace_back(
        [&board, worker] { run_worker(board, worker, role_of(worker, false), worker); });
  }
  board.go = true;
  (void)sleep(seconds);
  board.stop = true;
  for (std::thread &thread : threads) {
    thread.join();
  }
}

void report(const Board &board, const char *way, double seconds) {
  printf("%u %s, %.1f seconds: %llu calls", board.workers, way, seconds,
         static_cast<unsigned long long>(total_calls(board)));
  if (board.killed > 0) {
    printf(", %u workers killed", board.killed.load());
  }
  uint64_t busy = 0;
  uint64_t partial = 0;
  for (unsigned worker = 0; worker < board.workers; ++worker) {
    busy += board.states[worker].busy;
    partial += board.states[worker].partial;
  }
  printf(", %llu gave up in time, %llu partial trees, %u faults\n",
         static_cast<unsigned long long>(busy), static_cast<unsigned long long>(partial),
         board.faults.load());
  for (unsigned kind = 0; kind < kKinds; ++kind) {
    uint64_t calls = 0;
    uint64_t longest = 0;
    for (unsigned worker = 0; worker < board.workers; ++worker) {
      calls += board.states[worker].calls[kind];
      longest = std::max<uint64_t>(longest, board.states[worker].longest[kind]);
    }
    printf("  %-16s %10llu calls, longest %9.3f ms\n", kind_name(kind),
           static_cast<unsigned long long>(calls), static_cast<double>(longest) / 1000);
  }
  // How evenly the workers of one kind were served.
  for (unsigned worker = 0; worker < board.workers; ++worker) {
    uint64_t calls = 0;
    for (const std::atomic<Count> &of_kind : board.states[worker].calls) {
      calls += of_kind;
    }
    printf("  worker %u, %s: %llu calls\n", worker,
           role_of(worker, board.killed > 0) == Role::kReader ? "reads" : "reads and writes",
           static_cast<unsigned long long>(calls));
  }
}

}  // namespace
}  // namespace contention

int main(int argc, char **argv) {
  using namespace contention;
  const std::string way = argc > 1 ? argv[1] : "";
  const unsigned seconds = argc > 2 ? static_cast<unsigned>(atoi(argv[2])) : 0;
  const unsigned workers = argc > 3 ? static_cast<unsigned>(atoi(argv[3])) : kUsualWorkers;
  if ((way != "processes" && way != "threads" && way != "killed") || seconds == 0 || workers < 2 ||
      workers > kMostWorkers) {
    fprintf(stderr, "usage: contention processes|threads|killed SECONDS [WORKERS]\n");
    return 2;
  }
  if (access("/var/lib", F_OK) == 0) {
    fprintf(stderr, "/var is the machine's own; run this through scripts/with-store --temp\n");
    return 2;
  }
  (void)setpgid(0, 0);
  Board &board = make_board(workers);
  make_store(workers);
  switch_log_on();
  if (init_zrcfg_logger() != 0) {
    return 2;
  }
  (void)signal(SIGALRM, watch_for_deadlock);
  (void)alarm(seconds + kDeadlockSeconds);
  const uint64_t start = now_microseconds();
  if (way == "threads") {
    run_threads(board, seconds);
  } else {
    run_processes(board, seconds, way == "killed");
  }
  const double taken = static_cast<double>(now_microseconds() - start) / 1e6;
  verify(board);
  report(board, way.c_str(), taken);
  return board.faults == 0 ? 0 : 1;
}
