// What may be on the medium when the power fails in a change of which nothing was synced.
#include "tests/crash/power_loss.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/crash/crash_state.h"

namespace zrcfg_test {
namespace {

// A page of a version of a file that has another size: behind the version's end there are zeros.
std::string page_of(const std::string &bytes, size_t begin, size_t size) {
  std::string page = begin < bytes.size() ? bytes.substr(begin, size) : "";
  page.resize(size, '\0');
  return page;
}

// A file of a size, with the pages for which `is_new` answers true taken from the new version.
template <typename IsNew>
std::string mix(const std::string &old_bytes, const std::string &new_bytes, size_t size,
                IsNew is_new) {
  std::string bytes;
  for (size_t begin = 0; begin < size; begin += kPage) {
    bytes += page_of(is_new(begin / kPage) ? new_bytes : old_bytes, begin,
                     std::min(kPage, size - begin));
  }
  return bytes;
}

// What a file that was changed in place may hold: of the pages a beginning, an end, one alone or
// all but one have reached the medium; the size has or has not.
std::set<std::string> versions_of(const std::string &old_bytes, const std::string &new_bytes) {
  std::set<std::string> versions;
  const size_t pages = std::max(old_bytes.size(), new_bytes.size()) / kPage + 1;
  for (const size_t size : {old_bytes.size(), new_bytes.size()}) {
    for (size_t border = 0; border <= pages; ++border) {
      versions.insert(mix(old_bytes, new_bytes, size, [&](size_t page) { return page < border; }));
      versions.insert(mix(old_bytes, new_bytes, size, [&](size_t page) { return page >= border; }));
      versions.insert(mix(old_bytes, new_bytes, size, [&](size_t page) { return page == border; }));
      versions.insert(mix(old_bytes, new_bytes, size, [&](size_t page) { return page != border; }));
    }
  }
  return versions;
}

bool is_file(const std::string &entry) {
  return starts_with(entry, file_entry(""));
}

// A file that the call has made, as it may be found: empty, in part, of its size without its bytes.
std::vector<std::string> losses_of_new_file(const std::string &bytes) {
  const size_t half = bytes.size() / 2 / kPage * kPage;
  return {"", bytes.substr(0, half), bytes.substr(0, half) + std::string(bytes.size() - half, '\0'),
          std::string(bytes.size(), '\0')};
}

// A tree with one of its new files, or all of them, not as they were written.
void add_lost_files(const Tree &before, const Tree &stage, std::vector<Tree> &losses) {
  Tree all_empty = stage;
  Tree all_zero = stage;
  for (const auto &[path, entry] : stage) {
    if (!is_file(entry) || before.count(path) != 0) {
      continue;
    }
    const std::string bytes = file_bytes(stage, path);
    for (const std::string &lost : losses_of_new_file(bytes)) {
      losses.push_back(stage);
      losses.back()[path] = file_entry(lost);
    }
    all_empty[path] = file_entry("");
    all_zero[path] = file_entry(std::string(bytes.size(), '\0'));
  }
  losses.push_back(all_empty);
  losses.push_back(all_zero);
}

// The contents that a file has had.
std::set<std::string> entries_over_time(const std::vector<Tree> &stages, const std::string &path) {
  std::set<std::string> entries;
  for (const Tree &stage : stages) {
    if (stage.count(path) != 0) {
      entries.insert(stage.at(path));
    }
  }
  return entries;
}

}  // namespace

std::vector<Tree> possible_losses(const ChangingCall &call, const std::vector<Tree> &stages) {
  std::vector<Tree> losses;
  const Tree &before = stages.front();
  if (!call.file.empty()) {
    for (const std::string &bytes :
         versions_of(file_bytes(before, call.file), file_bytes(stages.back(), call.file))) {
      losses.push_back(before);
      losses.back()[call.file] = file_entry(bytes);
    }
    losses.insert(losses.end(), stages.begin(), stages.end());
    return losses;
  }
  for (const Tree &stage : stages) {
    std::vector<Tree> of_stage = {stage};
    add_lost_files(before, stage, of_stage);
    // The counter's file is older than the call: its bytes come sooner or later than the names.
    for (Tree &loss : of_stage) {
      for (const std::string &entry : entries_over_time(stages, kParentLock)) {
        loss[kParentLock] = entry;
        losses.push_back(loss);
      }
    }
  }
  return losses;
}

void write_tree(const Tree &tree) {
  for (const auto &entry : std::filesystem::directory_iterator("/var")) {
    std::filesystem::remove_all(entry.path());
  }
  for (const auto &[path, entry] : tree) {
    if (is_file(entry)) {
      write_store_file(path, entry.substr(file_entry("").size()));
    } else {
      make_store_dir(path + "/");
    }
  }
}

}  // namespace zrcfg_test
