// set PATH=VALUE...: changes the values of parameters, each object as a whole or not at all.
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/value_requests.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// Splits at the first "=". Reports and returns false when the text is no assignment.
bool parse_assignment(const char *text, Request &request) {
  const char *const equals = strchr(text, '=');
  if (equals == nullptr) {
    complain("%s: not PATH=VALUE", text);
    return false;
  }
  request.text = text;
  request.new_value = equals + 1;
  return split_param_path(text, static_cast<size_t>(equals - text), request.path);
}

void refuse(const Request &request, const char *format, ...) __attribute__((format(printf, 2, 3)));

void refuse(const Request &request, const char *format, ...) {
  char reason[160];
  va_list arguments;
  va_start(arguments, format);
  (void)vsnprintf(reason, sizeof reason, format, arguments);  // The reasons below fit.
  va_end(arguments);
  complain("%s%s: %s", request.path.url, request.path.name, reason);
}

// What the library would ignore, or store so that it reads back otherwise, is an error here.
bool text_ok(const Request &request) {
  const size_t length = strlen(request.new_value);
  if (length >= ZRCFG_VALUE_SIZE) {
    refuse(request, "the value has %zu characters, at most 255 can be stored", length);
  } else if (strchr(request.new_value, '\n') != nullptr) {
    refuse(request, "the value holds a line feed, which cannot be stored (code %u)", ZRCFG_E_FILE);
  } else if (request.new_value[0] == '\r') {
    refuse(request, "the value begins with a carriage return and would read back empty");
  } else {
    return true;
  }
  return false;
}

bool filter_ok(const Options &options, const Request &request) {
  const uint32_t result = static_cast<uint32_t>(zrcfg_paramvalue_check(
      request.path.url, request.path.name, request.new_value, options.timeout));
  if (result == ZRCFG_E_FILE) {
    refuse(request, "the parameter does not take the value '%.*s'%s (code %u)", 80,
           request.new_value, strlen(request.new_value) > 80 ? "…" : "", ZRCFG_E_FILE);
  } else if (result != ZRCFG_OK) {
    report_refusal(request.path.url, request.path.name, result);
  }
  return result == ZRCFG_OK;
}

// Checks every value of an object and reports each refusal; true when there was none.
bool check_object(const Options &options, RequestTable &requests, int group) {
  const int size = requests.group_size(group);
  if (size > ZRCFG_MAX_REQUESTS) {
    complain("%s: more than %d values for one object", requests.member(group, 0).path.url,
             ZRCFG_MAX_REQUESTS);
    return false;
  }
  read_stored(requests, group, 0, size, options.timeout);
  bool all_ok = true;
  for (int i = 0; i < size; ++i) {
    const Request &request = requests.member(group, i);
    if (request.result != ZRCFG_OK) {
      report_refusal(request.path.url, request.path.name, request.result);
      all_ok = false;
    } else if (!text_ok(request) || (!options.has(kNoCheck) && !filter_ok(options, request))) {
      all_ok = false;
    }
  }
  return all_ok;
}

bool is_unchanged(const RequestTable &requests, int group) {
  for (int i = 0; i < requests.group_size(group); ++i) {
    const Request &request = requests.member(group, i);
    if (strcmp(request.stored, request.new_value) != 0) {
      return false;
    }
  }
  return true;
}

// Sets all values of an object with one call; reports a refusal.
bool write_object(const Options &options, RequestTable &requests, int group) {
  if (is_unchanged(requests, group)) {
    return true;
  }
  const int size = requests.group_size(group);
  for (int i = 0; i < size; ++i) {
    Request &request = requests.member(group, i);
    request.entry.value = const_cast<char *>(request.new_value);  // The library only reads it.
    request.entry.fault = &request.fault;
  }
  Request &first = requests.member(group, 0);
  const auto write = !options.has(kNoCheck) ? zrcfg_setmultiparamval_check : zrcfg_setmultiparamval;
  const uint32_t result =
      static_cast<uint32_t>(write(first.path.url, &first.entry, options.timeout));
  if (result == ZRCFG_OK) {
    return true;
  }
  report_refusal(first.path.url, size == 1 ? first.path.name : "", result);
  return false;
}

}  // namespace

int run_set(const Options &options, const Arguments &arguments) {
  RequestTable requests;
  if (!requests.allocate(arguments.count)) {
    return kExitRefused;
  }
  for (int i = 0; i < arguments.count; ++i) {
    if (!parse_assignment(arguments.values[i], requests.at(i))) {
      return kExitUsage;
    }
  }
  requests.group();
  // All objects are checked before the first is written.
  for (int group = 0; group < requests.group_count(); ++group) {
    requests.set_refused(group, !check_object(options, requests, group));
  }
  int exit_code = kExitOk;
  for (int group = 0; group < requests.group_count(); ++group) {
    if (requests.refused(group)) {
      exit_code = kExitRefused;
      if (requests.group_size(group) > 1) {
        complain("%s: not changed", requests.member(group, 0).path.url);
      }
    } else if (!write_object(options, requests, group)) {
      exit_code = kExitRefused;
    }
  }
  return exit_code;
}

}  // namespace zrcfg_tool
