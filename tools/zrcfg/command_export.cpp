// export URL [FILE]: writes a configuration as text.
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/config_text.h"
#include "tools/zrcfg/object_reader.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/progress.h"
#include "tools/zrcfg/replace_file.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// What is exported: the instances first, then the values, each in the order of the tree.
struct Export {
  Bytes instances;
  Bytes values;
  Progress progress{"exported", "objects"};
};

bool append_object(const Options &options, const char *url, Export &out) {
  static ObjectRows object;  // Too large for the stack of each level.
  const uint32_t result = read_object_rows(url, options.timeout, RowContent::kValues, object);
  if (result != ZRCFG_OK) {
    report_refusal(url, "", result);
    return false;
  }
  for (int i = 0; i < object.count; ++i) {
    if (!append_value_line(out.values, url, object.rows[i].name, object.rows[i].value)) {
      return false;
    }
  }
  out.progress.step();
  return true;
}

bool append_instance(const char *url, Export &out) {
  return out.instances.append('+') && out.instances.append(url) && out.instances.append('\n');
}

bool export_object(const Options &options, const char *url, Export &out);

bool export_children(const Options &options, const char *url, Export &out) {
  SubObjName *node = nullptr;
  const uint32_t result = zrcfg_getallsubobj(url, &node);
  bool all_ok = result == ZRCFG_OK;
  if (!all_ok) {
    report_refusal(url, "", result);
  }
  while (node != nullptr) {
    char child[ZRCFG_URL_SIZE + sizeof node->name];
    (void)snprintf(child, sizeof child, "%s%s.", url, node->name);  // Fits.
    if (all_ok && strlen(child) < ZRCFG_URL_SIZE) {
      all_ok =
          (!isdigit(static_cast<unsigned char>(node->name[0])) || append_instance(child, out)) &&
          export_object(options, child, out);
    }
    SubObjName *const next = node->next;
    free(node);
    node = next;
  }
  return all_ok;
}

// An object and all below it. The library's bound on URLs bounds the recursion.
bool export_object(const Options &options, const char *url, Export &out) {
  return append_object(options, url, out) && export_children(options, url, out);
}

bool write_stream(FILE *stream, const void *context) {
  const Export &out = *static_cast<const Export *>(context);
  return out.instances.write_to(stream) && out.values.write_to(stream);
}

}  // namespace

int run_export(const Options &options, const Arguments &arguments) {
  if (arguments.count > 2) {
    complain("takes one URL and one file");
    return kExitUsage;
  }
  ObjectUrl url;
  if (!parse_object_url(arguments.values[0], url)) {
    return kExitUsage;
  }
  Export out;
  InstanceName instance;
  const bool is_instance = split_instance(url, instance) && instance.index != 0;
  if ((is_instance && !append_instance(url.text, out)) || !export_object(options, url.text, out)) {
    return kExitRefused;
  }
  out.progress.finish();
  if (arguments.count == 2) {
    return replace_file(arguments.values[1], write_stream, &out) ? kExitOk : kExitRefused;
  }
  (void)write_stream(stdout, &out);  // main reports what standard output suffers.
  return kExitOk;
}

}  // namespace zrcfg_tool
