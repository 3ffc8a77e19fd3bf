// check [URL]: reads the store, or an object and all below it, and reports what is inconsistent.
#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include "core/store_file.h"
#include "tools/store/store_walk.h"
#include "tools/zrcfg/check/check.h"
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {

using zrcfg_store::ObjectPlace;
using zrcfg_store::Walk;

namespace {

constexpr int kExitRepaired = 3;

Walk visit(const ObjectPlace &place, void *context) {
  Check &check = *static_cast<Check *>(context);
  check.found_object = true;
  if (check.half_copied.has(place.url)) {
    return Walk::kSkipBelow;
  }
  zrcfg::ObjectHeader header;
  if (check_object(check, place, header)) {
    check_table(check, place, header);
  }
  return Walk::kGoOn;
}

int check_store(const Options &options, Form form, const ObjectPlace &start, int root_fd) {
  const size_t complaints = complaint_count();
  Check check(root_fd, options.has(kRepair), options.timeout, form);
  // What cannot be walked into is found by the check of the directory that has it.
  (void)zrcfg_store::walk_objects(root_fd, start, {visit, nullptr, &check});
  if (!check.found_object) {
    complain("%s: no object in it", zrcfg::kStoreRoot);
  }
  if (check.findings.remaining() > 0 || complaint_count() > complaints) {
    return kExitRefused;
  }
  return check.findings.repaired_count() > 0 ? kExitRepaired : kExitOk;
}

}  // namespace

int run_check(const Options &options, const Arguments &arguments) {
  if (arguments.count > 1) {
    complain("takes one URL at most");
    return kExitUsage;
  }
  ObjectUrl url = {""};
  Form form;
  if ((arguments.count == 1 && !parse_object_url(arguments.values[0], url)) ||
      !choose_form(options, form)) {
    return kExitUsage;
  }
  const int root_fd = open(zrcfg::kStoreRoot, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (root_fd == -1) {
    complain("%s: %s", zrcfg::kStoreRoot, strerror(errno));
    return kExitRefused;
  }
  ObjectPlace start;
  int exit_code = kExitUsage;
  if (!start.set_url(url.text) || (start.length > 0 && !directory_exists(root_fd, start.path))) {
    report_refusal(url.text, "", ZRCFG_E_NOT_FOUND);
  } else {
    exit_code = check_store(options, form, start, root_fd);
  }
  (void)close(root_fd);  // Only read.
  return exit_code;
}

}  // namespace zrcfg_tool
