// W9: several processes on the same instances, with a check for lost updates.
#include "bench/many_processes.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <random>
#include <stdexcept>

namespace bench {
namespace {

constexpr size_t kInstances = 16;
constexpr char kTable[] = "InternetGatewayDevice.Firewall.Rule.";
constexpr unsigned kWritePercent = 20;

// What the processes share while they run.
struct Board {
  std::atomic<unsigned> ready;
  std::atomic<bool> go;
  std::atomic<unsigned long> operations;
  std::atomic<unsigned> failures;
  std::atomic<unsigned> lost;
};

// The last value that a process has written to each instance.
using Written = std::vector<std::string>;

bool one_operation(const Store &store, const SharedPlaces &places, unsigned process,
                   std::mt19937 &random, unsigned long number, Written &written) {
  const size_t instance = random() % places.urls.size();
  const char *const url = places.urls[instance].c_str();
  if (random() % 100 < kWritePercent) {
    written[instance] = std::to_string(process) + "-" + std::to_string(number);
    return store.write(url, places.names[process].c_str(), written[instance].c_str());
  }
  char value[ZRCFG_VALUE_SIZE];
  return store.read(url, places.names[random() % places.names.size()].c_str(), value);
}

void compare(const Store &store, const SharedPlaces &places, unsigned process,
             const Written &written, Board &board) {
  for (size_t i = 0; i < places.urls.size(); ++i) {
    char value[ZRCFG_VALUE_SIZE] = "";
    if (!written[i].empty() &&
        (!store.read(places.urls[i].c_str(), places.names[process].c_str(), value) ||
         written[i] != value)) {
      ++board.lost;
    }
  }
}

void run_child(const Store &store, const SharedPlaces &places, unsigned process, double seconds,
               Board &board) {
  std::mt19937 random(process + 1);
  Written written(places.urls.size());
  if (!store.open()) {
    ++board.failures;
  }
  ++board.ready;
  while (!board.go) {
    usleep(100);
  }
  const double end = now_seconds() + seconds;
  unsigned long number = 0;
  while (now_seconds() < end) {
    if (!one_operation(store, places, process, random, ++number, written)) {
      ++board.failures;
      break;
    }
  }
  board.operations += number;
  compare(store, places, process, written, board);
  store.close();
}

Board *shared_board() {
  void *const memory =
      mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    throw std::runtime_error("no shared memory");
  }
  return new (memory) Board();
}

}  // namespace

SharedPlaces shared_places(const Tree &tree) {
  SharedPlaces places;
  for (const Object &object : tree) {
    if (object.in_template || object.url.compare(0, sizeof kTable - 1, kTable) != 0 ||
        object.parameters.size() < kMostProcesses || places.urls.size() == kInstances) {
      continue;
    }
    places.urls.push_back(object.url);
    places.names.clear();
    for (unsigned i = 0; i < kMostProcesses; ++i) {
      places.names.push_back(object.parameters[i].name);
    }
  }
  return places;
}

double run_processes(const Store &store, const SharedPlaces &places, unsigned processes,
                     double seconds) {
  Board &board = *shared_board();
  std::vector<pid_t> children;
  for (unsigned i = 0; i < processes; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      run_child(store, places, i, seconds, board);
      _exit(0);
    }
    children.push_back(child);
  }
  while (board.ready < processes) {
    usleep(100);
  }
  board.go = true;
  bool good = true;
  for (const pid_t child : children) {
    int status = 0;
    good = waitpid(child, &status, 0) == child && status == 0 && good;
  }
  const unsigned long operations = board.operations;
  const unsigned lost = board.lost;
  good = good && board.failures == 0;
  munmap(&board, sizeof board);
  if (!good || lost > 0) {
    throw std::runtime_error(std::string("W9 on ") + store.name + ": " + std::to_string(lost) +
                             " updates lost, " + (good ? "no failure" : "operations failed"));
  }
  return seconds * 1e6 / static_cast<double>(operations);
}

Result run_many_processes(const std::vector<Contender> &contenders, const SharedPlaces &places,
                          unsigned processes, unsigned rounds, double seconds) {
  std::vector<std::vector<double>> times(rounds);
  for (unsigned round = 0; round < rounds; ++round) {
    times[round].resize(contenders.size());
    for (size_t n = 0; n < contenders.size(); ++n) {
      const size_t i = (n + round) % contenders.size();
      times[round][i] = run_processes(*contenders[i].store, places, processes, seconds);
    }
  }
  return summarise("W9", "processes, 80 % reads, 20 % writes on 16 instances", contenders, times);
}

}  // namespace bench
