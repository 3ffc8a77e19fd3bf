// The fixture of every test that touches the store: an empty one, and nothing left open or locked.
#include "support/store_fixture.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

#include "support/log_capture.h"

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

// Every machine has these in its own /var.
bool is_private_store() {
  for (const char *path : {"/var/lib", "/var/cache", "/var/log", "/var/spool"}) {
    if (fs::exists(fs::symlink_status(path))) {
      return false;
    }
  }
  return fs::is_directory("/var");
}

void empty_store() {
  for (const fs::directory_entry &entry : fs::directory_iterator("/var")) {
    fs::remove_all(entry.path());
  }
}

}  // namespace

std::map<int, std::string> open_descriptors() {
  std::map<int, std::string> found;
  for (const fs::directory_entry &entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code error;
    const fs::path target = fs::read_symlink(entry.path(), error);
    const int fd = std::stoi(entry.path().filename().string());
    // The listing's own descriptor is seen too; it is closed when the loop ends.
    found[fd] = error ? "?" : target.string();
  }
  for (auto it = found.begin(); it != found.end();) {
    it = fcntl(it->first, F_GETFD) < 0 ? found.erase(it) : std::next(it);
  }
  return found;
}

std::vector<std::string> locked_property_files() {
  std::vector<std::string> locked;
  const auto options = fs::directory_options::skip_permission_denied;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator("/var", options)) {
    if (entry.path().filename() != "property.conf" || !entry.is_regular_file()) {
      continue;
    }
    const int fd = open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
      continue;
    }
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
      locked.push_back(entry.path().string());
    }
    close(fd);
  }
  return locked;
}

void StoreTest::SetUp() {
  if (!is_private_store()) {
    GTEST_FAIL() << "/var is the machine's own; run this through scripts/with-store --temp";
  }
  empty_store();
  clear_log();
  descriptors_ = open_descriptors();
}

void StoreTest::TearDown() {
  if (!is_private_store()) {
    return;
  }
  EXPECT_EQ(open_descriptors(), descriptors_) << "a descriptor was left open";
  EXPECT_EQ(locked_property_files(), std::vector<std::string>()) << "a lock was left";
  empty_store();
}

}  // namespace zrcfg_test
