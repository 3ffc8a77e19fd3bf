// Object paths of the data model, and the tree that they span.
#include "tools/mkstore/model_tree.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "core/property_file.h"
#include "tools/mkstore/build_error.h"
#include "tools/mkstore/text.h"

namespace zrcfg::mkstore {

namespace {

constexpr std::string_view kInstanceMarker = "{i}.";
constexpr size_t kMaxNameLength = kNameSize - 1;

// Both forms of a path, "A.B." and "A.B.{i}.", take the directory A/B, so they share this key.
using PathIndex = std::map<std::string, size_t>;

bool ends_with(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

std::string without_marker(const std::string &path) {
  return ends_with(path, kInstanceMarker) ? path.substr(0, path.size() - kInstanceMarker.size())
                                          : path;
}

// "A.B.{i}.C." gives "A.B.{i}.", "A." gives an empty text.
std::string parent_path(const std::string &path) {
  std::string single = without_marker(path);
  single.pop_back();
  const size_t dot = single.rfind('.');
  return dot == std::string::npos ? std::string() : single.substr(0, dot + 1);
}

// The template's path is the shortest that the object can have.
std::string template_path(const std::string &path) {
  std::string text = path;
  for (size_t at = text.find("{i}"); at != std::string::npos; at = text.find("{i}", at)) {
    text.replace(at, 3, "0");
  }
  return text;
}

void check_lengths(const Model &model, const Object &object) {
  const std::string path = template_path(object.path);
  if (path.size() > kMaxPathLength) {
    fail_at_line(model.file, object.line,
                 object.path + ": the path has " + std::to_string(path.size()) +
                     " characters, more than " + std::to_string(kMaxPathLength));
  }
  for (const Parameter &parameter : object.parameters) {
    if (path.size() + parameter.name.size() > kMaxPathLength) {
      fail_at_line(model.file, object.line,
                   object.path + parameter.name + ": the path has " +
                       std::to_string(path.size() + parameter.name.size()) +
                       " characters, more than " + std::to_string(kMaxPathLength));
    }
  }
}

void check_counter(const Model &model, const Object &table, std::vector<std::string> &warnings) {
  if (table.counter.empty()) {
    return;
  }
  if (table.parent == kNoObject) {
    fail_at_line(model.file, table.line, table.path + ": a table without a parent has no counter");
  }
  const Object &parent = model.objects[table.parent];
  const size_t length = parent.name.size() + 1 + table.counter.size();
  if (length > kMaxNameLength) {
    fail_at_line(model.file, table.line,
                 table.path + ": the counter name " + parent.name + "/" + table.counter + " has " +
                     std::to_string(length) + " characters, more than " +
                     std::to_string(kMaxNameLength));
  }
  if (!counter_index(model, table)) {
    warnings.push_back(table.path + ": the counter " + table.counter + " is no parameter of " +
                       parent.path + ", so instances cannot be added later");
  }
}

// Adds the object at `path`, which the document mentions only as part of a longer path.
size_t imply_object(Model &model, PathIndex &index, const std::string &path, size_t line) {
  Object object;
  object.path = path;
  object.line = line;
  object.implied = true;
  name_from_path(object);
  model.objects.push_back(std::move(object));
  const size_t added = model.objects.size() - 1;
  index.emplace(without_marker(path), added);
  return added;
}

void index_object(const Model &model, PathIndex &index, size_t at) {
  const Object &object = model.objects[at];
  const auto [found, fresh] = index.emplace(without_marker(object.path), at);
  if (fresh) {
    return;
  }
  const Object &other = model.objects[found->second];
  fail_at_line(model.file, object.line,
               object.path + ": the document has " +
                   (other.path == object.path ? "this object" : other.path) + " already, in line " +
                   std::to_string(other.line));
}

}  // namespace

bool is_plain_name(const std::string &name) {
  bool only_digits = true;
  for (const char c : name) {
    const bool digit = c >= '0' && c <= '9';
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (!digit && !letter && c != '_' && c != '-') {
      return false;
    }
    only_digits = only_digits && digit;
  }
  return !name.empty() && !only_digits;
}

std::string object_path_problem(const std::string &path) {
  if (path.back() != '.') {
    return "the object path does not end in a dot";
  }
  std::vector<std::string> names = split(path.substr(0, path.size() - 1), '.');
  bool after_name = false;
  for (const std::string &name : names) {
    if (name == "{i}" && after_name) {
      after_name = false;
      continue;
    }
    if (!is_plain_name(name)) {
      return "\"" + name + "\" cannot be part of an object path";
    }
    if (name.size() > kMaxNameLength) {
      return "the name " + name + " has " + std::to_string(name.size()) +
             " characters, more than " + std::to_string(kMaxNameLength);
    }
    after_name = true;
  }
  return {};
}

void name_from_path(Object &object) {
  object.is_table = ends_with(object.path, kInstanceMarker);
  std::string single = without_marker(object.path);
  single.pop_back();
  object.name = single.substr(single.rfind('.') + 1);  // npos + 1 is 0: no dot, the whole text.
}

std::optional<size_t> counter_index(const Model &model, const Object &table) {
  if (table.counter.empty() || table.parent == kNoObject) {
    return std::nullopt;
  }
  const std::vector<Parameter> &parameters = model.objects[table.parent].parameters;
  const auto found = std::find_if(parameters.begin(), parameters.end(),
                                  [&](const Parameter &p) { return p.name == table.counter; });
  if (found == parameters.end()) {
    return std::nullopt;
  }
  return static_cast<size_t>(found - parameters.begin());
}

size_t find_child(const Model &model, const std::vector<size_t> &among, const std::string &name) {
  for (const size_t at : among) {
    if (model.objects[at].name == name) {
      return at;
    }
  }
  return kNoObject;
}

void connect_objects(Model &model, std::vector<std::string> &warnings) {
  PathIndex index;
  for (size_t at = 0; at < model.objects.size(); ++at) {
    index_object(model, index, at);
  }
  // Implied objects are appended while the loop runs, so that their own parents are found too.
  for (size_t at = 0; at < model.objects.size(); ++at) {
    const std::string path = model.objects[at].path;
    const std::string above = parent_path(path);
    if (above.empty()) {
      model.roots.push_back(at);
      continue;
    }
    const auto found = index.find(without_marker(above));
    const size_t line = model.objects[at].line;
    const size_t parent =
        found == index.end() ? imply_object(model, index, above, line) : found->second;
    if (model.objects[parent].path != above) {
      fail_at_line(
          model.file, line,
          path + ": its parent is " + model.objects[parent].path + " elsewhere in the document");
    }
    model.objects[at].parent = parent;
    model.objects[parent].children.push_back(at);
  }
  for (const Object &object : model.objects) {
    check_lengths(model, object);
    check_counter(model, object, warnings);
  }
}

}  // namespace zrcfg::mkstore
