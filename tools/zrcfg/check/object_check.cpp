// check: one object under its lock, and its repair.
#include <string.h>

#include "tools/zrcfg/check/check.h"
#include "zrcfg.h"

namespace zrcfg_tool {

using zrcfg_store::ObjectPlace;

namespace {

enum class Outcome { kBusy, kGone, kDone };

void find_problems(Check &check, const Subject &subject) {
  if (find_file_problems(check, subject.place, subject.object)) {
    find_name_problems(check, subject.place, subject.object);
    find_value_problems(check, subject.place, subject.object);
  }
  find_template_problems(check, subject);
}

// Looks at the object under a lock of its own, and repairs it if it is the writers'.
Outcome look_at(Check &check, const ObjectPlace &place, uint32_t lock_type,
                zrcfg::ObjectHeader &header, bool &has_header) {
  const ScopedLock lock(check.locks, place, lock_type);
  if (!lock.ok()) {
    return Outcome::kBusy;
  }
  if (!directory_exists(check.root_fd, place.path)) {
    return Outcome::kGone;  // It was deleted a moment ago.
  }
  Subject subject = {place, {}, false, {}, {}};
  char path[zrcfg::kFilePathSize];
  property_path(place, path);
  has_header = subject.object.load(check.root_fd, path) &&
               (subject.object.damage() & zrcfg_store::kShortFile) == 0;
  if (has_header) {
    header = subject.object.header();
  }
  subject.has_template = find_template(check.root_fd, place, subject.template_place);
  if (subject.has_template) {
    property_path(subject.template_place, path);
    (void)subject.template_object.load(check.root_fd, path);  // It is checked on its own.
  }
  find_problems(check, subject);
  if (lock_type == ZRCFG_LOCK_EXCLUSIVE &&
      subject.object.state() == zrcfg_store::FileState::kRead) {
    repair_values(check, subject);
  }
  return Outcome::kDone;
}

}  // namespace

bool check_object(Check &check, const ObjectPlace &place, zrcfg::ObjectHeader &header) {
  bool has_header = false;
  if (look_at(check, place, ZRCFG_LOCK_SHARED, header, has_header) != Outcome::kDone) {
    return false;
  }
  if (check.repair && check.findings.has_repairable()) {
    // The lock is not kept meanwhile, so all is read anew. When it is not to be had, what was found
    // stays.
    Findings &findings = check.findings;
    findings.put_aside();
    const Outcome outcome = look_at(check, place, ZRCFG_LOCK_EXCLUSIVE, header, has_header);
    findings.settle_aside(outcome == Outcome::kBusy);
  }
  check.findings.print();
  find_stray_entries(check, place);
  return has_header;
}

}  // namespace zrcfg_tool
