// attr get|set PATH, object get|set URL: attributes of a parameter or of an object.
#include <string.h>

#include "tools/zrcfg/attribute_table.h"
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/param_path.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

union Record {
  ParamAttr parameter;
  ObjAttr object;
};

// What differs between the two commands.
struct ItemKind {
  const char *command;
  const char *argument;
  const AttributeTable &attributes;
  bool (*parse)(const char *text, ParamPath &item);
  uint32_t (*read)(const ParamPath &item, Record &record, int timeout);
  uint32_t (*write)(const ParamPath &item, const AttributeChange &change, int timeout);
};

bool parse_parameter(const char *text, ParamPath &item) {
  return split_param_path(text, strlen(text), item);
}

uint32_t read_parameter(const ParamPath &item, Record &record, int timeout) {
  return zrcfg_getsingleparamattr(item.url, item.name, &record.parameter, timeout);
}

uint32_t write_parameter(const ParamPath &item, const AttributeChange &change, int timeout) {
  return zrcfg_setsingleparamattr_ext(item.url, item.name, change.attribute->number, change.value,
                                      timeout);
}

// An object is a path with an empty name.
bool parse_object(const char *text, ParamPath &item) {
  ObjectUrl url;
  if (!parse_object_url(text, url)) {
    return false;
  }
  memcpy(item.url, url.text, sizeof item.url);
  item.name[0] = '\0';
  return true;
}

uint32_t read_object(const ParamPath &item, Record &record, int timeout) {
  return zrcfg_getobjattr(item.url, &record.object, timeout);
}

uint32_t write_object(const ParamPath &item, const AttributeChange &change, int timeout) {
  return zrcfg_setsingleobjattr_ext(item.url, change.attribute->number, change.value, timeout);
}

const ItemKind kParameter = {"attr",          "PATH",         kParamAttributes,
                             parse_parameter, read_parameter, write_parameter};
const ItemKind kObject = {"object",     "URL",       kObjectAttributes,
                          parse_object, read_object, write_object};

int refused(const ParamPath &item, uint32_t result) {
  report_refusal(item.url, item.name, result);
  return kExitRefused;
}

int get_attributes(const ItemKind &kind, const ParamPath &item, const Arguments &names,
                   const Options &options) {
  Form form;
  if (!check_attribute_names(kind.attributes, names.count, names.values) ||
      !choose_form(options, form)) {
    return kExitUsage;
  }
  Record record = {};
  const uint32_t result = kind.read(item, record, options.timeout);
  if (result != ZRCFG_OK) {
    return refused(item, result);
  }
  RecordPrinter printer(form);
  print_attributes(kind.attributes, &record, names.count, names.values, printer);
  return kExitOk;
}

int set_attributes(const ItemKind &kind, const ParamPath &item, const Arguments &changes,
                   int timeout) {
  AttributeChange change;
  for (int i = 0; i < changes.count; ++i) {
    if (!parse_attribute_change(kind.attributes, changes.values[i], change)) {
      return kExitUsage;
    }
  }
  for (int i = 0; i < changes.count; ++i) {
    (void)parse_attribute_change(kind.attributes, changes.values[i], change);  // Held above.
    const uint32_t result = kind.write(item, change, timeout);
    if (result != ZRCFG_OK) {
      return refused(item, result);
    }
  }
  return kExitOk;
}

int run(const ItemKind &kind, const Options &options, const Arguments &arguments) {
  const char *const action = arguments.values[0];
  const bool sets = strcmp(action, "set") == 0;
  if (!sets && strcmp(action, "get") != 0) {
    complain("%s: not get or set", action);
    return kExitUsage;
  }
  if (arguments.count < (sets ? 3 : 2)) {
    complain("%s takes %s %s", action, kind.argument, sets ? "NAME=VALUE..." : "[NAME...]");
    return kExitUsage;
  }
  ParamPath item;
  if (!kind.parse(arguments.values[1], item)) {
    return kExitUsage;
  }
  const Arguments rest = {arguments.count - 2, arguments.values + 2};
  return sets ? set_attributes(kind, item, rest, options.timeout)
              : get_attributes(kind, item, rest, options);
}

}  // namespace

int run_attr(const Options &options, const Arguments &arguments) {
  return run(kParameter, options, arguments);
}

int run_object(const Options &options, const Arguments &arguments) {
  return run(kObject, options, arguments);
}

}  // namespace zrcfg_tool
