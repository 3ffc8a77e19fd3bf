// A directory tree that appears under its name complete or not at all.
#include "tools/mkstore/atomic_tree.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "core/property_file.h"
#include "tools/mkstore/build_error.h"
#include "tools/mkstore/filter_table.h"

namespace zrcfg::mkstore {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kDirectoryMode = 0777;  // Less the user's mask, as for every new directory.
constexpr mode_t kFileMode = 0666;

std::string system_reason(const char *what) {
  return std::string(what) + ": " + std::strerror(errno);
}

std::string resolved_target(const std::string &output) {
  std::error_code error;
  fs::path path = fs::absolute(output, error).lexically_normal();
  if (!path.has_filename()) {
    path = path.parent_path();  // A trailing slash.
  }
  if (fs::exists(path, error)) {
    path = fs::canonical(path, error);
  }
  if (error || !path.has_filename()) {
    fail(output, "not a directory that can be made");
  }
  return path.string();
}

// Whether a store has such a file: property files anywhere, the filters in its root.
bool belongs_to_store(const fs::path &target, const fs::path &file) {
  return file.filename() == kPropertyFileName || file == target / kFilterFileName;
}

// A directory may be replaced when it holds nothing but directories and a store's files.
void check_replaceable(const std::string &target) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(target, error);
  if (status.type() == fs::file_type::not_found) {
    return;
  }
  if (status.type() != fs::file_type::directory) {
    fail(target, "exists and is not a directory");
  }
  for (auto entry = fs::recursive_directory_iterator(target, error);
       !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    const bool directory = entry->symlink_status().type() == fs::file_type::directory;
    const bool store_file = entry->symlink_status().type() == fs::file_type::regular &&
                            belongs_to_store(target, entry->path());
    if (!directory && !store_file) {
      fail(target, "is not empty and not a store, for it holds " + entry->path().string());
    }
  }
  if (error) {
    fail(target, "cannot be examined: " + error.message());
  }
}

void remove_tree(const std::string &path) {
  std::error_code ignored;  // Nothing better can be done about what cannot be removed.
  fs::remove_all(path, ignored);
}

// For file systems that cannot exchange: the old tree steps aside for a moment.
void replace_in_two_steps(AtomicTree &tree) {
  const std::string aside = tree.working + ".old";
  if (rename(tree.target.c_str(), aside.c_str()) != 0) {
    fail(tree.target, system_reason("cannot be replaced"));
  }
  if (rename(tree.working.c_str(), tree.target.c_str()) != 0) {
    const std::string reason = system_reason("cannot be replaced");
    (void)rename(aside.c_str(), tree.target.c_str());  // The failure is reported below either way.
    fail(tree.target, reason);
  }
  tree.working = aside;
}

}  // namespace

AtomicTree::AtomicTree(const std::string &output) : target(resolved_target(output)) {
  check_replaceable(target);
  const fs::path place(target);
  std::string name = (place.parent_path() / ("." + place.filename().string() + ".XXXXXX")).string();
  if (mkdtemp(name.data()) == nullptr) {
    fail(place.parent_path().string(), system_reason("cannot make a directory here"));
  }
  working = name;
  const mode_t mask = umask(0);
  (void)umask(mask);  // There is no other way to ask for it.
  if (chmod(working.c_str(), kDirectoryMode & ~mask) != 0) {
    const std::string reason = system_reason("cannot set access rights");
    remove_tree(working);
    fail(working, reason);
  }
}

AtomicTree::~AtomicTree() {
  if (!working.empty()) {
    remove_tree(working);
  }
}

void make_directory(const AtomicTree &tree, const std::string &path) {
  const std::string full = tree.working + "/" + path;
  if (mkdir(full.c_str(), kDirectoryMode) != 0) {
    fail(full, system_reason("cannot be made"));
  }
}

void write_file(const AtomicTree &tree, const std::string &path, const std::string &bytes) {
  const std::string full = tree.working + "/" + path;
  const int file = open(full.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode);
  if (file < 0) {
    fail(full, system_reason("cannot be made"));
  }
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t wrote = write(file, bytes.data() + done, bytes.size() - done);
    if (wrote < 0 && errno == EINTR) {
      continue;
    }
    if (wrote <= 0) {
      const std::string reason = system_reason("cannot be written");
      (void)close(file);  // The write has failed, so this result says nothing more.
      fail(full, reason);
    }
    done += static_cast<size_t>(wrote);
  }
  if (close(file) != 0) {
    fail(full, system_reason("cannot be written"));
  }
}

void publish(AtomicTree &tree) {
  check_replaceable(tree.target);
  if (rename(tree.working.c_str(), tree.target.c_str()) == 0) {
    tree.working.clear();  // The target was missing or empty.
    return;
  }
  if (errno != ENOTEMPTY && errno != EEXIST) {
    fail(tree.target, system_reason("cannot be replaced"));
  }
  if (renameat2(AT_FDCWD, tree.working.c_str(), AT_FDCWD, tree.target.c_str(), RENAME_EXCHANGE) !=
      0) {
    replace_in_two_steps(tree);
  }
  remove_tree(tree.working);  // Now the old store.
  tree.working.clear();
}

}  // namespace zrcfg::mkstore
