// check --repair: the value lines of one object.
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/check/check.h"

namespace zrcfg_tool {

using zrcfg::ParamRecord;
using zrcfg_store::LineCount;
using zrcfg_store::StoredObject;

namespace {

constexpr unsigned kRepairable =
    zrcfg_store::kMissingLines | zrcfg_store::kOpenLine | zrcfg_store::kSurplus;
constexpr unsigned kInTheWay = zrcfg_store::kShortFile | zrcfg_store::kPartialRecord |
                               zrcfg_store::kTooManyRecords | zrcfg_store::kEmptyLine;

// The first values of the type codes 1 to 11, as docs/store-builder.md lists them.
constexpr const char *kInitialValues[] = {
    nullptr, "", "0", "0", "false", "0001-01-01T00:00:00Z", "", "0", "0", "", "0", "",
};
constexpr size_t kTypeCount = sizeof kInitialValues / sizeof kInitialValues[0];

// Copies the value that the template has for the parameter. False when there is none.
bool value_of_template(const Subject &subject, const ParamRecord &record, char *value) {
  const StoredObject &model = subject.template_object;
  if (!subject.has_template || model.state() != zrcfg_store::FileState::kRead ||
      (model.damage() & (kInTheWay | zrcfg_store::kOpenLine | zrcfg_store::kZeroByte)) != 0) {
    return false;
  }
  const zrcfg::FieldName name(record.name);
  zrcfg::ValueLines lines(model.section());
  for (uint32_t i = 0; i < model.record_count(); ++i) {
    const zrcfg::ValueLine line = lines.next();
    if (!line.exists()) {
      return false;
    }
    if (strcmp(zrcfg::FieldName(model.records()[i].name).text, name.text) == 0) {
      line.copy_value(value);
      return true;
    }
  }
  return false;
}

// What the repairs of the value lines settle, each with its own words where they have any.
constexpr Problem kLineProblems[] = {Problem::kLinesMissing, Problem::kZeroByte,
                                     Problem::kLineUnended, Problem::kSurplusBytes};

void leave(Check &check, const char *reason) {
  for (const Problem problem : kLineProblems) {
    check.findings.not_repaired(problem, "%s", reason);
  }
}

// Whether it is known which values are missing.
bool is_clear(unsigned damage) {
  return (damage & kInTheWay) == 0 &&
         ((damage & zrcfg_store::kZeroByte) == 0 || (damage & zrcfg_store::kZeroTail) != 0);
}

enum class Source { kTemplate, kType, kNone };

// Finds the value of a parameter whose line is missing.
Source find_value(Check &check, const Subject &subject, const ParamRecord &record, char *value) {
  Source source = Source::kTemplate;
  if (!value_of_template(subject, record, value)) {
    const char *const initial = record.type < kTypeCount ? kInitialValues[record.type] : nullptr;
    if (initial == nullptr) {
      return Source::kNone;
    }
    memcpy(value, initial, strlen(initial) + 1);
    source = Source::kType;
  }
  const Verdict verdict = check.filters.judge(record.param_check.get(), value);
  return verdict == Verdict::kRefused ? Source::kNone : source;
}

struct Filled {
  uint32_t from_template = 0;
  uint32_t from_type = 0;
};

// Appends the missing lines. False when not all of them have one right value, which is said.
bool append_missing(Check &check, const Subject &subject, uint32_t first, Bytes &section,
                    Filled &filled) {
  for (uint32_t i = first; i < subject.object.record_count(); ++i) {
    const ParamRecord &record = subject.object.records()[i];
    char value[zrcfg::kValueSlotSize];
    const Source source = find_value(check, subject, record, value);
    if (source == Source::kNone) {
      char reason[zrcfg::kNameSize + 32];
      (void)snprintf(reason, sizeof reason, "no value is known for %s",
                     zrcfg::FieldName(record.name).text);  // Fits.
      leave(check, reason);
      return false;
    }
    const bool appended =
        value[0] != '\0' ? section.append(value) : section.append(zrcfg::kEmptyValueMark);
    if (!appended || !section.append('\n')) {
      return false;
    }
    ++(source == Source::kTemplate ? filled.from_template : filled.from_type);
  }
  return true;
}

// Writes the section into the file that was read.
bool write_section(int root_fd, const Subject &subject, const Bytes &section) {
  char path[zrcfg::kFilePathSize];
  property_path(subject.place, path);
  const int fd = openat(root_fd, path, O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (fd == -1) {
    return false;
  }
  errno = EIO;
  const bool written =
      zrcfg::rewrite_section(fd, subject.object.section(), section.at, section.size);
  const int error = errno;
  (void)close(fd);  // The store never relies on what a close may still report.
  errno = error;
  return written;
}

void report_repairs(Check &check, const Filled &filled) {
  Findings &findings = check.findings;
  findings.repaired(Problem::kSurplusBytes, "cut off");
  findings.repaired(Problem::kLineUnended, "ended");
  const char *const action = filled.from_template + filled.from_type == 0 ? "cut off"
                             : filled.from_type == 0 ? "filled from the template"
                             : filled.from_template == 0
                                 ? "filled with initial values"
                                 : "filled from the template and with initial values";
  findings.repaired(Problem::kLinesMissing, "%s", action);
  findings.repaired(Problem::kZeroByte, "%s", action);
}

}  // namespace

void repair_values(Check &check, const Subject &subject) {
  const unsigned damage = subject.object.damage();
  if ((damage & kRepairable) == 0) {
    return;
  }
  if (!is_clear(damage)) {
    leave(check, "nobody knows which values are missing");
    return;
  }
  const LineCount lines = subject.object.count_lines();
  Bytes section;
  Filled filled;
  if (!section.append(subject.object.section().text, lines.end) ||
      ((damage & zrcfg_store::kOpenLine) != 0 && !section.append('\n')) ||
      !append_missing(check, subject, lines.values, section, filled)) {
    return;
  }
  if (write_section(check.root_fd, subject, section)) {
    report_repairs(check, filled);
  } else {
    leave(check, strerror(errno));
  }
}

}  // namespace zrcfg_tool
