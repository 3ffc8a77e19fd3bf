// The `syntax` and `dataType` elements of a document, resolved into what a value may be.
#include "tools/mkstore/syntax_reader.h"

#include <cstring>
#include <string_view>

#include "tools/mkstore/number_text.h"
#include "tools/mkstore/text.h"
#include "tools/mkstore/value_check.h"

namespace zrcfg::mkstore {

namespace {

constexpr int kMaxTypeDepth = 32;  // Of types derived from types; a circle ends here.

constexpr BaseType kBaseTypes[] = {
    BaseType::kString,    BaseType::kInt,    BaseType::kUnsignedInt, BaseType::kBoolean,
    BaseType::kDateTime,  BaseType::kBase64, BaseType::kLong,        BaseType::kUnsignedLong,
    BaseType::kHexBinary, BaseType::kDecimal};

std::optional<BaseType> base_type(std::string_view element) {
  for (const BaseType type : kBaseTypes) {
    if (element == type_name(type)) {
      return type;
    }
  }
  return std::nullopt;
}

bool deleted(const pugi::xml_node &element) {
  return std::strcmp(element.attribute("status").value(), "deleted") == 0;
}

bool flag(const pugi::xml_node &element, const char *name) {
  const std::string value = trimmed(element.attribute(name).value());
  return value == "true" || value == "1" || value == "legacy" || value == "required";
}

size_t count_attribute(const pugi::xml_node &element, const char *name, size_t absent) {
  const std::string text = trimmed(element.attribute(name).value());
  if (text.empty() || text == "unbounded") {
    return absent;
  }
  const std::optional<size_t> count = parse_count(text, kNoLimit - 1);
  if (!count) {
    throw std::string(name) + " \"" + text + "\" of " + element.name() + " is not a number";
  }
  return *count;
}

std::optional<Number> number_attribute(const pugi::xml_node &element, const char *name) {
  const std::string text = trimmed(element.attribute(name).value());
  if (text.empty()) {
    return std::nullopt;
  }
  const std::optional<Number> number = parse_number(text, true);
  if (!number) {
    throw std::string(name) + " \"" + text + "\" of " + element.name() + " is not a number";
  }
  return number;
}

std::vector<Size> read_sizes(const pugi::xml_node &holder) {
  std::vector<Size> sizes;
  for (const pugi::xml_node &element : holder.children("size")) {
    if (!deleted(element)) {
      sizes.push_back({count_attribute(element, "minLength", 0),
                       count_attribute(element, "maxLength", kNoLimit)});
    }
  }
  return sizes;
}

std::vector<Range> read_ranges(const pugi::xml_node &holder) {
  std::vector<Range> ranges;
  for (const pugi::xml_node &element : holder.children("range")) {
    if (deleted(element)) {
      continue;
    }
    Range range{number_attribute(element, "minInclusive"),
                number_attribute(element, "maxInclusive"),
                number_attribute(element, "step").value_or(0)};
    if (range.step < 0) {
      throw std::string("step of range is below 0");
    }
    ranges.push_back(range);
  }
  return ranges;
}

// Elements that say what a text refers to.
constexpr const char *kReferences[] = {"pathRef", "instanceRef", "enumerationRef"};

// Sizes and ranges narrow what the type permitted so far; enumerations and patterns add to it.
void apply_facets(const pugi::xml_node &holder, Facets &facets) {
  std::vector<Size> sizes = read_sizes(holder);
  if (!sizes.empty()) {
    facets.sizes = std::move(sizes);
  }
  std::vector<Range> ranges = read_ranges(holder);
  if (!ranges.empty()) {
    facets.ranges = std::move(ranges);
  }
  for (const pugi::xml_node &element : holder.children("enumeration")) {
    if (!deleted(element)) {
      facets.enumerations.emplace_back(element.attribute("value").value());
    }
  }
  for (const pugi::xml_node &element : holder.children("pattern")) {
    if (!deleted(element)) {
      facets.patterns.emplace_back(element.attribute("value").value());
    }
  }
  for (const char *name : kReferences) {
    for (const pugi::xml_node &element : holder.children(name)) {
      facets.reference = facets.reference || !deleted(element);
    }
  }
}

void apply_list(const pugi::xml_node &element, Syntax &syntax) {
  ListRule rule;
  rule.min_items = count_attribute(element, "minItems", 0);
  rule.max_items = count_attribute(element, "maxItems", kNoLimit);
  rule.nested_brackets = flag(element, "nestedBrackets");
  rule.sizes = read_sizes(element);
  syntax.list = std::move(rule);
}

void apply_named_type(const std::string &name, const DataTypes &types, int depth, Syntax &syntax);

// The type element of a `syntax` or `dataType` element: a base type, or a reference to a named one.
bool apply_type_element(const pugi::xml_node &holder, const DataTypes &types, int depth,
                        Syntax &syntax) {
  for (const pugi::xml_node &element : holder.children()) {
    const std::optional<BaseType> type = base_type(element.name());
    if (type) {
      syntax.type = *type;
      apply_facets(element, syntax.facets);
      return true;
    }
    if (std::strcmp(element.name(), "dataType") == 0) {
      const char *attribute = element.attribute("ref") ? "ref" : "base";
      apply_named_type(trimmed(element.attribute(attribute).value()), types, depth, syntax);
      apply_facets(element, syntax.facets);
      return true;
    }
  }
  return false;
}

void apply_named_type(const std::string &name, const DataTypes &types, int depth, Syntax &syntax) {
  const auto found = types.find(name);
  if (found == types.end()) {
    throw "the data type \"" + name + "\" is not in the document";
  }
  if (depth >= kMaxTypeDepth) {
    throw "the data type \"" + name + "\" is derived from itself";
  }
  const pugi::xml_node &type = found->second;
  const std::string base = trimmed(type.attribute("base").value());
  if (!base.empty()) {
    apply_named_type(base, types, depth + 1, syntax);
  }
  if (const pugi::xml_node list = type.child("list")) {
    apply_list(list, syntax);
  }
  if (!apply_type_element(type, types, depth + 1, syntax) && base.empty()) {
    throw "the data type \"" + name + "\" has no base type";
  }
  apply_facets(type, syntax.facets);
}

}  // namespace

DataTypes read_data_types(const pugi::xml_node &document) {
  DataTypes types;
  for (const pugi::xml_node &type : document.children("dataType")) {
    types.emplace(trimmed(type.attribute("name").value()), type);
  }
  return types;
}

Syntax read_syntax(const pugi::xml_node &element, const DataTypes &types) {
  Syntax syntax;
  if (!element) {
    throw std::string("it has no syntax");
  }
  if (!apply_type_element(element, types, 0, syntax)) {
    throw std::string("its syntax has no type that is known");
  }
  if (const pugi::xml_node list = element.child("list")) {
    apply_list(list, syntax);
  }
  for (const pugi::xml_node &value : element.children("default")) {
    const std::string kind = value.attribute("type").value();
    if (!deleted(value) && !syntax.default_value && (kind == "object" || kind == "factory")) {
      syntax.default_value = value.attribute("value").value();
    }
  }
  return syntax;
}

}  // namespace zrcfg::mkstore
