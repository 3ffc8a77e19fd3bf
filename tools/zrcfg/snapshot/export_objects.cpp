// A configuration text as objects, to be compared with others.
#include "tools/zrcfg/snapshot/export_objects.h"

#include <stdlib.h>
#include <string.h>

#include "core/property_file.h"
#include "core/value_section.h"
#include "tools/zrcfg/config_text.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

int compare_lines(const void *a, const void *b) {
  const ConfigLine &left = **static_cast<const ConfigLine *const *>(a);
  const ConfigLine &right = **static_cast<const ConfigLine *const *>(b);
  const int order = compare_urls(left.path.url, right.path.url);
  return order != 0 ? order : left.number < right.number ? -1 : 1;
}

// The lines of a text by object, those of one object as they stand in the text.
class SortedLines {
 public:
  SortedLines() = default;
  ~SortedLines() { free(lines_); }
  SortedLines(const SortedLines &) = delete;
  SortedLines &operator=(const SortedLines &) = delete;

  bool sort(const ConfigText &text) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers.
    lines_ = static_cast<const ConfigLine **>(calloc(text.size() + 1, sizeof *lines_));
    if (lines_ == nullptr) {
      complain("out of memory");
      return false;
    }
    for (size_t i = 0; i < text.size(); ++i) {
      lines_[i] = &text.at(i);
    }
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers.
    qsort(lines_, text.size(), sizeof *lines_, compare_lines);
    return true;
  }

  const ConfigLine &at(size_t i) const { return *lines_[i]; }

 private:
  const ConfigLine **lines_ = nullptr;
};

// Whether a later line of the same object sets the same parameter.
bool is_set_again(const SortedLines &lines, size_t i, size_t end) {
  for (size_t later = i + 1; later < end; ++later) {
    if (lines.at(later).kind == LineKind::kValue &&
        strcmp(lines.at(later).path.name, lines.at(i).path.name) == 0) {
      return true;
    }
  }
  return false;
}

bool append_record(Bytes &file, const char *name) {
  zrcfg::ParamRecord record = {};
  memcpy(record.name, name, strlen(name));
  return file.append(reinterpret_cast<const char *>(&record), sizeof record);
}

bool append_line(Bytes &section, const char *value) {
  return (*value != '\0' ? section.append(value) : section.append(zrcfg::kEmptyValueMark)) &&
         section.append('\n');
}

// Adds the object of the lines `first` to `end`.
bool add_object(const SortedLines &lines, size_t first, size_t end, ObjectSet &objects) {
  Bytes records;
  Bytes section;
  uint32_t count = 0;
  for (size_t i = first; i < end; ++i) {
    const ConfigLine &line = lines.at(i);
    if (line.kind != LineKind::kValue || is_set_again(lines, i, end)) {
      continue;
    }
    if (++count > zrcfg::kMaxServedRecords) {
      complain("%s: more parameters than an object can have", line.path.url);
      return false;
    }
    if (!append_record(records, line.path.name) || !append_line(section, line.value)) {
      return false;
    }
  }
  const zrcfg::ObjectHeader header = {};
  zrcfg::BigEndian32 word;
  word.set(static_cast<uint32_t>(sizeof header + records.size));
  Bytes file;
  return file.append(reinterpret_cast<const char *>(word.bytes), sizeof word.bytes) &&
         file.append(reinterpret_cast<const char *>(&header), sizeof header) &&
         file.append(records.at, records.size) && file.append(section.at, section.size) &&
         objects.add(lines.at(first).path.url, file.at, file.size);
}

// Cuts `scope` to the components that it has in common with a URL.
void cut_to_common(char *scope, const char *url) {
  size_t kept = 0;
  for (size_t i = 0; scope[i] != '\0' && scope[i] == url[i]; ++i) {
    kept = scope[i] == '.' ? i + 1 : kept;
  }
  scope[kept] = '\0';
}

}  // namespace

bool read_export(Bytes &text, ObjectUrl &scope, ObjectSet &objects) {
  ConfigText lines;
  SortedLines sorted;
  if (!lines.parse(text, WrongLines::kFirst) || !sorted.sort(lines)) {
    return false;
  }
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines.at(i).kind == LineKind::kDelete) {
      set_report_line(lines.at(i).number);
      complain("a deletion, which is no state of a store");
      set_report_line(0);
      return false;
    }
  }
  if (lines.size() == 0) {
    return true;
  }
  memcpy(scope.text, sorted.at(0).path.url, sizeof scope.text);
  for (size_t first = 0; first < lines.size();) {
    const char *const url = sorted.at(first).path.url;
    size_t end = first + 1;
    while (end < lines.size() && strcmp(sorted.at(end).path.url, url) == 0) {
      ++end;
    }
    cut_to_common(scope.text, url);
    if (!add_object(sorted, first, end, objects)) {
      return false;
    }
    first = end;
  }
  InstanceName instance;
  if (scope.text[0] != '\0' && split_instance(scope, instance)) {
    scope = instance.table;
  }
  return true;
}

}  // namespace zrcfg_tool
