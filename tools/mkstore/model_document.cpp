// Reads a Broadband Forum data model document in its flattened form.
#include "tools/mkstore/model_document.h"

#include <algorithm>
#include <cstring>
#include <pugixml.hpp>
#include <set>

#include "core/property_file.h"
#include "tools/mkstore/build_error.h"
#include "tools/mkstore/filter_pattern.h"
#include "tools/mkstore/model_tree.h"
#include "tools/mkstore/pattern_text.h"
#include "tools/mkstore/syntax_reader.h"
#include "tools/mkstore/text.h"
#include "tools/mkstore/value_check.h"

namespace zrcfg::mkstore {

namespace {

constexpr size_t kMaxNameLength = kNameSize - 1;
constexpr uint8_t kNotificationOff = 0;
constexpr uint8_t kNotificationActive = 2;

// A parsed document with what is needed to name places in it.
struct Document {
  std::string file;
  std::vector<size_t> line_starts;
  pugi::xml_document xml;
  DataTypes types;
};

size_t line_of(const Document &document, ptrdiff_t offset) {
  if (offset < 0) {
    return 1;
  }
  const auto after = std::upper_bound(document.line_starts.begin(), document.line_starts.end(),
                                      static_cast<size_t>(offset));
  return static_cast<size_t>(after - document.line_starts.begin());
}

[[noreturn]] void fail_at(const Document &document, const pugi::xml_node &node,
                          const std::string &element, const std::string &reason) {
  fail_at_line(document.file, line_of(document, node.offset_debug()), element + ": " + reason);
}

void parse(Document &document) {
  const std::string content = read_whole_file(document.file);
  document.line_starts.push_back(0);
  for (size_t at = content.find('\n'); at != std::string::npos; at = content.find('\n', at + 1)) {
    document.line_starts.push_back(at + 1);
  }
  const pugi::xml_parse_result result = document.xml.load_buffer(content.data(), content.size());
  if (!result) {
    fail_at_line(document.file, line_of(document, result.offset),
                 std::string("not well-formed XML: ") + result.description());
  }
}

// The root element's prefix is free, so only the name behind it counts.
pugi::xml_node root_element(const Document &document) {
  const pugi::xml_node root = document.xml.document_element();
  const char *colon = std::strchr(root.name(), ':');
  if (std::strcmp(colon == nullptr ? root.name() : colon + 1, "document") != 0) {
    fail_at(document, root, std::string("<") + root.name() + ">",
            "not a data model document, whose root element is dm:document");
  }
  return root;
}

pugi::xml_node find_model(const Document &document, const pugi::xml_node &root,
                          const std::string &wanted) {
  std::string known;
  pugi::xml_node found;
  size_t count = 0;
  for (const pugi::xml_node &model : root.children("model")) {
    const std::string name = trimmed(model.attribute("name").value());
    known += (known.empty() ? "" : ", ") + name;
    ++count;
    if (!found && (wanted.empty() || name == wanted)) {
      found = model;
    }
  }
  if (count == 0) {
    fail(document.file, "the document has no model");
  }
  if (!found) {
    fail(document.file, "no model named \"" + wanted + "\"; the document has " + known);
  }
  if (wanted.empty() && count > 1) {
    fail(document.file, "several models, choose one with --model-name: " + known);
  }
  return found;
}

bool read_access(const Document &document, const pugi::xml_node &node, const std::string &element) {
  const std::string access = trimmed(node.attribute("access").value());
  if (access != "readOnly" && access != "readWrite") {
    fail_at(document, node, element, "access \"" + access + "\" is not readOnly or readWrite");
  }
  return access == "readWrite";
}

void read_notification(const Document &document, const pugi::xml_node &node,
                       const std::string &element, Parameter &parameter) {
  const std::string notify = trimmed(node.attribute("activeNotify").value());
  if (!notify.empty() && notify != "normal" && notify != "forceEnabled" &&
      notify != "forceDefaultEnabled" && notify != "canDeny") {
    fail_at(document, node, element, "activeNotify \"" + notify + "\" is not known");
  }
  const bool enabled = notify == "forceEnabled" || notify == "forceDefaultEnabled";
  parameter.notification = enabled ? kNotificationActive : kNotificationOff;
  parameter.notification_changeable = notify != "forceEnabled";
  const std::string inform = trimmed(node.attribute("forcedInform").value());
  parameter.forced_inform = inform == "true" || inform == "1";
}

// The first permitted value. Some documents give a length that no text of their own patterns has;
// the patterns are then the better witness, and the lengths are dropped from the syntax.
std::optional<std::string> derive_value(const std::string &element, Syntax &syntax,
                                        std::vector<std::string> &warnings) {
  std::optional<std::string> value = first_value(syntax);
  if (value || syntax.facets.patterns.empty() || syntax.facets.sizes.empty()) {
    return value;
  }
  syntax.facets.sizes.clear();
  warnings.push_back(element + ": its lengths contradict its patterns and are not used");
  return first_value(syntax);
}

void set_initial_value(const Document &document, const pugi::xml_node &node,
                       const std::string &element, Parameter &parameter,
                       std::vector<std::string> &warnings) {
  const std::optional<std::string> value = parameter.syntax.default_value
                                               ? parameter.syntax.default_value
                                               : derive_value(element, parameter.syntax, warnings);
  if (!value) {
    fail_at(document, node, element, "no permitted value can be derived, and it has no default");
  }
  const std::string problem = storage_problem(*value);
  if (!problem.empty()) {
    fail_at(document, node, element, problem);
  }
  parameter.initial = *value;
}

void warn_of_oddities(const std::string &element, const Parameter &parameter,
                      std::vector<std::string> &warnings) {
  for (const std::string &pattern : parameter.syntax.facets.patterns) {
    if (!pattern_usable(pattern)) {
      warnings.push_back(element + ": the pattern \"" + pattern + "\" cannot be checked");
    }
  }
  Syntax syntax = parameter.syntax;
  syntax.default_value.reset();  // Otherwise the default would be permitted as such.
  const std::string problem = value_problem(syntax, parameter.initial);
  if (!problem.empty()) {
    warnings.push_back(element + ": the default is kept although " + problem);
  }
}

Parameter read_parameter(const Document &document, const pugi::xml_node &node,
                         const std::string &object_path, std::vector<std::string> &warnings) {
  Parameter parameter;
  parameter.name = trimmed(node.attribute("name").value());
  const std::string element = object_path + parameter.name;
  if (!is_plain_name(parameter.name)) {
    fail_at(document, node, element, "\"" + parameter.name + "\" is not a parameter name");
  }
  if (parameter.name.size() > kMaxNameLength) {
    fail_at(document, node, element,
            "the name has " + std::to_string(parameter.name.size()) + " characters, more than " +
                std::to_string(kMaxNameLength));
  }
  parameter.writable = read_access(document, node, element);
  read_notification(document, node, element, parameter);
  try {
    parameter.syntax = read_syntax(node.child("syntax"), document.types);
  } catch (const std::string &reason) {
    fail_at(document, node, element, reason);
  }
  set_initial_value(document, node, element, parameter, warnings);
  warn_of_oddities(element, parameter, warnings);
  parameter.filter = compile_filter(parameter.syntax, parameter.initial);
  return parameter;
}

void read_parameters(const Document &document, const pugi::xml_node &node, Object &object,
                     std::vector<std::string> &warnings) {
  std::set<std::string> names;
  for (const pugi::xml_node &child : node.children("parameter")) {
    object.parameters.push_back(read_parameter(document, child, object.path, warnings));
    const std::string &name = object.parameters.back().name;
    if (!names.insert(name).second) {
      fail_at(document, child, object.path + name,
              "the object has a parameter of this name already");
    }
  }
  if (object.parameters.size() > kMaxServedRecords) {
    fail_at(document, node, object.path,
            std::to_string(object.parameters.size()) + " parameters, more than " +
                std::to_string(kMaxServedRecords));
  }
}

size_t read_entries(const Document &document, const pugi::xml_node &node, const Object &object,
                    const char *attribute, size_t absent) {
  const std::string text = trimmed(node.attribute(attribute).value());
  if (text.empty()) {
    return absent;
  }
  if (text == "unbounded" && std::strcmp(attribute, "maxEntries") == 0) {
    return kNoLimit;
  }
  const std::optional<size_t> count = parse_count(text, kNoLimit - 1);
  if (!count) {
    fail_at(document, node, object.path,
            std::string(attribute) + " \"" + text + "\" is not a number");
  }
  return *count;
}

void read_table(const Document &document, const pugi::xml_node &node, Object &object) {
  object.min_entries = read_entries(document, node, object, "minEntries", 0);
  object.max_entries = read_entries(document, node, object, "maxEntries", kNoLimit);
  object.counter = trimmed(node.attribute("numEntriesParameter").value());
  if (object.min_entries > object.max_entries) {
    fail_at(document, node, object.path, "minEntries is above maxEntries");
  }
  if (object.min_entries > kMaxInstances) {
    fail_at(document, node, object.path,
            "minEntries " + std::to_string(object.min_entries) + " is above " +
                std::to_string(kMaxInstances));
  }
}

Object read_object(const Document &document, const pugi::xml_node &node,
                   std::vector<std::string> &warnings) {
  Object object;
  object.path = trimmed(node.attribute("name").value());
  object.line = line_of(document, node.offset_debug());
  if (object.path.empty()) {
    fail_at(document, node, "<object>", "no name; only the flattened form of a model can be built");
  }
  const std::string problem = object_path_problem(object.path);
  if (!problem.empty()) {
    fail_at(document, node, object.path, problem);
  }
  name_from_path(object);
  object.writable = read_access(document, node, object.path);
  if (object.is_table) {
    read_table(document, node, object);
  }
  read_parameters(document, node, object, warnings);
  return object;
}

// A counter holds whatever number of instances there is, even where the document limits it.
void free_counters(Model &model) {
  for (const Object &table : model.objects) {
    const std::optional<size_t> counter =
        table.is_table ? counter_index(model, table) : std::nullopt;
    if (counter) {
      Parameter &parameter = model.objects[table.parent].parameters[*counter];
      parameter.syntax.facets.ranges.clear();
      parameter.filter = compile_filter(parameter.syntax, parameter.initial);
    }
  }
}

}  // namespace

Model load_model(const std::string &file, const std::string &model_name,
                 std::vector<std::string> &warnings) {
  Document document;
  document.file = file;
  parse(document);
  const pugi::xml_node root = root_element(document);
  document.types = read_data_types(root);
  const pugi::xml_node node = find_model(document, root, model_name);

  Model model;
  model.file = file;
  model.name = trimmed(node.attribute("name").value());
  for (const pugi::xml_node &child : node.children("object")) {
    model.objects.push_back(read_object(document, child, warnings));
  }
  if (model.objects.empty()) {
    fail_at(document, node, model.name, "the model has no objects");
  }
  if (const pugi::xml_node stray = node.child("parameter")) {
    fail_at(document, stray, trimmed(stray.attribute("name").value()),
            "a parameter outside any object has no place in a store");
  }
  connect_objects(model, warnings);
  free_counters(model);
  return model;
}

}  // namespace zrcfg::mkstore
