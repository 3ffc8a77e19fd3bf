// check: the counter of a table against its instances, and their repair.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "core/decimal_text.h"
#include "lifecycle/dir_tree.h"
#include "tools/zrcfg/check/check.h"
#include "tools/zrcfg/check/half_copied.h"
#include "tools/zrcfg/check/table_census.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {

using zrcfg_store::ObjectPlace;
using zrcfg_store::StoredObject;

namespace {

// An instance is made or removed under one lock and counted under another, so that a difference may
// be gone a moment later: it has to be seen twice.
constexpr int kLooks = 5;
constexpr useconds_t kBetweenLooks = 200'000;

enum class CounterState { kRead, kUnknown, kUnreadable };

struct Counter {
  ObjectPlace parent;
  char name[zrcfg::kNameSize + 1];
  char path[zrcfg::kUrlSize + zrcfg::kNameSize];
  char text[zrcfg::kValueSlotSize];
};

// What is compared.
struct Look {
  int counted = 0;
  uint32_t instances = 0;

  bool operator==(const Look &other) const {
    return counted == other.counted && instances == other.instances;
  }
  bool fits() const { return counted >= 0 && static_cast<uint32_t>(counted) == instances; }
};

// Finds where the counter is: the last component of `pnoe` names a parameter of the parent. False
// when it names none.
bool locate_counter(const ObjectPlace &table, const zrcfg::ObjectHeader &header, Counter &counter) {
  const zrcfg::FieldName pnoe(header.pnoe);
  const char *const slash = strrchr(pnoe.text, '/');
  char last[zrcfg::kUrlSize];
  table.last_name(last);
  counter.parent = table;
  counter.parent.cut(table.length - strlen(last) - 1);
  (void)snprintf(counter.name, sizeof counter.name, "%s", slash != nullptr ? slash + 1 : "");
  (void)snprintf(counter.path, sizeof counter.path, "%s%s", counter.parent.url, counter.name);
  return counter.name[0] != '\0' && counter.parent.length > 0;
}

CounterState find_in(const StoredObject &object, Counter &counter) {
  zrcfg::ValueLines lines(object.section());
  for (uint32_t i = 0; i < object.record_count(); ++i) {
    const zrcfg::ValueLine line = lines.next();
    if (strcmp(zrcfg::FieldName(object.records()[i].name).text, counter.name) != 0) {
      continue;
    }
    if (!line.exists()) {
      return CounterState::kUnreadable;
    }
    line.copy_value(counter.text);
    return CounterState::kRead;
  }
  return CounterState::kUnknown;
}

// Reads the counter under a lock that is held. What is wrong with the parent is reported there.
CounterState read_locked(const Check &check, Counter &counter) {
  constexpr unsigned kUnreliable = zrcfg_store::kShortFile | zrcfg_store::kEmptyLine |
                                   zrcfg_store::kZeroByte | zrcfg_store::kPartialRecord |
                                   zrcfg_store::kTooManyRecords;
  StoredObject object;
  char path[zrcfg::kFilePathSize];
  property_path(counter.parent, path);
  if (!object.load(check.root_fd, path) || (object.damage() & kUnreliable) != 0) {
    return CounterState::kUnreadable;
  }
  return find_in(object, counter);
}

CounterState read_counter(Check &check, Counter &counter) {
  const ScopedLock lock(check.locks, counter.parent, ZRCFG_LOCK_SHARED);
  return lock.ok() ? read_locked(check, counter) : CounterState::kUnreadable;
}

// Calls `visit` for each half-copied instance, under the lock of the table's instances.
template <typename Visit>
void for_each_half_copied(Check &check, const ObjectPlace &table, uint32_t lock_type, Visit visit) {
  ObjectPlace model = table;
  if (!model.enter("0") || !directory_exists(check.root_fd, model.path)) {
    return;
  }
  const ScopedLock lock(check.locks, model, lock_type);
  if (!lock.ok()) {
    return;
  }
  zrcfg_store::DirectoryNames names(check.root_fd, table.path);
  for (const zrcfg_store::Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    ObjectPlace instance = table;
    if (is_instance_directory(*entry) && instance.enter(entry->name) &&
        is_half_copied(check.root_fd, instance, model)) {
      visit(instance);
    }
  }
}

uint32_t count_half_copied(Check &check, const ObjectPlace &table) {
  uint32_t count = 0;
  for_each_half_copied(check, table, ZRCFG_LOCK_SHARED, [&](const ObjectPlace &) { ++count; });
  return count;
}

void report_half_copied(Check &check, const ObjectPlace &table) {
  const uint32_t lock = check.repair ? ZRCFG_LOCK_EXCLUSIVE : ZRCFG_LOCK_SHARED;
  for_each_half_copied(check, table, lock, [&](const ObjectPlace &instance) {
    Findings &findings = check.findings;
    findings.add(Problem::kInstanceIncomplete, instance.url,
                 "its creation was interrupted: an unfinished copy of the template, not counted");
    (void)check.half_copied.add(instance.url);  // Else its parts are reported too.
    if (!check.repair) {
      return;
    }
    (void)dirDel(instance.path);  // What is left tells.
    if (directory_exists(check.root_fd, instance.path)) {
      findings.not_repaired(Problem::kInstanceIncomplete, "it cannot be removed");
    } else {
      findings.repaired(Problem::kInstanceIncomplete, "removed");
    }
  });
}

// Whether the counter differs from the number of instances in two looks.
bool differs(Check &check, const ObjectPlace &table, Counter &counter, Look &seen) {
  for (int i = 0; i < kLooks; ++i) {
    if (i > 0) {
      if (read_counter(check, counter) != CounterState::kRead) {
        return false;
      }
    }
    const Look look = {zrcfg::decimal_value(counter.text), count_instances(check.root_fd, table)};
    if (look.fits()) {
      return false;
    }
    if (i > 0 && look == seen) {
      return true;
    }
    seen = look;
    (void)usleep(kBetweenLooks);  // Ended early it is only a shorter pause.
  }
  return false;
}

// Whether the counter is that of another table too: there may be no number that is right for both.
bool is_shared(int root_fd, const ObjectPlace &table, const Counter &counter) {
  zrcfg_store::DirectoryNames names(root_fd, counter.parent.path);
  for (const zrcfg_store::Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    ObjectPlace other = counter.parent;
    if (entry->kind != zrcfg_store::EntryKind::kDirectory || !other.enter(entry->name) ||
        other.is_instance() || strcmp(other.url, table.url) == 0) {
      continue;
    }
    char path[zrcfg::kFilePathSize];
    property_path(other, path);
    StoredObject object;
    Counter its;
    if (object.load(root_fd, path) && (object.damage() & zrcfg_store::kShortFile) == 0 &&
        locate_counter(other, object.header(), its) && strcmp(its.path, counter.path) == 0) {
      return true;
    }
  }
  return false;
}

// Sets the counter, unless it has changed since it was looked at.
void repair_counter(Check &check, const Counter &counter, uint32_t instances) {
  Findings &findings = check.findings;
  const ScopedLock lock(check.locks, counter.parent, ZRCFG_LOCK_EXCLUSIVE);
  Counter now = counter;
  if (!lock.ok()) {
    findings.not_repaired(Problem::kCounterWrong, "%s", meaning_of(ZRCFG_E_LOCK));
    return;
  }
  if (read_locked(check, now) != CounterState::kRead || strcmp(now.text, counter.text) != 0) {
    findings.not_repaired(Problem::kCounterWrong, "it is being changed");
    return;
  }
  char value[16];
  (void)snprintf(value, sizeof value, "%" PRIu32, instances);  // Fits.
  const uint32_t result =
      zrcfg_setsingleparamval(counter.parent.url, counter.name, value, ZRCFG_NO_LOCK);
  if (result == ZRCFG_OK) {
    findings.repaired(Problem::kCounterWrong, "set to %s", value);
  } else {
    findings.not_repaired(Problem::kCounterWrong, "%s", meaning_of(result));
  }
}

void report_counter(Check &check, const ObjectPlace &table, const Counter &counter,
                    const Look &look, uint32_t half_copied) {
  Findings &findings = check.findings;
  findings.add(Problem::kCounterWrong, counter.path, "is '%s', but %s has %" PRIu32 " %s",
               counter.text, table.url, look.instances,
               look.instances == 1 ? "instance" : "instances");
  if (!check.repair) {
    return;
  }
  if (half_copied > 0) {
    findings.not_repaired(Problem::kCounterWrong, "some instances are half copied");
  } else if (is_shared(check.root_fd, table, counter)) {
    findings.not_repaired(Problem::kCounterWrong, "another table has the same counter");
  } else {
    repair_counter(check, counter, look.instances);
  }
}

}  // namespace

void check_counter(Check &check, const ObjectPlace &table, const zrcfg::ObjectHeader &header) {
  if (header.pnoe[0] == '\0') {
    return;
  }
  Counter counter;
  const CounterState state = locate_counter(table, header, counter) ? read_counter(check, counter)
                                                                    : CounterState::kUnknown;
  if (state == CounterState::kUnknown) {
    check.findings.add(Problem::kCounterUnknown, table.url,
                       "its pnoe, '%s', names no parameter of the parent",
                       zrcfg::FieldName(header.pnoe).text);
    return;
  }
  Look look = {};
  if (state != CounterState::kRead || !differs(check, table, counter, look)) {
    return;
  }
  const bool too_few = look.counted >= 0 && static_cast<uint32_t>(look.counted) < look.instances;
  const uint32_t half_copied = too_few ? count_half_copied(check, table) : 0;
  if (half_copied > 0 && half_copied == look.instances - static_cast<uint32_t>(look.counted)) {
    report_half_copied(check, table);
  } else {
    report_counter(check, table, counter, look, half_copied);
  }
}

}  // namespace zrcfg_tool
