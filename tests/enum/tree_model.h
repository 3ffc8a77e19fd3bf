// A tree of objects kept by the test: put into the store, and listed by rules written down again.
#ifndef ZRCFG_TESTS_ENUM_TREE_MODEL_H_
#define ZRCFG_TESTS_ENUM_TREE_MODEL_H_

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/enum/enum_support.h"

namespace zrcfg_test {

struct ModelObject {
  std::string name;
  bool has_file = true;
  PropertyFile file;
  std::vector<ModelObject> children;
  std::vector<std::string> sockets;  // Entries whose type has the directory's bit.
};

// Numbers by value, then names by byte. No two names may stand for one number.
bool comes_before(const std::string &left, const std::string &right);

// Writes the object and all below it; `dir` ends with the object's name and a slash.
void store_tree(const std::string &dir, const ModelObject &object);

// Whether the template that guards an object has a property file; nothing without a template.
using Guard = std::optional<bool>;
Guard guard_of_child(const Guard &guard, const ModelObject &parent, const ModelObject &child);

bool is_visible(const ModelObject &object);
// What is expected of zrcfg_getallsubobj (nothing without a lock file), zrcfg_getsubobjinfo and the
// two forms of zrcfg_allnode_get (empty for -1), by the URL of the object.
std::optional<std::vector<std::string>> expected_names(const ModelObject &object,
                                                       const Guard &guard);
std::vector<Node> expected_children(const std::string &url, const ModelObject &object);
std::vector<Node> expected_object(const std::string &url, const ModelObject &object);
std::vector<Node> expected_walk(const std::string &url, const ModelObject &object,
                                const Guard &guard);

// A tree of any shape of at most `depth` levels below the object.
ModelObject random_tree(std::mt19937 &random, const std::string &name, unsigned depth);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_ENUM_TREE_MODEL_H_
