// The instances, values and attributes files: one entry a line, comments, places for messages.
#include "tools/mkstore/list_file.h"

#include <functional>
#include <optional>

#include "tools/mkstore/build_error.h"
#include "tools/mkstore/model_tree.h"
#include "tools/mkstore/text.h"
#include "tools/mkstore/value_check.h"

namespace zrcfg::mkstore {

namespace {

// Calls `use` for every line that is neither empty nor a comment. Line feeds end lines, nothing is
// trimmed, and the last line may lack its line feed. Reasons thrown as text get file and line.
void for_each_entry(const std::string &file,
                    const std::function<void(const std::string &, const Place &)> &use) {
  const std::vector<std::string> lines = split(read_whole_file(file), '\n');
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].empty() || lines[i].front() == '#') {
      continue;
    }
    try {
      use(lines[i], Place{file, i + 1});
    } catch (const std::string &reason) {
      fail_at_line(file, i + 1, reason);
    }
  }
}

// An object URL with instance numbers, such as "A.1.B.". Throws std::string.
Address resolve_url(const Model &model, const std::string &url) {
  if (url.empty() || url.back() != '.') {
    throw "\"" + url + "\" does not end in a dot";
  }
  Address address{kNoObject, {}};
  bool number_follows = false;
  for (const std::string &name : split(url.substr(0, url.size() - 1), '.')) {
    if (const std::optional<size_t> number = parse_count(name, kMaxInstances)) {
      const bool canonical = std::to_string(*number) == name;
      if (!number_follows || !canonical) {
        throw "no object " + url + " in the model: \"" + name + "\" is no instance number here";
      }
      address.numbers.push_back(static_cast<uint8_t>(*number));
      number_follows = false;
      continue;
    }
    const bool top = address.object == kNoObject;
    const size_t child =
        number_follows
            ? kNoObject
            : find_child(model, top ? model.roots : model.objects[address.object].children, name);
    if (child == kNoObject) {
      throw "no object " + url + " in the model: \"" + name + "\" is unknown here";
    }
    address.object = child;
    number_follows = model.objects[child].is_table;
  }
  return address;
}

// A parameter path: the address of its object and its position there. Throws std::string.
size_t resolve_parameter(const Model &model, const std::string &path, Address &address) {
  const size_t dot = path.rfind('.');
  if (dot == std::string::npos) {
    throw "\"" + path + "\" is not the full path of a parameter";
  }
  address = resolve_url(model, path.substr(0, dot + 1));
  const std::string name = path.substr(dot + 1);
  const std::vector<Parameter> &parameters = model.objects[address.object].parameters;
  for (size_t i = 0; i < parameters.size() && !is_table_header(model, address); ++i) {
    if (parameters[i].name == name) {
      return i;
    }
  }
  throw "no parameter " + path + " in the model";
}

ObjectSettings &settings_at(Settings &settings, const Address &address, const Place &place) {
  const auto [found, fresh] = settings.objects.try_emplace(address);
  if (fresh) {
    found->second.place = place;
  }
  return found->second;
}

// Numbers of several digits make paths longer than the template's. Throws std::string.
void check_path_length(const Object &object, const std::string &url) {
  std::string longest;
  for (const Parameter &parameter : object.parameters) {
    longest = parameter.name.size() > longest.size() ? parameter.name : longest;
  }
  if (url.size() + longest.size() > kMaxPathLength) {
    throw url + longest + ": the path has " + std::to_string(url.size() + longest.size()) +
        " characters, more than " + std::to_string(kMaxPathLength);
  }
}

// Asks for every instance along the path; templates are there anyway.
void want_instances(const Model &model, const Address &instance, const Place &place,
                    Settings &settings) {
  Numbers numbers = instance.numbers;
  for (size_t at = instance.object; at != kNoObject; at = model.objects[at].parent) {
    if (!model.objects[at].is_table) {
      continue;
    }
    const uint8_t number = numbers.back();
    numbers.pop_back();
    if (number != 0) {
      settings.instances[Address{at, numbers}].emplace(number, place);
    }
  }
}

}  // namespace

void read_instances_file(const std::string &file, const Model &model, Settings &settings) {
  for_each_entry(file, [&](const std::string &line, const Place &place) {
    const std::string url = trimmed(line);
    if (url.empty() || url.front() == '#') {
      return;
    }
    const Address address = resolve_url(model, url);
    if (!model.objects[address.object].is_table || is_table_header(model, address)) {
      throw url + " is not an instance of a table";
    }
    if (address.numbers.back() == 0) {
      throw url + " is a template, which is always made";
    }
    check_path_length(model.objects[address.object], url);
    want_instances(model, address, place, settings);
  });
}

void read_values_file(const std::string &file, const Model &model, Settings &settings) {
  for_each_entry(file, [&](const std::string &line, const Place &place) {
    const size_t equals = line.find('=');
    if (equals == std::string::npos) {
      throw std::string("expected full.parameter.path=value");
    }
    const std::string path = line.substr(0, equals);
    const std::string value = line.substr(equals + 1);
    Address address;
    const size_t position = resolve_parameter(model, path, address);
    const Parameter &parameter = model.objects[address.object].parameters[position];
    std::string problem = storage_problem(value);
    if (problem.empty()) {
      problem = value_problem(parameter.syntax, value);
    }
    if (problem.empty()) {
      problem = filter_problem(parameter.filter, value);
    }
    if (!problem.empty()) {
      throw path + ": " + problem;
    }
    settings_at(settings, address, place).values[position] = ValueSetting{value, place};
  });
}

void read_attributes_file(const std::string &file, const Model &model, Settings &settings) {
  for_each_entry(file, [&](const std::string &line, const Place &place) {
    const size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string::npos || line[start] == '#') {
      return;
    }
    const size_t blank = line.find_first_of(" \t", start);
    const size_t name_at = line.find_first_not_of(" \t", blank);
    const size_t equals = line.find('=', start);
    if (blank == std::string::npos || equals == std::string::npos || equals < name_at) {
      throw std::string("expected PATH NAME=VALUE");
    }
    const std::string path = line.substr(start, blank - start);
    const std::string name = line.substr(name_at, equals - name_at);
    const std::string value = line.substr(equals + 1);
    if (path.back() == '.') {
      const Address address = resolve_url(model, path);
      settings_at(settings, address, place)
          .object_attributes.push_back(object_attribute(name, value));
      return;
    }
    Address address;
    const size_t position = resolve_parameter(model, path, address);
    settings_at(settings, address, place)
        .parameter_attributes[position]
        .push_back(parameter_attribute(name, value));
  });
}

}  // namespace zrcfg::mkstore
