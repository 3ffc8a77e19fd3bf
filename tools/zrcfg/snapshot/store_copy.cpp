// A copy of a store's objects, each read under its own lock.
#include "tools/zrcfg/snapshot/store_copy.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/store/store_walk.h"
#include "tools/zrcfg/progress.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/property_view.h"

namespace zrcfg_tool {

using zrcfg_store::ObjectPlace;
using zrcfg_store::Walk;
using zrcfg_store::WalkProblem;

namespace {

constexpr int kPasses = 5;
constexpr int kLooks = 10;
constexpr useconds_t kBetweenLooks = 20'000;

bool is_of_root(const ObjectPlace &place) {
  return strchr(place.path, '/') == place.path + place.length - 1;
}

// One walk over the store.
struct CopyPass {
  const StoreRoot &root;
  int timeout;
  Accepted accepted;
  const ObjectSet *known;
  ObjectSet &objects;
  Bytes &dotted;
  Progress progress{"read", "objects"};
  Bytes file = {};
  bool failed = false;
  bool is_object = true;  // The directory that was visited last.

  // Whether a directory of the root that is no object, such as a copy of a store, is passed over.
  bool skips(const ObjectPlace &place) const {
    return !is_object && is_of_root(place) &&
           (known == nullptr || known->find(place.url) == ObjectSet::kNone);
  }

  // Whether the directory, which has no property file, is there, and below an object. Whoever makes
  // or removes an instance has files and directories apart for a moment only.
  bool has_lost_file(const ObjectPlace &place) const {
    char path[zrcfg::kFilePathSize];
    property_path(place, path);
    for (int i = 0; i < kLooks; ++i) {
      struct stat status;
      if (is_of_root(place) || fstatat(root.fd, place.path, &status, 0) != 0 ||
          fstatat(root.fd, path, &status, AT_SYMLINK_NOFOLLOW) == 0) {
        return false;
      }
      (void)usleep(kBetweenLooks);  // Ended early it is only a shorter pause.
    }
    return true;
  }

  bool take(const ObjectPlace &place) {
    // Of another store than the live one two equal passes are proof enough.
    const ReadResult result = root.live ? read_object_file(root, place, timeout, file)
                                        : read_held_file(root, place, file);
    is_object = result != ReadResult::kMissing;
    if (!is_object && accepted == Accepted::kComplete && has_lost_file(place)) {
      complain("%s: damaged: no property file", place.url);
      return false;
    }
    if (!is_object) {
      return true;  // Gone since it was listed, or a directory that is no object.
    }
    if (result != ReadResult::kRead) {
      report_unread(place.url, result);
      return false;
    }
    PropertyView view;
    const char *const damage =
        accepted != Accepted::kAny ? view_property_file(file.at, file.size, view) : nullptr;
    if (damage != nullptr) {
      complain("%s: damaged: %s", place.url, damage);
      return false;
    }
    progress.step();
    return objects.add(place.url, file.at, file.size);
  }

  static Walk on_object(const ObjectPlace &place, void *context) {
    CopyPass &pass = *static_cast<CopyPass *>(context);
    pass.failed = !pass.take(place) || pass.failed;
    return pass.failed ? Walk::kStop : pass.skips(place) ? Walk::kSkipBelow : Walk::kGoOn;
  }

  static void on_problem(const WalkProblem &problem, void *context) {
    CopyPass &pass = *static_cast<CopyPass *>(context);
    if (problem.name == nullptr) {
      complain("%s: cannot be read: %s", problem.place.url, strerror(problem.error));
      pass.failed = true;
    } else if (strchr(problem.name, '.') != nullptr) {
      pass.failed = !pass.dotted.append(problem.place.path) || !pass.dotted.append(problem.name) ||
                    !pass.dotted.append('\0') || pass.failed;
    } else {
      complain("%s%s: cannot be addressed: its path is too long", problem.place.url, problem.name);
      pass.failed = true;
    }
  }
};

}  // namespace

bool StoreCopy::read_pass(const StoreRoot &root, const char *scope, int timeout, Accepted accepted,
                          const ObjectSet *known, ObjectSet &objects) {
  objects.clear();
  dotted_.size = 0;
  CopyPass pass = {root, timeout, accepted, known, objects, dotted_};
  ObjectPlace start;
  (void)start.set_url(scope);  // An object URL fits.
  const zrcfg_store::WalkCalls calls = {CopyPass::on_object, CopyPass::on_problem, &pass};
  (void)zrcfg_store::walk_objects(root.fd, start, calls);  // Stopped by a failure only.
  return !pass.failed;
}

bool StoreCopy::read(const StoreRoot &root, const char *scope, int timeout, Accepted accepted,
                     const ObjectSet *known) {
  last_ = 0;
  if (!read_pass(root, scope, timeout, accepted, known, passes_[0])) {
    return false;
  }
  bool stayed = false;
  for (int i = 1; i < kPasses; ++i) {
    const ObjectSet &before = passes_[last_];
    last_ = 1 - last_;
    if (!read_pass(root, scope, timeout, accepted, known, passes_[last_])) {
      return false;
    }
    if (same_content(before, passes_[last_])) {
      moment_ = Moment::kOne;
      return true;
    }
    stayed = same_objects(before, passes_[last_]);
  }
  if (!stayed) {
    complain("the objects of the store keep changing");
    return false;
  }
  moment_ = Moment::kSeveral;
  return true;
}

}  // namespace zrcfg_tool
