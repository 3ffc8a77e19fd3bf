// Attributes by name and by number, of parameters and of objects.
#include "tools/zrcfg/attribute_table.h"

#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/number.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr AttributeKind kByte = AttributeKind::kByte;
constexpr AttributeKind kWord = AttributeKind::kWord;
constexpr AttributeKind kText = AttributeKind::kText;

constexpr Attribute kParam[] = {
    {"flash_rw", 0, kByte, offsetof(ParamAttr, flash_rw), 1},
    {"hide", 1, kByte, offsetof(ParamAttr, hide), 1},
    {"rw", 2, kByte, offsetof(ParamAttr, rw), 3},
    {"noti", 3, kByte, offsetof(ParamAttr, noti), 15},
    {"namechange", 12, kByte, offsetof(ParamAttr, namechange), 1},
    {"noti_rw", 4, kByte, offsetof(ParamAttr, noti_rw), 1},
    {"inform_dbus", 5, kByte, offsetof(ParamAttr, inform_dbus), 255},
    {"key", 6, kByte, offsetof(ParamAttr, key), 15},
    {"encryt", 7, kByte, offsetof(ParamAttr, encryt), 3},
    {"device_type", 8, kByte, offsetof(ParamAttr, device_type), 255},
    {"type", 9, kByte, offsetof(ParamAttr, type), 255},
    {"flash_encryt", 13, kByte, offsetof(ParamAttr, flash_encryt), 1},
    {"inform_tr069", 15, kByte, offsetof(ParamAttr, inform_tr069), 1},
    {"accesslist", 10, kText, offsetof(ParamAttr, accesslist), sizeof(ParamAttr::accesslist)},
    {"area", 11, kText, offsetof(ParamAttr, area), sizeof(ParamAttr::area)},
    // The library reads the text as a signed number.
    {"param_check", 16, kWord, offsetof(ParamAttr, param_check), INT32_MAX},
};

constexpr Attribute kObject[] = {
    {"flag0", 0, kByte, offsetof(ObjAttr, flag0), 1},
    {"hide", 1, kByte, offsetof(ObjAttr, hide), 1},
    {"rw", 2, kByte, offsetof(ObjAttr, rw), 3},
    {"level3", 3, kByte, offsetof(ObjAttr, level3), 255},
    {"key", 4, kByte, offsetof(ObjAttr, key), 15},
    {"max_instance", 5, kByte, offsetof(ObjAttr, max_instance), 255},
    {"device_type", kNotSettable, kByte, offsetof(ObjAttr, device_type), 255},
    {"level7", 10, kByte, offsetof(ObjAttr, level7), 15},
    {"flag8", 13, kByte, offsetof(ObjAttr, flag8), 1},
    {"flag9", 11, kByte, offsetof(ObjAttr, flag9), 1},
    {"flag11", 14, kByte, offsetof(ObjAttr, flag11), 1},
    {"pnoe", kNotSettable, kText, offsetof(ObjAttr, pnoe), sizeof(ObjAttr::pnoe)},
    {"devfunc", kNotSettable, kText, offsetof(ObjAttr, devfunc), sizeof(ObjAttr::devfunc)},
    {"extra_text", kNotSettable, kText, offsetof(ObjAttr, extra_text), sizeof(ObjAttr::extra_text)},
};

bool number_ok(const Attribute &attribute, const char *text) {
  int number;
  if (parse_number(text, strlen(text), number) &&
      static_cast<uint32_t>(number) <= attribute.limit) {
    return true;
  }
  complain("%s=%s: not a number from 0 to %" PRIu32, attribute.name, text, attribute.limit);
  return false;
}

bool text_ok(const Attribute &attribute, const char *text) {
  if (strlen(text) < attribute.limit) {
    return true;
  }
  complain("%s=%s: longer than %" PRIu32 " characters", attribute.name, text, attribute.limit - 1);
  return false;
}

void print_attribute(const Attribute &attribute, const void *record, RecordPrinter &printer) {
  const char *const field = static_cast<const char *>(record) + attribute.offset;
  if (attribute.kind == AttributeKind::kText) {
    char text[sizeof(ObjAttr::pnoe) + 1];  // No field is longer.
    (void)snprintf(text, sizeof text, "%.*s", static_cast<int>(attribute.limit), field);
    printer.print(Field::of(attribute.name, text));
    return;
  }
  uint32_t number = static_cast<uint8_t>(*field);
  if (attribute.kind == AttributeKind::kWord) {
    memcpy(&number, field, sizeof number);
  }
  printer.print(Field::of(attribute.name, number));
}

}  // namespace

const AttributeTable kParamAttributes = {kParam, sizeof kParam / sizeof kParam[0]};
const AttributeTable kObjectAttributes = {kObject, sizeof kObject / sizeof kObject[0]};

const Attribute *find_attribute(const AttributeTable &table, const char *text, size_t length) {
  int number;
  const bool by_number = parse_number(text, length, number);
  for (size_t i = 0; i < table.count; ++i) {
    const Attribute &attribute = table.attributes[i];
    const bool named =
        strlen(attribute.name) == length && memcmp(attribute.name, text, length) == 0;
    if (by_number ? attribute.number == number : named) {
      return &attribute;
    }
  }
  complain("%.*s: no such attribute", static_cast<int>(length), text);
  return nullptr;
}

bool parse_attribute_change(const AttributeTable &table, const char *text,
                            AttributeChange &change) {
  const char *const equals = strchr(text, '=');
  if (equals == nullptr) {
    complain("%s: not NAME=VALUE", text);
    return false;
  }
  change.attribute = find_attribute(table, text, static_cast<size_t>(equals - text));
  change.value = equals + 1;
  if (change.attribute == nullptr) {
    return false;
  }
  if (change.attribute->number == kNotSettable) {
    complain("%s: cannot be set", change.attribute->name);
    return false;
  }
  return change.attribute->kind == AttributeKind::kText
             ? text_ok(*change.attribute, change.value)
             : number_ok(*change.attribute, change.value);
}

bool check_attribute_names(const AttributeTable &table, int count, char **names) {
  for (int i = 0; i < count; ++i) {
    if (find_attribute(table, names[i], strlen(names[i])) == nullptr) {
      return false;
    }
  }
  return true;
}

void print_attributes(const AttributeTable &table, const void *record, int count, char **names,
                      RecordPrinter &printer) {
  for (int i = 0; i < count; ++i) {
    const Attribute *const attribute = find_attribute(table, names[i], strlen(names[i]));
    if (attribute != nullptr) {
      print_attribute(*attribute, record, printer);
    }
  }
  for (size_t i = 0; count == 0 && i < table.count; ++i) {
    print_attribute(table.attributes[i], record, printer);
  }
}

}  // namespace zrcfg_tool
