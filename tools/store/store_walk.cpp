// All objects of a store, templates and instances, parents first.
#include "tools/store/store_walk.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "core/property_file.h"
#include "tools/store/directory_names.h"

namespace zrcfg_store {
namespace {

bool has_property_file(int root_fd, const char *dir) {
  char path[2 * zrcfg::kFilePathSize];
  const int length = snprintf(path, sizeof path, "%s/%s", dir, zrcfg::kPropertyFileName);
  return length > 0 && static_cast<size_t>(length) < sizeof path &&
         faccessat(root_fd, path, F_OK, 0) == 0;
}

void tell(const WalkCalls &calls, const ObjectPlace &place, const char *name, int error) {
  if (calls.problem != nullptr) {
    calls.problem({place, name, error}, calls.context);
  }
}

bool walk_below(int root_fd, ObjectPlace &place, const WalkCalls &calls);

bool walk_into(int root_fd, ObjectPlace &place, const WalkCalls &calls) {
  const Walk answer = calls.object(place, calls.context);
  return answer == Walk::kGoOn ? walk_below(root_fd, place, calls) : answer == Walk::kSkipBelow;
}

// The length of a path bounds the recursion.
bool walk_below(int root_fd, ObjectPlace &place, const WalkCalls &calls) {
  DirectoryNames names(root_fd, place.path);
  const size_t length = place.length;
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    if (entry->kind != EntryKind::kDirectory && (length > 0 || entry->kind != EntryKind::kLink)) {
      continue;
    }
    if (length == 0 && !is_root_object(root_fd, entry->name)) {
      continue;
    }
    if (!place.enter(entry->name)) {
      tell(calls, place, entry->name, strchr(entry->name, '.') != nullptr ? EINVAL : ENAMETOOLONG);
      continue;
    }
    const bool go_on = walk_into(root_fd, place, calls);
    place.cut(length);
    if (!go_on) {
      return false;
    }
  }
  if (names.error() != 0 && names.error() != ENOENT) {
    tell(calls, place, nullptr, names.error());
  }
  return true;
}

}  // namespace

bool is_root_object(int root_fd, const char *name) {
  if (has_property_file(root_fd, name)) {
    return true;
  }
  char dir[zrcfg::kFilePathSize];
  const int length = snprintf(dir, sizeof dir, "%s/", name);
  if (length < 0 || static_cast<size_t>(length) >= sizeof dir) {
    return false;
  }
  DirectoryNames names(root_fd, dir);
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    char child[2 * zrcfg::kFilePathSize];
    (void)snprintf(child, sizeof child, "%s%s", dir, entry->name);  // Fits: names have 255 bytes.
    if (entry->kind == EntryKind::kDirectory && has_property_file(root_fd, child)) {
      return true;
    }
  }
  return false;
}

bool walk_objects(int root_fd, const ObjectPlace &start, const WalkCalls &calls) {
  ObjectPlace place = start;
  return start.length == 0 ? walk_below(root_fd, place, calls) : walk_into(root_fd, place, calls);
}

}  // namespace zrcfg_store
