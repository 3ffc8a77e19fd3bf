// Attributes by name and by number, of parameters and of objects.
#ifndef ZRCFG_TOOLS_ZRCFG_ATTRIBUTE_TABLE_H_
#define ZRCFG_TOOLS_ZRCFG_ATTRIBUTE_TABLE_H_

#include <stddef.h>
#include <stdint.h>

#include "tools/zrcfg/output.h"

namespace zrcfg_tool {

inline constexpr int kNotSettable = -1;

enum class AttributeKind { kByte, kWord, kText };

struct Attribute {
  const char *name;
  int number;  // In the library's calls, or kNotSettable.
  AttributeKind kind;
  size_t offset;   // In ParamAttr or ObjAttr.
  uint32_t limit;  // The highest number, or the bytes of a text's field.
};

// All attributes that one kind of item has, in the order of their record.
struct AttributeTable {
  const Attribute *attributes;
  size_t count;
};

// Constants, whose initialisers the check does not see here.
// NOLINTBEGIN(bugprone-dynamic-static-initializers)
extern const AttributeTable kParamAttributes;   // Offsets in ParamAttr.
extern const AttributeTable kObjectAttributes;  // Offsets in ObjAttr.
// NOLINTEND(bugprone-dynamic-static-initializers)

// The attribute that the `length` characters at `text` name or number; null, reported, for none.
const Attribute *find_attribute(const AttributeTable &table, const char *text, size_t length);

// A change of one attribute.
struct AttributeChange {
  const Attribute *attribute;
  const char *value;
};

// Splits NAME=VALUE and checks the value. Reports and returns false when it is none.
bool parse_attribute_change(const AttributeTable &table, const char *text, AttributeChange &change);

// Checks the names of a query, then prints those attributes of `record`, or all when `count` is 0.
bool check_attribute_names(const AttributeTable &table, int count, char **names);
void print_attributes(const AttributeTable &table, const void *record, int count, char **names,
                      RecordPrinter &printer);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_ATTRIBUTE_TABLE_H_
