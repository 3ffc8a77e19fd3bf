// Processes that create and delete instances of one table at the same time, and some that are
// killed while they do.
#include <errno.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <set>
#include <thread>

#include "support/lock_holder.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kLimit = 200;
constexpr int kProcesses = 4;
constexpr int kRounds = 12;
constexpr int kKills = 30;
constexpr int kLongestLife = 6000;  // Microseconds before a process is killed.

// An empty table of up to kLimit instances. The counter stands at 0.
class ConcurrencyTest : public LifecycleTest {
 protected:
  void SetUp() override {
    LifecycleTest::SetUp();
    empty_table();
  }
  void empty_table() {
    for (const auto &entry : std::filesystem::directory_iterator("/var/Gateway/Table")) {
      if (entry.is_directory() && entry.path().filename() != "0") {
        std::filesystem::remove_all(entry.path());
      }
    }
    TableFields fields;
    fields.max_instance = kLimit;
    set_table(fields);
    set_counter("0");
    template_ = relative_tree("0");
  }
  // What lies below an instance, by the path behind its number.
  static Tree relative_tree(const std::string &number) {
    const std::string dir = std::string(kTable) + number;
    Tree tree;
    for (const auto &[path, entry] : subtree(store_tree(), dir)) {
      tree[path.substr(dir.size())] = entry;
    }
    return tree;
  }
  static std::set<int> instances() {
    std::set<int> numbers;
    for (const auto &entry : std::filesystem::directory_iterator("/var/Gateway/Table")) {
      if (entry.is_directory() && entry.path().filename() != "0") {
        numbers.insert(std::stoi(entry.path().filename().string()));
      }
    }
    return numbers;
  }
  static int counter() {
    char value[256] = "none";
    EXPECT_EQ(zrcfg_getsingleparamval("Gateway.", "TableNumberOfEntries", value, 5000), 0u);
    return std::stoi(value);
  }
  Tree template_;
};

std::string instance_url(unsigned number) {
  return kTableUrl + std::to_string(number) + ".";
}

// A process that runs `work` and ends with its result.
pid_t start(const std::function<int()> &work) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(work());
  }
  return child;
}

int result_of(pid_t child) {
  int status = -1;
  while (waitpid(child, &status, 0) == -1 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Creates one instance the one way or the other; 0 when that failed.
unsigned create(bool exported, unsigned guess) {
  uint32_t index = 0;
  if (!exported) {
    return zrcfg_addobject(kTableUrl, &index, ZRCFG_WAIT_FOREVER) == 0 ? index : 0;
  }
  uint8_t flag = 0;
  const std::string url = instance_url(guess);
  const uint32_t result = zrcfg_exportaddobject(url.c_str(), ZRCFG_WAIT_FOREVER, 0, &flag);
  return result == 0 && flag == 1 ? guess : 0;
}

bool remove_again(bool exported, unsigned number) {
  uint8_t flag = 0;
  return exported ? zrcfg_exportdelobject(instance_url(number).c_str(), ZRCFG_WAIT_FOREVER, 0,
                                          &flag) == 0
                  : zrcfg_delobject(kTableUrl, static_cast<int>(number), ZRCFG_WAIT_FOREVER) == 0;
}

// Creates and marks instances; deletes some of those whose creation has come back, when they still
// bear its mark. What it keeps is told through the pipe.
int add_and_delete(int self, int pipe) {
  const std::string mark = "of process " + std::to_string(self);
  std::vector<unsigned> own;
  for (int round = 0; round < kRounds; ++round) {
    const unsigned number = create(false, 0);
    if (number == 0 || zrcfg_setsingleparamval(instance_url(number).c_str(), "A", mark.c_str(),
                                               ZRCFG_WAIT_FOREVER) != 0) {
      return 1;
    }
    own.push_back(number);
    if (round % 3 != 2) {
      continue;
    }
    const unsigned victim = own[own.size() / 2];
    char value[256] = "";
    if (zrcfg_getsingleparamval(instance_url(victim).c_str(), "A", value, ZRCFG_WAIT_FOREVER) !=
            0 ||
        value != mark) {
      return 2;
    }
    if (!remove_again(round % 2 != 0, victim)) {
      return 3;
    }
    own.erase(own.begin() + static_cast<std::ptrdiff_t>(own.size() / 2));
  }
  for (const unsigned number : own) {
    const auto byte = static_cast<unsigned char>(number);
    if (write(pipe, &byte, 1) != 1) {
      return 4;
    }
  }
  return 0;
}

TEST_F(ConcurrencyTest, NumbersAreDistinctAndAllAreCounted) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    children.push_back(start([i, &ends] { return add_and_delete(i, ends[1]); }));
  }
  for (const pid_t child : children) {
    EXPECT_EQ(result_of(child), 0);
  }
  close(ends[1]);
  std::set<int> reported;
  size_t reports = 0;
  unsigned char byte = 0;
  while (read(ends[0], &byte, 1) == 1) {
    reported.insert(byte);
    ++reports;
  }
  close(ends[0]);
  EXPECT_EQ(reports, static_cast<size_t>(kProcesses * (kRounds - kRounds / 3)));
  EXPECT_EQ(reported.size(), reports) << "a number was given twice";
  EXPECT_EQ(instances(), reported);
  EXPECT_EQ(counter(), static_cast<int>(reports));
  EXPECT_EQ(relative_tree("0"), template_);
  for (const int number : reported) {
    Tree tree = relative_tree(std::to_string(number));
    const std::string file = tree["/property.conf"];
    EXPECT_NE(file.find("of process "), std::string::npos);
    tree["/property.conf"] = template_["/property.conf"];
    EXPECT_EQ(tree, template_);
  }
}

// Adds and deletes for ever, by its own numbers.
[[noreturn]] void churn(unsigned first, bool exported) {
  for (;;) {
    const unsigned number = create(exported, first);
    if (number == 0 || !remove_again(exported, number)) {
      _exit(1);
    }
  }
}

TEST_F(ConcurrencyTest, ReaderUnderTheLockSeesAWholeInstanceOrNone) {
  std::vector<pid_t> children;
  for (unsigned i = 0; i < 3; ++i) {
    // The exporting one keeps to a number that the others never reach.
    children.push_back(start([i]() -> int { churn(100, i == 0); }));
  }
  const Clock::time_point deadline = Clock::now() + std::chrono::seconds(8);
  std::set<int> last;
  int changes = 0;
  for (int looks = 0; changes < 25 && Clock::now() < deadline && !HasFailure(); ++looks) {
    int fd = -1;
    ASSERT_EQ(zrcfg_lockurl("Gateway.Table.0.", &fd, ZRCFG_WAIT_FOREVER, looks % 2 == 0 ? 0 : 1),
              0u);
    const std::set<int> seen = instances();
    for (const int number : seen) {
      EXPECT_EQ(relative_tree(std::to_string(number)), template_) << number;
    }
    EXPECT_EQ(zrcfg_releaselock(fd), 0);
    changes += seen != last ? 1 : 0;
    last = seen;
  }
  for (const pid_t child : children) {
    kill(child, SIGKILL);
  }
  for (const pid_t child : children) {
    EXPECT_EQ(result_of(child), -1) << "a process failed";
  }
  EXPECT_GE(changes, 5) << "the processes hardly met";
}

class KilledProcessTest : public ConcurrencyTest, public ::testing::WithParamInterface<bool> {
 protected:
  // An instance of a killed creation or deletion holds a part of the template.
  void expect_part_of_template(int number) {
    for (const auto &[path, entry] : relative_tree(std::to_string(number))) {
      ASSERT_EQ(template_.count(path), 1u) << path;
      EXPECT_EQ(template_[path].compare(0, entry.size(), entry), 0) << path;
    }
  }
  void expect_sound_after(int kills) {
    EXPECT_TRUE(exclusively_lockable(kTemplateLock));
    EXPECT_TRUE(exclusively_lockable(kParentLock));
    EXPECT_EQ(relative_tree("0"), template_);
    int partial = 0;
    for (const int number : instances()) {
      if (relative_tree(std::to_string(number)) != template_) {
        ++partial;
        expect_part_of_template(number);
      }
    }
    EXPECT_LE(partial, kills);
    EXPECT_LE(std::abs(counter() - static_cast<int>(instances().size())), kills);
    char value[256] = "";
    EXPECT_EQ(zrcfg_getsingleparamval("Gateway.", "FixedNumberOfEntries", value, 0), 0u);
    EXPECT_STREQ(value, "1") << "the parent's other values";
  }
  // The others go on at once.
  void expect_others_go_on() {
    const int before = counter();
    uint32_t index = 0;
    ASSERT_EQ(zrcfg_addobject(kTableUrl, &index, 0), 0u);
    EXPECT_EQ(relative_tree(std::to_string(index)), template_);
    EXPECT_EQ(counter(), before + 1);
    EXPECT_EQ(zrcfg_delobject(kTableUrl, static_cast<int>(index), 0), 0u);
    EXPECT_EQ(counter(), before);
    for (const int number : instances()) {
      EXPECT_EQ(zrcfg_delobject(kTableUrl, number, 0), 0u) << "remains can be deleted";
    }
    EXPECT_EQ(instances(), std::set<int>());
  }
};

TEST_P(KilledProcessTest, KilledAtAnyMomentBlocksNobody) {
  for (unsigned seed = 1; seed <= kKills && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    empty_table();
    const bool exported = GetParam();
    const pid_t child = start([exported]() -> int { churn(1, exported); });
    std::this_thread::sleep_for(std::chrono::microseconds(random() % kLongestLife));
    kill(child, SIGKILL);
    EXPECT_EQ(result_of(child), -1) << "the process failed";
    expect_sound_after(1);
    expect_others_go_on();
  }
}

TEST_P(KilledProcessTest, SurvivorsFinishWhileOthersAreKilled) {
  std::mt19937 random(7);
  const bool exported = GetParam();
  // Numbers of their own for the exporting ones: 150 and on are never the lowest free ones.
  std::vector<pid_t> victims;
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t survivor = start([&ends] { return add_and_delete(0, ends[1]); });
  close(ends[1]);
  for (unsigned i = 0; i < 10; ++i) {
    const pid_t victim = start([exported, i]() -> int { churn(150 + i, exported); });
    std::this_thread::sleep_for(std::chrono::microseconds(random() % kLongestLife));
    kill(victim, SIGKILL);
    EXPECT_EQ(result_of(victim), -1) << "the process failed";
  }
  EXPECT_EQ(result_of(survivor), 0);
  unsigned char byte = 0;
  int kept = 0;
  while (read(ends[0], &byte, 1) == 1) {
    EXPECT_TRUE(store_entry_exists(kTable + std::to_string(byte) + "/property.conf"));
    ++kept;
  }
  close(ends[0]);
  EXPECT_EQ(kept, kRounds - kRounds / 3);
  EXPECT_TRUE(exclusively_lockable(kTemplateLock));
  EXPECT_TRUE(exclusively_lockable(kParentLock));
  EXPECT_LE(std::abs(counter() - static_cast<int>(instances().size())), 10);
  EXPECT_EQ(relative_tree("0"), template_);
}

INSTANTIATE_TEST_SUITE_P(Ways, KilledProcessTest, ::testing::Bool(), [](const auto &row) {
  return std::string(row.param ? "Exported" : "Ordinary");
});

}  // namespace
}  // namespace zrcfg_test
