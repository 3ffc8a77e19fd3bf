// snapshot FILE [URL]: saves objects byte for byte.
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/replace_file.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/snapshot_file.h"
#include "tools/zrcfg/snapshot/store_copy.h"

namespace zrcfg_tool {
namespace {

bool write_bytes(FILE *stream, const void *context) {
  return static_cast<const Bytes *>(context)->write_to(stream);
}

}  // namespace

int run_snapshot(const Options &options, const Arguments &arguments) {
  if (arguments.count > 2) {
    complain("takes one file and one URL");
    return kExitUsage;
  }
  ObjectUrl scope = {};
  if (arguments.count == 2 && !parse_object_url(arguments.values[1], scope)) {
    return kExitUsage;
  }
  StoreRoot root;
  StoreCopy copy;
  if (!root.open(nullptr) || !copy.read(root, scope.text, options.timeout, Accepted::kComplete)) {
    return kExitRefused;
  }
  const ObjectSet &objects = copy.objects();
  if (objects.count() == 0) {
    complain("%s: no such object", scope.text[0] != '\0' ? scope.text : "the store");
    return kExitRefused;
  }
  Bytes file;
  if (!encode_snapshot(objects, scope.text, file) ||
      !replace_file(arguments.values[0], write_bytes, &file)) {
    return kExitRefused;
  }
  if (copy.moment() == Moment::kSeveral) {
    complain("the store kept changing: the objects were not all saved at one moment");
  }
  // Behind the snapshot it would be taken for a part of it.
  FILE *const stream = is_standard_output(arguments.values[0]) ? stderr : stdout;
  fprintf(stream, "%zu objects\n", objects.count());
  return kExitOk;
}

}  // namespace zrcfg_tool
