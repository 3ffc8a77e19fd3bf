// Whether a snapshot can be restored, and what that would change.
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "core/store_file.h"
#include "tools/zrcfg/input_file.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/difference.h"
#include "tools/zrcfg/snapshot/restore.h"
#include "tools/zrcfg/snapshot/snapshot_file.h"

namespace zrcfg_tool {
namespace {

bool other_model(const char *url) {
  complain("%s: its parameters, or fixed fields of its header, are not those of the snapshot", url);
  return false;
}

bool foreign(const RestoreStep &step) {
  if (step.now.empty()) {
    complain(
        "%s: is in the snapshot only: the store is of another model, or has lost the directory",
        step.url.text);
  } else {
    complain("%s: is in the store only: they are of different models", step.url.text);
  }
  return false;
}

// Whether a file of the store is of the model of an object of the snapshot. One whose header or
// records are damaged does not tell, and takes over all of the snapshot's.
bool file_fits(const ObjectSet &wanted, size_t i, const char *bytes, size_t size) {
  PropertyView snapshot;
  PropertyView store;
  return !view_structure(bytes, size, store) ||
         (view_structure(wanted.bytes(i), wanted.size(i), snapshot) && same_model(snapshot, store));
}

bool print_change(const Difference &difference, void *) {
  print_difference(difference, false);
  return true;
}

}  // namespace

bool Restore::load(const char *name) {
  Bytes file;
  return read_input_file(name, file) && decode_snapshot(file, name, scope_, wanted_);
}

bool Restore::check() {
  if (!root_.open(nullptr) ||
      !now_.read(root_, scope_.text, options_.timeout, Accepted::kAny, &wanted_)) {
    return false;
  }
  if (!has_any_root()) {
    complain("%s has no object of the snapshot: it is restored into a store of its model",
             zrcfg::kStoreRoot);
    return false;
  }
  bool all_ok = true;
  RestoreSteps all = steps();
  for (RestoreStep step; all.next(step);) {
    if (step.kind == StepKind::kForeign) {
      all_ok = (has_lost_file(step) || foreign(step)) && all_ok;
    } else if (step.kind == StepKind::kWrite) {
      all_ok = check_object(step) && all_ok;
    } else if (step.kind == StepKind::kCreate) {
      all_ok = check_instance(step) && all_ok;
    }
  }
  return all_ok;
}

// Whether a root that the snapshot has objects of is there at all.
bool Restore::has_any_root() const {
  for (size_t i = 0; i < wanted_.count(); ++i) {
    char name[ZRCFG_URL_SIZE];
    struct stat status;
    copy_root_name(wanted_.url(i), name);
    if (fstatat(root_.fd, name, &status, 0) == 0) {
      return true;
    }
  }
  return false;
}

// Whether the object of the snapshot is a directory of the store that has no property file.
bool Restore::has_lost_file(const RestoreStep &step) const {
  zrcfg_store::ObjectPlace place;
  (void)place.set_url(step.url.text);  // Checked with its snapshot.
  char path[zrcfg::kFilePathSize];
  property_path(place, path);
  struct stat status;
  return step.now.empty() && fstatat(root_.fd, place.path, &status, 0) == 0 &&
         fstatat(root_.fd, path, &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
}

bool Restore::check_object(const RestoreStep &step) const {
  const ObjectSet &now = now_.objects();
  return file_fits(wanted_, step.wanted.first, now.bytes(step.now.first),
                   now.size(step.now.first)) ||
         other_model(step.url.text);
}

// The instance is of the store's model when its objects are those that a copy of the template, or
// of another instance of a fixed table, would have.
bool Restore::check_instance(const RestoreStep &step) {
  bool all_ok = true;
  for (size_t i = step.wanted.first; i < step.wanted.end; ++i) {
    if (is_instance_url(wanted_.url(i)) && !view_.create_instance(wanted_.url(i))) {
      return false;
    }
    all_ok = check_copied_object(i) && all_ok;
  }
  return all_ok;
}

bool Restore::check_copied_object(size_t wanted) {
  const char *const url = wanted_.url(wanted);
  ObjectUrl real;
  if (view_.resolve(url, real) != ViewResult::kThere) {
    complain("%s: the store has no instance that it could be a copy of", url);
    return false;
  }
  zrcfg_store::ObjectPlace place;
  (void)place.set_url(real.text);  // It is a URL of the store.
  Bytes file;
  const ReadResult result = read_object_file(root_, place, options_.timeout, file);
  const size_t lost = result == ReadResult::kMissing ? wanted_.find(real.text) : ObjectSet::kNone;
  if (lost != ObjectSet::kNone) {
    // It is restored before its copies.
    return file_fits(wanted_, wanted, wanted_.bytes(lost), wanted_.size(lost)) || other_model(url);
  }
  if (result != ReadResult::kRead) {
    report_unread(real.text, result);
    return false;
  }
  return file_fits(wanted_, wanted, file.at, file.size) || other_model(url);
}

void Restore::print_changes() const {
  const DifferenceSink sink = {print_change, nullptr};
  const ObjectSet &now = now_.objects();
  RestoreSteps all = steps();
  for (RestoreStep step; all.next(step);) {
    PropertyView before;
    PropertyView after;
    if (step.kind == StepKind::kWrite) {
      const size_t i = step.now.first;
      (void)view_property_file(wanted_.bytes(step.wanted.first), wanted_.size(step.wanted.first),
                               after);  // Held when it was loaded.
      const char *const damage = view_property_file(now.bytes(i), now.size(i), before);
      if (damage != nullptr) {
        complain("%s: damaged: %s", step.url.text, damage);
      } else {
        (void)compare_objects(step.url.text, before, after, Compared::kAll, sink);
      }
      continue;
    }
    for (size_t i = step.now.first; i < step.now.end; ++i) {
      if (view_property_file(now.bytes(i), now.size(i), before) == nullptr) {
        (void)tell_removed(now.url(i), before, sink);
      }
    }
    for (size_t i = step.wanted.first; i < step.wanted.end; ++i) {
      (void)view_property_file(wanted_.bytes(i), wanted_.size(i), after);
      (void)tell_added(wanted_.url(i), after, sink);
    }
  }
}

}  // namespace zrcfg_tool
