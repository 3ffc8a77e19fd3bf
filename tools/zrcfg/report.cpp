// What the command line says on standard error, one line an error.
#include "tools/zrcfg/report.h"

#include <stdarg.h>
#include <stdio.h>

#include "lock/object_lock.h"
#include "tools/store/object_place.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

struct Meaning {
  uint32_t result;
  const char *text;
};

constexpr Meaning kMeanings[] = {
    {ZRCFG_OK, "done"},
    {ZRCFG_E_NOT_FOUND, "no such object, or its URL is too long"},
    {ZRCFG_E_NOT_DYNAMIC, "not a table of that kind, or without the instance to copy"},
    {ZRCFG_E_LIMIT, "instance limit reached, or the instance exists already"},
    {ZRCFG_E_NO_PARAMETER, "no such parameter"},
    {ZRCFG_E_NO_VALUES, "the object has no parameters"},
    {ZRCFG_E_FILE, "the property file cannot be read or written, or the value is not allowed"},
    {ZRCFG_E_NO_FILE, "the object has no property file"},
    {ZRCFG_E_LOCK, "lock not obtained in time"},
    {ZRCFG_E_ARGUMENT, "the property file is damaged: records and values do not match"},
    {ZRCFG_E_LOCK_TYPE, "invalid lock type"},
    {ZRCFG_E_NO_ATTRIBUTE, "no such parameter"},
    {ZRCFG_E_EMPTY_PATH, "empty object path"},
    {ZRCFG_E_LIST_TOO_LONG, "request list too long"},
    {ZRCFG_E_MEMORY, "out of memory, or the values do not fit"},
    {ZRCFG_E_NO_ATTRIBUTES, "the object has no parameters"},
    {ZRCFG_E_COPY, "copying the instance failed"},
    {ZRCFG_E_REMOVE, "removing the instance failed"},
    {ZRCFG_E_FAILED, "failed"},
};

// Where no file lies there is no lock either, so both codes may just mean a missing object.
bool is_missing(const char *url, uint32_t result) {
  return (result == ZRCFG_E_LOCK || result == ZRCFG_E_NO_FILE) && zrcfg_isobjectexist(url) == 0;
}

// Whether the object is there, but no file that its lock could be taken on.
bool lacks_lock_file(const char *url, uint32_t result) {
  zrcfg_store::ObjectPlace place;
  char file[zrcfg::kFilePathSize];
  return result == ZRCFG_E_LOCK && place.set_url(url) && getLockFile(place.path, file) != 0;
}

void report(const char *url, const char *name, uint32_t result, const char *meaning) {
  complain("%s%s: %s (code %d)", url, name, meaning, static_cast<int>(result));
}

const char *current_command = nullptr;
size_t current_line = 0;
size_t script_line = 0;
size_t complaints = 0;

}  // namespace

void set_report_command(const char *command) {
  current_command = command;
}

void set_report_line(size_t line) {
  current_line = line;
}

void set_script_line(size_t line) {
  script_line = line;
}

size_t complaint_count() {
  return complaints;
}

void complain(const char *format, ...) {
  ++complaints;
  (void)fflush(stdout);  // Its own error is met at the end.
  fputs("zrcfg: ", stderr);
  if (script_line != 0) {
    fprintf(stderr, "line %zu: ", script_line);
  }
  if (current_line != 0) {
    fprintf(stderr, "line %zu: ", current_line);
  }
  if (current_command != nullptr) {
    fprintf(stderr, "%s: ", current_command);
  }
  va_list arguments;
  va_start(arguments, format);
  vfprintf(stderr, format, arguments);
  va_end(arguments);
  fputc('\n', stderr);
}

const char *meaning_of(uint32_t result) {
  for (const Meaning &meaning : kMeanings) {
    if (meaning.result == result) {
      return meaning.text;
    }
  }
  return "unknown result";
}

void report_refusal(const char *url, const char *name, uint32_t result) {
  const char *const meaning = is_missing(url, result)        ? "no such object"
                              : lacks_lock_file(url, result) ? meaning_of(ZRCFG_E_NO_FILE)
                                                             : meaning_of(result);
  report(url, name, result, meaning);
}

void report_table_refusal(const char *url, const char *name, uint32_t result) {
  char instance[ZRCFG_URL_SIZE + 2];
  (void)snprintf(instance, sizeof instance, "%s0.", url);  // Fits.
  if (!is_missing(url, result) && is_missing(instance, result)) {
    report(url, name, result, meaning_of(ZRCFG_E_NOT_DYNAMIC));
    return;
  }
  report_refusal(url, name, result);
}

}  // namespace zrcfg_tool
