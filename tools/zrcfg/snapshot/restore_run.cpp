// Making the changes that bring a store to the state of a snapshot.
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "core/store_file.h"
#include "core/value_section.h"
#include "tools/store/directory_names.h"
#include "tools/zrcfg/check/object_lock.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/instance_files.h"
#include "tools/zrcfg/snapshot/property_view.h"
#include "tools/zrcfg/snapshot/restore.h"

namespace zrcfg_tool {
namespace {

using zrcfg_store::DirectoryNames;
using zrcfg_store::Entry;
using zrcfg_store::ObjectPlace;

constexpr mode_t kFileMode = 0666;  // As the library makes files.

// An object that is locked for writing, its file open.
class LockedFile {
 public:
  LockedFile() = default;
  ~LockedFile() {
    if (fd_ != -1) {
      (void)close(fd_);  // Every write was checked.
    }
    (void)zrcfg_releaselock(lock_fd_);
  }
  LockedFile(const LockedFile &) = delete;
  LockedFile &operator=(const LockedFile &) = delete;

  // Locks the object and reads its file; reports and returns false when that fails.
  bool open(const StoreRoot &root, const ObjectPlace &place, int timeout, Bytes &bytes) {
    if (timeout != ZRCFG_NO_LOCK &&
        zrcfg_lockurl(place.url, &lock_fd_, timeout, ZRCFG_LOCK_EXCLUSIVE) != ZRCFG_OK) {
      report_refusal(place.url, "", ZRCFG_E_LOCK);
      return false;
    }
    const ReadResult result = read_held_file(root, place, bytes);
    if (result != ReadResult::kRead) {
      report_unread(place.url, result);
      return false;
    }
    char path[zrcfg::kFilePathSize];
    zrcfg_store::property_path(place, path);
    fd_ = openat(root.fd, path, O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (fd_ == -1) {
      complain("%s: cannot be written: %s", place.url, strerror(errno));
    }
    return fd_ != -1;
  }

  int fd() const { return fd_; }

 private:
  int lock_fd_ = -1;
  int fd_ = -1;
};

// The number of instances of a table, the template not counted; -1 when it cannot be read.
int count_instances(const StoreRoot &root, const ObjectPlace &table) {
  DirectoryNames names(root.fd, table.path);
  int count = 0;
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    const bool is_instance = entry->kind == zrcfg_store::EntryKind::kDirectory &&
                             zrcfg_store::is_instance_name(entry->name) &&
                             strcmp(entry->name, "0") != 0;
    count += is_instance ? 1 : 0;
  }
  return names.error() == 0 ? count : -1;
}

// Whether the object is a table with a template.
bool is_dynamic(const ObjectUrl &url) {
  char first[ZRCFG_URL_SIZE + 2];
  (void)snprintf(first, sizeof first, "%s0.", url.text);  // Fits.
  return zrcfg_isobjectexist(first) == 1;
}

// The parent's URL, for a table's.
bool parent_of(const ObjectUrl &url, ObjectUrl &parent) {
  const size_t length = strlen(url.text) - 1;
  const void *const dot = memrchr(url.text, '.', length);
  if (dot == nullptr) {
    return false;
  }
  const size_t kept = static_cast<size_t>(static_cast<const char *>(dot) - url.text) + 1;
  memcpy(parent.text, url.text, kept);
  parent.text[kept] = '\0';
  return true;
}

}  // namespace

bool Restore::run() {
  remove_leftovers();
  RestoreSteps all = steps();
  for (RestoreStep step; all.next(step);) {
    bool done = true;
    if (step.kind == StepKind::kWrite) {
      done = write_object(step);
    } else if (step.kind == StepKind::kCreate) {
      done = put_instance(step.url, wanted_, step.wanted, options_.timeout);
      counts_.created += done ? 1 : 0;
    } else if (step.kind == StepKind::kRemove) {
      done = take_away_instance(step.url, options_.timeout);
      counts_.removed += done ? 1 : 0;
    } else {
      done = write_lost_file(step);
    }
    counts_.failed += done ? 0 : 1;
  }
  counts_.failed += set_outer_counter() ? 0 : 1;
  printf("%zu objects written, %zu unchanged, %zu instances created, %zu removed", counts_.written,
         counts_.equal, counts_.created, counts_.removed);
  if (counts_.failed > 0) {
    printf(", %zu failed", counts_.failed);
  }
  putchar('\n');
  return counts_.failed == 0;
}

void Restore::remove_leftovers() const {
  const Bytes &dotted = now_.dotted();
  for (size_t at = 0; at < dotted.size; at += strlen(dotted.at + at) + 1) {
    remove_if_leftover(dotted.at + at);
  }
}

bool Restore::write_object(const RestoreStep &step) {
  const char *const bytes = wanted_.bytes(step.wanted.first);
  const size_t size = wanted_.size(step.wanted.first);
  ObjectPlace place;
  (void)place.set_url(step.url.text);  // It is a URL of the store.
  Bytes old;
  LockedFile file;
  if (!file.open(root_, place, options_.timeout, old)) {
    return false;
  }
  if (old.size == size && memcmp(old.at, bytes, size) == 0) {
    ++counts_.equal;
    return true;
  }
  PropertyView before;
  PropertyView after;
  if (view_structure(old.at, old.size, before) &&
      !(view_structure(bytes, size, after) && same_model(before, after))) {
    complain("%s: is of another model by now", step.url.text);
    return false;
  }
  // As if the whole file were its value section: one write, and on failure the old bytes are back.
  const off_t old_size = static_cast<off_t>(old.size);
  if (!zrcfg::rewrite_section(file.fd(), {old.at, old.size, 0, old_size}, bytes, size)) {
    complain("%s: cannot be written", step.url.text);
    return false;
  }
  ++counts_.written;
  return true;
}

// An object without a property file has no lock of its own; below an instance it has the
// template's.
bool Restore::write_lost_file(const RestoreStep &step) {
  ObjectPlace place;
  (void)place.set_url(step.url.text);  // Checked with its snapshot.
  LockTaker locks(root_.fd, options_.timeout);
  const ScopedLock lock(locks, place, ZRCFG_LOCK_EXCLUSIVE);
  if (!lock.ok()) {
    return false;
  }
  char path[zrcfg::kFilePathSize];
  zrcfg_store::property_path(place, path);
  const int fd = openat(root_.fd, path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode);
  bool written = fd != -1 && zrcfg::write_all_at(fd, wanted_.bytes(step.wanted.first),
                                                 wanted_.size(step.wanted.first), 0);
  written = (fd == -1 || close(fd) == 0) && written;
  if (!written) {
    complain("%s: cannot be written: %s", step.url.text, strerror(errno));
  }
  if (!written && fd != -1) {
    (void)unlinkat(root_.fd, path, 0);  // It was lost before.
  }
  counts_.written += written ? 1 : 0;
  return written;
}

// The counter of the outermost table lies above what a snapshot of a part holds, so it is set to
// the number of instances.
bool Restore::set_outer_counter() const {
  const bool is_part = scope_.text[0] != '\0';
  ObjectUrl table = scope_;
  InstanceName instance;
  if (is_part && is_instance_url(table.text) && split_instance(scope_, instance)) {
    table = instance.table;
  }
  ObjectUrl parent;
  ObjectPlace place;
  Bytes file;
  PropertyView view;
  if (!is_part || !is_dynamic(table) || !parent_of(table, parent) || !place.set_url(table.text) ||
      read_object_file(root_, place, options_.timeout, file) != ReadResult::kRead ||
      view_property_file(file.at, file.size, view) != nullptr) {
    return true;
  }
  const FieldText pnoe(view.header->pnoe);
  const char *const slash = strrchr(pnoe.text, '/');
  const char *const counter = slash != nullptr ? slash + 1 : pnoe.text;
  const int count = count_instances(root_, place);
  if (zrcfg::header_field::kRw.get(*view.header) == 0 || counter[0] == '\0' || count < 0) {
    return true;
  }
  char text[16];
  (void)snprintf(text, sizeof text, "%d", count);  // Fits.
  const uint32_t result = zrcfg_setsingleparamval(parent.text, counter, text, options_.timeout);
  if (result != ZRCFG_OK) {
    report_refusal(parent.text, counter, result);
  }
  return result == ZRCFG_OK;
}

}  // namespace zrcfg_tool
