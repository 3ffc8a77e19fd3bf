// What a check of the store finds: kinds of problems, and the list of those found.
#ifndef ZRCFG_TOOLS_ZRCFG_CHECK_FINDINGS_H_
#define ZRCFG_TOOLS_ZRCFG_CHECK_FINDINGS_H_

#include <stddef.h>
#include <stdint.h>

#include "tools/zrcfg/output.h"

namespace zrcfg_tool {

// Each has a stable identifier, described in man/zrcfg-check.1.
enum class Problem : uint8_t {
  kFileMissing,
  kFileNotRegular,
  kFileUnreadable,
  kFileTooLarge,
  kFileShort,
  kLengthInvalid,
  kLengthPartial,
  kRecordsTooMany,
  kLinesMissing,
  kLineEmpty,
  kLineUnended,
  kSurplusBytes,
  kZeroByte,
  kValueTooLong,
  kValueRefused,
  kFilterMissing,
  kFilterInvalid,
  kNameEmpty,
  kNameDuplicate,
  kNameUnterminated,
  kNameUnaddressable,
  kTextUnterminated,
  kTemplateMissing,
  kStructureDiffers,
  kObjectMissing,
  kObjectUnknown,
  kCounterWrong,
  kCounterUnknown,
  kInstanceAboveLimit,
  kInstanceIncomplete,
  kStrayFile,
  kStrayDirectory,
  kDirectoryUnreadable,
  kPathTooLong,
};

const char *identifier_of(Problem problem);

struct Finding;

// Findings are kept until they are printed: nothing is written to a pipe, which may be slow, while
// a lock is held. Of more than a well-formed object can have, the rest is only counted.
class Findings {
 public:
  explicit Findings(Form form);
  ~Findings();
  Findings(const Findings &) = delete;
  Findings &operator=(const Findings &) = delete;

  // Adds a finding at `path`: an object's URL, a parameter's path, or that of a file.
  void add(Problem problem, const char *path, const char *format, ...)
      __attribute__((format(printf, 4, 5)));
  // Says of the kept findings of that kind, once each, how they were repaired, or why not.
  void repaired(Problem problem, const char *format, ...) __attribute__((format(printf, 3, 4)));
  void not_repaired(Problem problem, const char *format, ...) __attribute__((format(printf, 3, 4)));

  // Whether one that is kept has that kind.
  bool has(Problem problem) const;
  // Whether one that is kept may be repaired.
  bool has_repairable() const;
  // Forgets what is kept, or prints and counts it.
  void discard();
  void print();
  // Puts aside what is kept, while the same is looked at again, and afterwards either brings it
  // back or forgets it.
  void put_aside();
  void settle_aside(bool bring_back);

  size_t remaining() const { return remaining_; }
  size_t repaired_count() const { return repaired_; }

 private:
  void settle(Problem problem, bool done, const char *action);
  void append(Finding *finding);
  void forget();
  void print_one(const Finding &finding);

  Form form_;
  ListPrinter printer_;
  Finding *first_ = nullptr;
  Finding *last_ = nullptr;
  Finding *aside_ = nullptr;
  size_t kept_ = 0;
  size_t not_kept_ = 0;
  size_t remaining_ = 0;
  size_t repaired_ = 0;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CHECK_FINDINGS_H_
