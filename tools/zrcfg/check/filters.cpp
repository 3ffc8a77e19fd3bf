// The filters of the store: what a parameter's value may be.
#include "tools/zrcfg/check/filters.h"

#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr char kFilterFile[] = "/var/regex_file";
constexpr unsigned kMaxPattern = 1023;

}  // namespace

// cppcheck-suppress uninitMemberVar ; a slot counts for nothing before it is given a number
Filters::Filters() : exists_(access(kFilterFile, F_OK) == 0), readable_(false) {
  struct stat status;
  // Anything but a file might keep its reader waiting.
  readable_ = exists_ && stat(kFilterFile, &status) == 0 && S_ISREG(status.st_mode);
}

Filters::~Filters() {
  for (Slot &slot : slots_) {
    if (slot.number != 0 && slot.verdict == Verdict::kTaken) {
      regfree(&slot.regex);
    }
  }
}

void Filters::compile(Slot &slot, uint32_t number) {
  if (slot.number != 0 && slot.verdict == Verdict::kTaken) {
    regfree(&slot.regex);
  }
  slot.number = number;
  char key[32];
  (void)snprintf(key, sizeof key, "filter%u", static_cast<unsigned>(number));  // Fits.
  char pattern[kMaxPattern + 1] = {};
  if (!readable_ || zrcfg_uci_get_config(kFilterFile, key, pattern, kMaxPattern) != 0) {
    slot.verdict = Verdict::kNoFilter;
  } else if (regcomp(&slot.regex, pattern, REG_EXTENDED | REG_NOSUB) != 0) {
    slot.verdict = Verdict::kBadPattern;
  } else {
    slot.verdict = Verdict::kTaken;
  }
}

const Filters::Slot *Filters::find(uint32_t number) {
  if (number == 0 || !exists_) {
    return nullptr;
  }
  Slot &slot = slots_[number % kKept];
  if (slot.number != number) {
    compile(slot, number);
  }
  return &slot;
}

Verdict Filters::judge(uint32_t number) {
  const Slot *const slot = find(number);
  return slot == nullptr ? Verdict::kTaken : slot->verdict;
}

Verdict Filters::judge(uint32_t number, const char *value) {
  const Slot *const slot = find(number);
  if (slot == nullptr) {
    return Verdict::kTaken;
  }
  if (slot->verdict != Verdict::kTaken) {
    return slot->verdict;
  }
  return regexec(&slot->regex, value, 0, nullptr, 0) == 0 ? Verdict::kTaken : Verdict::kRefused;
}

}  // namespace zrcfg_tool
