// A tree of objects kept by the test: put into the store, and listed by rules written down again.
#include "tests/enum/tree_model.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <stdexcept>

namespace zrcfg_test {
namespace {

bool is_number(const std::string &name) {
  return !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
}

std::vector<const ModelObject *> sorted_children(const ModelObject &object) {
  std::vector<const ModelObject *> sorted;
  for (const ModelObject &child : object.children) {
    if (child.name != "0") {
      sorted.push_back(&child);
    }
  }
  std::sort(sorted.begin(), sorted.end(), [](const ModelObject *a, const ModelObject *b) {
    return comes_before(a->name, b->name);
  });
  return sorted;
}

bool can_be_locked(const ModelObject &object, const Guard &guard) {
  return object.has_file || guard.value_or(false);
}

bool hidden_by(uint8_t hide, uint8_t device_type) {
  return hide != 0 || device_type == 0x40;
}

bool chance(std::mt19937 &random, unsigned percent) {
  return random() % 100 < percent;
}

uint8_t any_device_type(std::mt19937 &random) {
  static constexpr uint8_t kTypes[] = {0, 0, 0, 0, 1, 0x40, 0x41, 0xC0};
  return kTypes[random() % std::size(kTypes)];
}

PropertyFile random_file(std::mt19937 &random) {
  PropertyFile file = object_file(static_cast<uint8_t>(random() % 4));
  file.header.hide = chance(random, 10) ? 1 : 0;
  file.header.device_type = any_device_type(random);
  file.header.key = static_cast<uint8_t>(random() % 16);
  for (auto i = random() % 5; i > 0; --i) {
    ParamFields &param = file.add("P" + std::to_string(i), "v");
    param.rw = static_cast<uint8_t>(random() % 4);
    param.hide = chance(random, 20) ? 1 : 0;
    param.device_type = any_device_type(random);
  }
  return file;
}

std::string random_name(std::mt19937 &random) {
  static const char *const kNames[] = {"WANDevice", "Hosts", "a", "z", "lower", "_x", "Host", "X"};
  switch (random() % 4) {
    case 0:
      return kNames[random() % std::size(kNames)];
    case 1:
      return std::string(1 + random() % 20, static_cast<char>('A' + random() % 26));
    case 2:
      return std::to_string(random() % 12);
    default:
      return std::to_string(random() % 2000);
  }
}

}  // namespace

bool comes_before(const std::string &left, const std::string &right) {
  if (is_number(left) && is_number(right)) {
    return std::stoul(left) < std::stoul(right);
  }
  return left < right;
}

void store_tree(const std::string &dir, const ModelObject &object) {
  make_store_dir(dir);
  if (object.has_file) {
    write_property(dir, object.file);
  }
  write_store_file(dir + "note", "a file that is no object");
  if (symlink(".", store_path(dir + "Link").c_str()) != 0) {
    throw std::runtime_error("cannot link in " + dir);
  }
  for (const std::string &name : object.sockets) {
    if (mknod(store_path(dir + name).c_str(), S_IFSOCK | 0666, 0) != 0) {
      throw std::runtime_error("cannot make a socket in " + dir);
    }
  }
  for (const ModelObject &child : object.children) {
    store_tree(dir + child.name + "/", child);
  }
}

Guard guard_of_child(const Guard &guard, const ModelObject &parent, const ModelObject &child) {
  if (guard || !is_number(child.name)) {
    return guard;
  }
  for (const ModelObject &sibling : parent.children) {
    if (sibling.name == "0") {
      return sibling.has_file;
    }
  }
  return {};
}

bool is_visible(const ModelObject &object) {
  return object.has_file && !hidden_by(object.file.header.hide, object.file.header.device_type);
}

std::optional<std::vector<std::string>> expected_names(const ModelObject &object,
                                                       const Guard &guard) {
  if (!can_be_locked(object, guard)) {
    return {};
  }
  std::vector<std::string> names = object.sockets;
  for (const ModelObject *child : sorted_children(object)) {
    names.push_back(child->name);
  }
  std::sort(names.begin(), names.end(), comes_before);
  return names;
}

std::vector<Node> expected_children(const std::string &url, const ModelObject &object) {
  std::vector<Node> nodes;
  for (const ModelObject *child : sorted_children(object)) {
    if (is_visible(*child)) {
      nodes.emplace_back(url + child->name + ".", child->file.header.rw);
    }
  }
  return nodes;
}

std::vector<Node> expected_object(const std::string &url, const ModelObject &object) {
  if (!is_visible(object)) {
    return {};
  }
  std::vector<Node> nodes = {{url, object.file.header.rw}};
  for (const ParamFields &param : object.file.params) {
    if (!hidden_by(param.hide, param.device_type)) {
      nodes.emplace_back(url + param.name, param.rw);
    }
  }
  return nodes;
}

std::vector<Node> expected_walk(const std::string &url, const ModelObject &object,
                                const Guard &guard) {
  if (!can_be_locked(object, guard) || (object.has_file && !is_visible(object))) {
    return {};
  }
  std::vector<Node> nodes = expected_object(url, object);
  for (const ModelObject *child : sorted_children(object)) {
    const std::vector<Node> below =
        expected_walk(url + child->name + ".", *child, guard_of_child(guard, object, *child));
    nodes.insert(nodes.end(), below.begin(), below.end());
  }
  return nodes;
}

ModelObject random_tree(std::mt19937 &random, const std::string &name, unsigned depth) {
  ModelObject object;
  object.name = name;
  object.has_file = chance(random, 85);
  object.file = random_file(random);
  std::set<std::string> names;
  for (auto i = depth == 0 ? 0 : random() % 7; i > 0; --i) {
    names.insert(random_name(random));
  }
  if (depth > 0 && chance(random, 50)) {
    names.insert("0");
  }
  for (const std::string &child : names) {
    object.children.push_back(random_tree(random, child, depth - 1));
  }
  std::shuffle(object.children.begin(), object.children.end(), random);
  if (chance(random, 20)) {
    object.sockets.push_back("Socket");
  }
  return object;
}

}  // namespace zrcfg_test
