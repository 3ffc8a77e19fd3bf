// check: the property file as a whole.
#include <inttypes.h>
#include <string.h>

#include "tools/zrcfg/check/check.h"

namespace zrcfg_tool {

using zrcfg_store::FileState;
using zrcfg_store::ObjectPlace;
using zrcfg_store::StoredObject;

namespace {

void report_state(Check &check, const ObjectPlace &place, const StoredObject &object) {
  Findings &findings = check.findings;
  switch (object.state()) {
    case FileState::kRead:
      break;
    case FileState::kMissing:
      findings.add(Problem::kFileMissing, place.url, "no property file");
      break;
    case FileState::kNotRegular:
      findings.add(Problem::kFileNotRegular, place.url, "the property file is no regular file");
      break;
    case FileState::kUnreadable:
      findings.add(Problem::kFileUnreadable, place.url, "the property file cannot be read: %s",
                   strerror(object.error()));
      break;
    case FileState::kBadLength:
      findings.add(Problem::kLengthInvalid, place.url,
                   "the length word is missing, below 184 or above 16 MiB");
      break;
    case FileState::kTooLarge:
      findings.add(Problem::kFileTooLarge, place.url, "the property file is larger than 32 MiB");
      break;
    case FileState::kNoMemory:
      findings.add(Problem::kFileUnreadable, place.url,
                   "not enough memory to read the property file");
      break;
  }
}

}  // namespace

bool find_file_problems(Check &check, const ObjectPlace &place, const StoredObject &object) {
  if (object.state() != FileState::kRead) {
    report_state(check, place, object);
    return false;
  }
  const unsigned damage = object.damage();
  Findings &findings = check.findings;
  if ((damage & zrcfg_store::kShortFile) != 0) {
    findings.add(Problem::kFileShort, place.url,
                 "the length word announces %" PRIu32 " bytes, the file has %lld behind it",
                 object.length_word(),
                 static_cast<long long>(object.section().file_size) - zrcfg::kLengthWordSize);
    return false;
  }
  if ((damage & zrcfg_store::kPartialRecord) != 0) {
    findings.add(Problem::kLengthPartial, place.url,
                 "the length word, %" PRIu32 ", is not that of whole records",
                 object.length_word());
    return false;
  }
  if ((damage & zrcfg_store::kTooManyRecords) != 0) {
    findings.add(Problem::kRecordsTooMany, place.url, "%" PRIu32 " parameters, more than 255",
                 object.record_count());
    return false;
  }
  return true;
}

}  // namespace zrcfg_tool
