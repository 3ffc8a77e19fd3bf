// Checking a value against its parameter's filter, a regular expression of the pattern file.
#include <regex.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "core/call_frame.h"
#include "core/export.h"
#include "core/store_file.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr char kPatternFile[] = "regex_file";  // Below the store root.
constexpr char kPatternFilePath[] = "/var/regex_file";
constexpr unsigned kMaxPatternLength = 1023;
constexpr size_t kErrorTextSize = 63;

int report_regex(const char *step, int error, const regex_t &regex) {
  char text[kErrorTextSize];
  (void)regerror(error, &regex, text, sizeof text);  // A longer text is cut, which does no harm.
  ZRCFG_TRACE("%s error %s.\n", step, text);
  return -1;
}

int match(unsigned filter, const char *value, const char *pattern) {
  regex_t regex;
  int error = regcomp(&regex, pattern, REG_EXTENDED | REG_NOSUB);
  if (error != 0) {
    return report_regex("regcomp", error, regex);
  }
  int result = 0;
  error = regexec(&regex, value, 0, nullptr, 0);
  if (error == 0) {
    ZRCFG_TRACE("%d %s matches %s.\n", static_cast<int>(filter), value, pattern);
  } else {
    result = report_regex("regexec", error, regex);
  }
  regfree(&regex);
  return result;
}

int match_filter(unsigned filter, const char *value, char *pattern) {
  char key[32];
  (void)snprintf(key, sizeof key, "filter%u", filter);  // Fits.
  if (zrcfg_uci_get_config(kPatternFilePath, key, pattern, kMaxPatternLength) != 0) {
    ZRCFG_TRACE("get %s from %s failed.\n", key, kPatternFilePath);
    return -1;
  }
  return match(filter, value, pattern);
}

uint32_t check_in_object(OpenObject &object, const char *name, const char *value) {
  ZRCFG_TRACE("param name = %s\n", name);
  const ParamRecord *const record = find_record(*object.loaded.image, name);
  if (record == nullptr || check_param_value_valid_regex(record->param_check.get(), value) != 0) {
    return ZRCFG_E_FILE;
  }
  return ZRCFG_OK;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int check_param_value_valid_regex(unsigned filterId, const char *value) {
  if (value == nullptr) {
    ZRCFG_TRACE("value NULL is not valid.\n");
    return -1;
  }
  if (filterId == 0 || ACCESS(kPatternFile, F_OK) != 0) {
    ZRCFG_TRACE("no need check param value,\n");
    return 0;
  }
  char *const pattern = static_cast<char *>(calloc(kMaxPatternLength + 1, 1));
  if (pattern == nullptr) {
    ZRCFG_TRACE("malloc pattern failed.\n");
    return -1;
  }
  const int result = match_filter(filterId, value, pattern);
  free(pattern);
  return result;
}

ZRCFG_EXPORT int zrcfg_paramvalue_check(const char *url, const char *name, const char *value,
                                        int timeout) {
  if (url == nullptr || name == nullptr || value == nullptr) {
    return static_cast<int>(refuse_null(NullText::kPlain));
  }
  const size_t length = strlen(value);
  if (length > kMaxValueLength) {
    ZRCFG_TRACE("Input value length %d is over, do not check.\n", static_cast<int>(length));
    return ZRCFG_OK;
  }
  ZRCFG_TRACE("objUrl =  %s, param name = %s\n", url, name);
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  return static_cast<int>(
      with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead,
                  [&](OpenObject &object) { return check_in_object(object, name, value); }));
}

}  // extern "C"
