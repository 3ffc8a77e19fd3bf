// check: names and texts in header and records.
#include <string.h>

#include "tools/zrcfg/check/check.h"

namespace zrcfg_tool {

using zrcfg::ParamRecord;
using zrcfg_store::ObjectPlace;
using zrcfg_store::StoredObject;

namespace {

template <size_t kSize>
void find_open_text(Check &check, const char *path, const char *what, const char (&field)[kSize]) {
  if (zrcfg_store::field_length(field) == kSize) {
    check.findings.add(Problem::kTextUnterminated, path, "%s fills its field without a terminator",
                       what);
  }
}

bool appears_before(const ParamRecord *records, uint32_t position) {
  const zrcfg::FieldName name(records[position].name);
  for (uint32_t i = 0; i < position; ++i) {
    if (strcmp(zrcfg::FieldName(records[i].name).text, name.text) == 0) {
      return true;
    }
  }
  return false;
}

void find_name_problem(Check &check, const ObjectPlace &place, const ParamRecord *records,
                       uint32_t position) {
  const ParamRecord &record = records[position];
  const ParameterPath path(place, record);
  const size_t length = zrcfg_store::field_length(record.name);
  Findings &findings = check.findings;
  if (length == 0) {
    findings.add(Problem::kNameEmpty, place.url, "parameter %u has no name", position + 1);
    return;
  }
  if (length == zrcfg::kNameSize) {
    findings.add(Problem::kNameUnterminated, path.text,
                 "the name fills its field without a terminator");
  }
  if (memchr(record.name, '.', length) != nullptr) {
    findings.add(Problem::kNameUnaddressable, path.text, "the name has a dot");
  }
  if (appears_before(records, position)) {
    findings.add(Problem::kNameDuplicate, path.text, "parameter %u has the name of an earlier one",
                 position + 1);
  }
  if (strlen(path.text) >= zrcfg::kUrlSize) {
    findings.add(Problem::kPathTooLong, path.text, "the path has more than 255 characters");
  }
}

}  // namespace

ParameterPath::ParameterPath(const ObjectPlace &place, const ParamRecord &record) {
  const zrcfg::FieldName name(record.name);
  memcpy(text, place.url, place.length);
  memcpy(text + place.length, name.text, strlen(name.text) + 1);
}

void find_name_problems(Check &check, const ObjectPlace &place, const StoredObject &object) {
  const zrcfg::ObjectHeader &header = object.header();
  find_open_text(check, place.url, "devfunc", header.devfunc);
  find_open_text(check, place.url, "pnoe", header.pnoe);
  find_open_text(check, place.url, "extra_text", header.extra_text);
  const ParamRecord *const records = object.records();
  for (uint32_t i = 0; i < object.record_count(); ++i) {
    find_name_problem(check, place, records, i);
    const ParameterPath path(place, records[i]);
    find_open_text(check, path.text, "accesslist", records[i].accesslist);
    find_open_text(check, path.text, "area", records[i].area);
  }
}

}  // namespace zrcfg_tool
