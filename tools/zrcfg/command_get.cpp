// get PATH...: prints the values of parameters.
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/output.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/value_requests.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// Reads each object with as few calls as its parameters fit into.
void read_all(const Options &options, RequestTable &requests) {
  requests.group();
  for (int group = 0; group < requests.group_count(); ++group) {
    const int size = requests.group_size(group);
    for (int from = 0; from < size; from += ZRCFG_MAX_REQUESTS) {
      const int left = size - from;
      const int served = left < ZRCFG_MAX_REQUESTS ? left : ZRCFG_MAX_REQUESTS;
      read_stored(requests, group, from, from + served, options.timeout);
    }
  }
}

}  // namespace

int run_get(const Options &options, const Arguments &arguments) {
  RequestTable requests;
  if (!requests.allocate(arguments.count)) {
    return kExitRefused;
  }
  for (int i = 0; i < arguments.count; ++i) {
    Request &request = requests.at(i);
    request.text = arguments.values[i];
    if (!split_param_path(request.text, strlen(request.text), request.path)) {
      return kExitUsage;
    }
  }
  Form form;
  if (!choose_form(options, form)) {
    return kExitUsage;
  }
  read_all(options, requests);
  int exit_code = kExitOk;
  ListPrinter printer(form);
  for (int i = 0; i < requests.size(); ++i) {
    const Request &request = requests.at(i);
    if (request.result != ZRCFG_OK) {
      report_refusal(request.path.url, request.path.name, request.result);
      exit_code = kExitRefused;
    } else {
      printer.print_value(request.text, request.stored, options.has(kNames));
    }
  }
  return exit_code;
}

}  // namespace zrcfg_tool
