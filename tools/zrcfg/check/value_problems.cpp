// check: the value lines of an object, and what they hold.
#include <inttypes.h>

#include "tools/zrcfg/check/check.h"

namespace zrcfg_tool {

using zrcfg::ParamRecord;
using zrcfg_store::LineCount;
using zrcfg_store::ObjectPlace;
using zrcfg_store::StoredObject;

namespace {

void find_line_problems(Check &check, const ObjectPlace &place, const StoredObject &object,
                        const LineCount &lines) {
  Findings &findings = check.findings;
  if ((lines.damage & zrcfg_store::kZeroByte) != 0) {
    findings.add(Problem::kZeroByte, place.url,
                 "a zero byte ends the values behind %" PRIu32 " of %" PRIu32, lines.values,
                 object.record_count());
  } else if ((lines.damage & zrcfg_store::kMissingLines) != 0) {
    findings.add(Problem::kLinesMissing, place.url, "%" PRIu32 " %s for %" PRIu32 " %s",
                 lines.values, lines.values == 1 ? "value" : "values", object.record_count(),
                 object.record_count() == 1 ? "parameter" : "parameters");
  }
  if ((lines.damage & zrcfg_store::kEmptyLine) != 0) {
    findings.add(Problem::kLineEmpty, place.url,
                 "an empty line among the values shifts those behind it");
  }
  const unsigned open = zrcfg_store::kOpenLine | zrcfg_store::kZeroByte;
  if ((lines.damage & open) == zrcfg_store::kOpenLine) {
    findings.add(Problem::kLineUnended, place.url, "the last value has no line end");
  }
  if ((lines.damage & zrcfg_store::kSurplus) != 0) {
    const size_t surplus = object.section().size - lines.end;
    findings.add(Problem::kSurplusBytes, place.url, "%zu %s behind the last value", surplus,
                 surplus == 1 ? "byte" : "bytes");
  }
}

void find_filter_problem(Check &check, const ObjectPlace &place, const ParamRecord &record) {
  const ParameterPath path(place, record);
  const uint32_t filter = record.param_check.get();
  const Verdict verdict = check.filters.judge(filter);
  if (verdict == Verdict::kNoFilter) {
    check.findings.add(Problem::kFilterMissing, path.text,
                       "/var/regex_file has no filter %" PRIu32, filter);
  } else if (verdict == Verdict::kBadPattern) {
    check.findings.add(Problem::kFilterInvalid, path.text,
                       "filter %" PRIu32 " is no regular expression", filter);
  }
}

void find_value_problem(Check &check, const ObjectPlace &place, const ParamRecord &record,
                        const zrcfg::ValueLine &line) {
  const ParameterPath path(place, record);
  if (line.length > zrcfg::kMaxValueLength) {
    check.findings.add(Problem::kValueTooLong, path.text, "the value has %zu characters",
                       line.length);
    return;
  }
  char value[zrcfg::kValueSlotSize];
  line.copy_value(value);
  const uint32_t filter = record.param_check.get();
  if (check.filters.judge(filter, value) == Verdict::kRefused) {
    check.findings.add(Problem::kValueRefused, path.text,
                       "filter %" PRIu32 " does not take the value '%s'", filter, value);
  }
}

}  // namespace

void find_value_problems(Check &check, const ObjectPlace &place, const StoredObject &object) {
  const LineCount lines = object.count_lines();
  find_line_problems(check, place, object, lines);
  // Around an empty line or a zero byte nobody knows which value is whose.
  const bool zero_inside =
      (lines.damage & zrcfg_store::kZeroByte) != 0 && (lines.damage & zrcfg_store::kZeroTail) == 0;
  const bool known = !zero_inside && (lines.damage & zrcfg_store::kEmptyLine) == 0;
  zrcfg::ValueLines values(object.section());
  for (uint32_t i = 0; i < object.record_count(); ++i) {
    const ParamRecord &record = object.records()[i];
    find_filter_problem(check, place, record);
    if (known && i < lines.values) {
      find_value_problem(check, place, record, values.next());
    }
  }
}

}  // namespace zrcfg_tool
