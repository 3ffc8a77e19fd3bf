// check: tables, with their templates, instances and counters.
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "tools/store/directory_names.h"
#include "tools/zrcfg/check/check.h"
#include "tools/zrcfg/check/table_census.h"

namespace zrcfg_tool {

using zrcfg_store::ObjectPlace;

namespace {

void find_high_instances(Check &check, const ObjectPlace &place, uint32_t limit) {
  zrcfg_store::DirectoryNames names(check.root_fd, place.path);
  for (const zrcfg_store::Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    ObjectPlace instance = place;
    if (is_instance_directory(*entry) && strtoul(entry->name, nullptr, 10) > limit &&
        instance.enter(entry->name)) {
      check.findings.add(Problem::kInstanceAboveLimit, instance.url,
                         "the table's max_instance is %" PRIu32, limit);
    }
  }
}

}  // namespace

bool is_instance_directory(const zrcfg_store::Entry &entry) {
  return entry.kind == zrcfg_store::EntryKind::kDirectory &&
         zrcfg_store::is_instance_name(entry.name) && entry.name[0] != '0';
}

uint32_t count_instances(int root_fd, const ObjectPlace &table) {
  zrcfg_store::DirectoryNames names(root_fd, table.path);
  uint32_t count = 0;
  for (const zrcfg_store::Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    count += is_instance_directory(*entry) ? 1u : 0u;
  }
  return count;
}

bool lacks_template(int root_fd, const ObjectPlace &place, const zrcfg::ObjectHeader &header) {
  ObjectPlace model = place;
  if (zrcfg::header_field::kRw.get(header) == 0 ||
      (model.enter("0") && directory_exists(root_fd, model.path))) {
    return false;
  }
  const bool has_marks = header.pnoe[0] != '\0' || header.max_instance != 0;
  return has_marks || count_instances(root_fd, place) > 0;
}

void check_table(Check &check, const ObjectPlace &place, const zrcfg::ObjectHeader &header) {
  if (place.is_instance()) {
    return;
  }
  if (lacks_template(check.root_fd, place, header)) {
    check.findings.add(Problem::kTemplateMissing, place.url,
                       "instances may be added, but there is no template instance 0");
  }
  check_counter(check, place, header);
  ObjectPlace model = place;
  // A half-copied instance may be gone by now.
  if (zrcfg::header_field::kRw.get(header) != 0 && model.enter("0") &&
      directory_exists(check.root_fd, model.path)) {
    find_high_instances(check, place, header.max_instance);
  }
  check.findings.print();
}

}  // namespace zrcfg_tool
