// check: what distinguishes an object of an instance from that of its template.
#include <fcntl.h>
#include <inttypes.h>
#include <string.h>
#include <sys/stat.h>

#include "tools/store/directory_names.h"
#include "tools/zrcfg/check/check.h"
#include "tools/zrcfg/check/table_census.h"

namespace zrcfg_tool {

using zrcfg_store::DirectoryNames;
using zrcfg_store::Entry;
using zrcfg_store::ObjectPlace;
using zrcfg_store::StoredObject;

namespace {

constexpr unsigned kUnreliableRecords =
    zrcfg_store::kShortFile | zrcfg_store::kPartialRecord | zrcfg_store::kTooManyRecords;

bool has_records(const StoredObject &object) {
  return object.state() == zrcfg_store::FileState::kRead &&
         (object.damage() & kUnreliableRecords) == 0;
}

void compare_records(Check &check, const Subject &subject) {
  const StoredObject &object = subject.object;
  const StoredObject &model = subject.template_object;
  const uint32_t count = object.record_count();
  if (count != model.record_count()) {
    check.findings.add(Problem::kStructureDiffers, subject.place.url,
                       "%" PRIu32 " parameters, its template %s has %" PRIu32, count,
                       subject.template_place.url, model.record_count());
    return;
  }
  for (uint32_t i = 0; i < count; ++i) {
    const zrcfg::FieldName name(object.records()[i].name);
    const zrcfg::FieldName wanted(model.records()[i].name);
    if (strcmp(name.text, wanted.text) != 0) {
      check.findings.add(Problem::kStructureDiffers, subject.place.url,
                         "parameter %" PRIu32 " is %s, in its template %s it is %s", i + 1,
                         name.text, subject.template_place.url, wanted.text);
      return;
    }
  }
}

// Whether a directory of this name belongs to the structure; instances come and go.
bool is_structure(const char *name, bool with_template) {
  return !zrcfg_store::is_instance_name(name) || (with_template && strcmp(name, "0") == 0);
}

// Calls `missing` for each sub-object that `here` has and `there` has not.
template <typename Missing>
void for_each_missing(int root_fd, const ObjectPlace &here, const ObjectPlace &there,
                      bool with_template, Missing missing) {
  DirectoryNames names(root_fd, here.path);
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    ObjectPlace child = there;
    if (entry->kind == zrcfg_store::EntryKind::kDirectory &&
        is_structure(entry->name, with_template) && child.enter(entry->name) &&
        !directory_exists(root_fd, child.path)) {
      missing(entry->name);
    }
  }
}

}  // namespace

bool directory_exists(int root_fd, const char *path) {
  struct stat status;
  return fstatat(root_fd, path, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

bool find_template(int root_fd, const ObjectPlace &place, ObjectPlace &template_place) {
  ObjectPlace walked;
  template_place.cut(0);
  bool found = false;
  for (const char *at = place.path; *at != '\0';) {
    const char *const slash = strchr(at, '/');
    const size_t length = slash != nullptr ? static_cast<size_t>(slash - at) : strlen(at);
    char name[zrcfg::kUrlSize];
    memcpy(name, at, length);
    name[length] = '\0';
    at += length + (slash != nullptr ? 1 : 0);
    // Below an instance the same path below its template; the innermost table decides.
    if (walked.length > 0 && zrcfg_store::is_instance_name(name) && strcmp(name, "0") != 0) {
      template_place = walked;
      found = template_place.enter("0") && directory_exists(root_fd, template_place.path);
    } else if (found) {
      found = template_place.enter(name);
    }
    if (!walked.enter(name)) {
      return false;
    }
  }
  return found;
}

void find_template_problems(Check &check, const Subject &subject) {
  if (!subject.has_template || !directory_exists(check.root_fd, subject.template_place.path)) {
    return;
  }
  if (has_records(subject.object) && has_records(subject.template_object)) {
    compare_records(check, subject);
  }
  const char *const template_url = subject.template_place.url;
  const auto missing = [&](const char *name) {
    ObjectPlace child = subject.place;
    if (child.enter(name)) {
      check.findings.add(Problem::kObjectMissing, child.url, "the template %s%s. has no copy here",
                         template_url, name);
    }
  };
  const auto unknown = [&](const char *name) {
    ObjectPlace child = subject.place;
    if (child.enter(name)) {
      check.findings.add(Problem::kObjectUnknown, child.url, "the template %s has no such object",
                         template_url);
    }
  };
  // A dynamic table without its template is a finding of its own.
  const bool told = has_records(subject.object) &&
                    lacks_template(check.root_fd, subject.place, subject.object.header());
  for_each_missing(check.root_fd, subject.template_place, subject.place, !told, missing);
  for_each_missing(check.root_fd, subject.place, subject.template_place, false, unknown);
}

}  // namespace zrcfg_tool
