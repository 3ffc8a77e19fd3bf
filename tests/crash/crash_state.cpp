// Tells which state of docs/crash.md an interrupted change has left.
#include "tests/crash/crash_state.h"

#include <stdlib.h>

#include <algorithm>
#include <set>

namespace zrcfg_test {
namespace {

std::string entry_of(const Tree &tree, const std::string &path) {
  const auto found = tree.find(path);
  return found == tree.end() ? "" : found->second;
}

// Whether `found` begins as the new bytes do and goes on as the old ones.
bool is_beginning_written(const std::string &old_bytes, const std::string &new_bytes,
                          const std::string &found) {
  const size_t shared = std::min(new_bytes.size(), found.size());
  const auto differs =
      std::mismatch(found.begin(), found.begin() + static_cast<long>(shared), new_bytes.begin());
  const size_t border = static_cast<size_t>(differs.first - found.begin());
  const size_t size = std::max(old_bytes.size(), border);
  return found.size() == size && border < size &&
         found.compare(border, std::string::npos, old_bytes, border, std::string::npos) == 0;
}

// Whether a page of `found` is that of `version`; what lies behind the version's end is zero.
bool is_page_of(const std::string &version, const std::string &found, size_t begin, bool &zeros) {
  const size_t end = std::min(begin + kPage, found.size());
  const size_t known = std::max(begin, std::min(end, version.size()));
  if (found.compare(begin, known - begin, version, std::min(begin, version.size()),
                    known - begin) != 0) {
    return false;
  }
  const std::string rest = found.substr(known, end - known);
  zeros = !rest.empty();
  return rest.find_first_not_of('\0') == std::string::npos;
}

// The state of a file of which each page is that of before or after, and so is its size.
std::string state_of_pages(const std::string &old_bytes, const std::string &new_bytes,
                           const std::string &found, const char *mixed) {
  if (found.size() != old_bytes.size() && found.size() != new_bytes.size()) {
    return kUnknownState;
  }
  bool any_zeros = false;
  const std::string &longer = old_bytes.size() > new_bytes.size() ? old_bytes : new_bytes;
  bool last_is_cut = false;
  for (size_t begin = 0; begin < found.size(); begin += kPage) {
    bool zeros = false;
    bool known = is_page_of(new_bytes, found, begin, zeros) && !zeros;
    known = known || (is_page_of(old_bytes, found, begin, zeros) && !zeros);
    if (!known && !is_page_of(old_bytes, found, begin, zeros) &&
        !is_page_of(new_bytes, found, begin, zeros)) {
      return kUnknownState;
    }
    any_zeros = any_zeros || zeros;
    bool ignored = false;
    last_is_cut = found.size() < longer.size() && is_page_of(longer, found, begin, ignored);
  }
  return any_zeros ? "zeros" : last_is_cut ? "cut" : mixed;
}

std::string state_of_file(const ChangingCall &call, const std::string &old_bytes,
                          const std::string &new_bytes, const std::string &found) {
  if (found == new_bytes || found == old_bytes) {
    return found == new_bytes ? "new" : "old";
  }
  if (is_tail(old_bytes, new_bytes, found)) {
    return "tail";
  }
  const char *const mixed = sets_attributes(call) ? "mixed" : "torn";
  return is_beginning_written(old_bytes, new_bytes, found)
             ? mixed
             : state_of_pages(old_bytes, new_bytes, found, mixed);
}

// Whether an entry is that of the tree, or its file cut short or with zeros for bytes.
bool is_damaged(const Tree &whole, const std::string &path, const std::string &entry) {
  const std::string known = entry_of(whole, path);
  if (entry.size() > known.size()) {
    return false;
  }
  return std::equal(entry.begin(), entry.end(), known.begin(),
                    [](char byte, char meant) { return byte == meant || byte == '\0'; });
}

// How many instances the counter has more than before.
int counted_more(const Tree &before, const Tree &found) {
  const auto counter = [](const Tree &tree) {
    static const std::string kLineBefore = "the gateway\n";
    const std::string bytes = file_bytes(tree, kParentLock);
    return atoi(bytes.c_str() + bytes.find(kLineBefore) + kLineBefore.size());
  };
  return counter(found) - counter(before);
}

// The states of a place in a table, and of the table's counter.
std::string state_of_instance(const ChangingCall &call, const Tree &before, const Tree &after,
                              const Tree &found) {
  const Tree old_place = subtree(before, call.instance);
  const Tree new_place = subtree(after, call.instance);
  const Tree place = subtree(found, call.instance);
  const int counted = (old_place.empty() ? 0 : 1) + counted_more(before, found);
  if (without(without(found, call.instance), kParentLock) !=
          without(without(before, call.instance), kParentLock) ||
      counted < 0 || counted > 1) {
    return kUnknownState;
  }
  const bool is_static = call.group == group::kAddStatic || call.group == group::kDeleteStatic;
  if (place.empty()) {
    return counted == 1 ? "overcounted" : call.group == group::kReplace ? "gap" : "new";
  }
  if (place == old_place || place == new_place) {
    return counted == 0 ? "uncounted" : place == new_place ? "new" : "old";
  }
  for (const auto &[path, entry] : place) {
    if (!is_damaged(before, path, entry) && !is_damaged(after, path, entry)) {
      return kUnknownState;
    }
  }
  if (is_static) {
    return old_place.empty() ? "static part" : "static remains";
  }
  return counted == 1 ? "remains" : "part";
}

// Whatever is missing, or there beyond what was before, belongs to the call.
std::string state_of_files(const Tree &before, const Tree &after, const Tree &found) {
  const std::vector<std::string> meant = changed_paths(before, after);
  for (const std::string &path : changed_paths(before, found)) {
    const std::string entry = entry_of(found, path);
    if (!std::binary_search(meant.begin(), meant.end(), path) ||
        !(is_damaged(before, path, entry) || is_damaged(after, path, entry))) {
      return kUnknownState;
    }
  }
  return "partly";
}

}  // namespace

bool starts_with(const std::string &text, const std::string &beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

std::string file_bytes(const Tree &tree, const std::string &path) {
  return entry_of(tree, path).substr(file_entry("").size());
}

std::vector<std::string> changed_paths(const Tree &one, const Tree &other) {
  std::set<std::string> paths;
  for (const Tree *tree : {&one, &other}) {
    for (const auto &[path, entry] : *tree) {
      if (entry_of(one, path) != entry_of(other, path)) {
        paths.insert(path);
      }
    }
  }
  return {paths.begin(), paths.end()};
}

bool is_tail(const std::string &old_bytes, const std::string &new_bytes, const std::string &found) {
  return new_bytes.size() < old_bytes.size() && found.size() == old_bytes.size() &&
         starts_with(found, new_bytes) &&
         found.compare(new_bytes.size(), std::string::npos, old_bytes, new_bytes.size(),
                       std::string::npos) == 0;
}

std::string state_of(const ChangingCall &call, const Tree &before, const Tree &after,
                     const Tree &found) {
  if (found == before || found == after) {
    return found == after ? "new" : "old";
  }
  if (!call.instance.empty()) {
    const std::string state = state_of_instance(call, before, after, found);
    // A counter that becomes shorter is whole before it is cut.
    const bool tail = is_tail(file_bytes(before, kParentLock), file_bytes(after, kParentLock),
                              file_bytes(found, kParentLock));
    return state == "new" && tail ? "tail" : state;
  }
  if (call.file.empty()) {
    return state_of_files(before, after, found);
  }
  const bool only_file = changed_paths(before, found) == std::vector<std::string>{call.file};
  return only_file ? state_of_file(call, file_bytes(before, call.file),
                                   file_bytes(after, call.file), file_bytes(found, call.file))
                   : kUnknownState;
}

}  // namespace zrcfg_test
