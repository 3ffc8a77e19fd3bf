// Lists made while another process adds, removes, hides and rewrites what they list.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/enum/enum_support.h"

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

constexpr int kInstances = 8;
constexpr int kRounds = 150;

// Another process that changes the tree until it is killed.
class Changer {
 public:
  explicit Changer(void (*change)(unsigned round)) : child_(fork()) {
    if (child_ == 0) {
      for (unsigned round = 0;; ++round) {
        try {
          change(round);
        } catch (const std::exception &) {
          // Being in the reader's way is the purpose; it is tried again.
        }
      }
    }
  }
  ~Changer() {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  Changer(const Changer &) = delete;
  Changer &operator=(const Changer &) = delete;

 private:
  pid_t child_;
};

void come_and_go(unsigned round) {
  const std::string dir = "T/" + std::to_string(1 + round % kInstances) + "/";
  if (fs::exists(store_path(dir))) {
    fs::remove_all(store_path(dir));
    return;
  }
  write_property(dir, object_file(1, {{"P", 1}, {"Q", 2}}));
  write_property(dir + "Sub/", object_file(0, {{"R", 3}}));
}

// Under the table's lock, as writers of the library do it.
void rewrite_header(unsigned round) {
  const int lock = open(property_path("T/0/").c_str(), O_RDONLY | O_CLOEXEC);
  flock(lock, LOCK_EX);
  PropertyFile file = object_file(static_cast<uint8_t>(round % 4), {{"P", 1}});
  file.header.hide = round % 2;
  write_property("T/1/", file);
  close(lock);
}

class ChangingTreeTest : public EnumTest {
 protected:
  void SetUp() override {
    EnumTest::SetUp();
    if (!HasFatalFailure()) {
      write_property("T/", object_file(1));
      write_property("T/0/", object_file(1));
    }
  }
};

// Every name that there ever is, in the order of the walk.
std::vector<std::string> possible_names() {
  std::vector<std::string> names = {"T."};
  for (int i = 1; i <= kInstances; ++i) {
    const std::string url = "T." + std::to_string(i) + ".";
    for (const char *end : {"", "P", "Q", "Sub.", "Sub.R"}) {
      names.push_back(url + end);
    }
  }
  return names;
}

void expect_in_order(const std::vector<std::string> &names,
                     const std::vector<std::string> &possible) {
  size_t next = 0;
  for (const std::string &name : names) {
    while (next < possible.size() && possible[next] != name) {
      ++next;
    }
    ASSERT_LT(next, possible.size()) << name << " is unknown, doubled or misplaced";
    ++next;
  }
}

TEST_F(ChangingTreeTest, ListsHoldOnlyWhatThereIsInItsOrder) {
  const std::vector<std::string> possible = possible_names();
  std::set<size_t> sizes;
  {
    const Changer changer(come_and_go);
    for (int round = 0; round < kRounds && !HasFatalFailure(); ++round) {
      const NodeList walk = list_all("T.", 1, -1);
      ASSERT_EQ(walk.result, 0u);
      ASSERT_FALSE(walk.nodes.empty());
      EXPECT_EQ(walk.nodes.front(), (Node{"T.", 1}));
      expect_in_order(names_of(walk.nodes), possible);
      sizes.insert(walk.nodes.size());
      const NodeList flat = list_all("T.", 0, -1);
      ASSERT_EQ(flat.result, 0u);
      expect_in_order(names_of(flat.nodes), possible);
      const NodeList children = list_children("T.", -1);
      ASSERT_EQ(children.result, 0u);
      EXPECT_TRUE(children.tail_is_last);
      EXPECT_LE(list_names("T.").names.size(), static_cast<size_t>(kInstances));
    }
  }
  EXPECT_GT(sizes.size(), 1u) << "the tree never changed";
}

TEST_F(ChangingTreeTest, ObjectWrittenUnderItsLockIsSeenWhole) {
  write_property("T/1/", object_file(0, {{"P", 1}}));
  const Changer changer(rewrite_header);
  for (int round = 0; round < kRounds; ++round) {
    const NodeList list = list_object("T.1.", -1);
    if (list.result == 1) {
      EXPECT_FALSE(list.written);
      continue;
    }
    ASSERT_EQ(list.result, 0u);
    ASSERT_EQ(list.nodes.size(), 2u);
    EXPECT_EQ(list.nodes[0].second % 2, 0u) << "rw 1 and 3 are written with the hide bit";
    EXPECT_EQ(list.nodes[1], (Node{"T.1.P", 1}));
  }
}

}  // namespace
}  // namespace zrcfg_test
