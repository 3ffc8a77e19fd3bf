// Object paths of the data model, and the tree that they span.
#ifndef ZRCFG_TOOLS_MKSTORE_MODEL_TREE_H_
#define ZRCFG_TOOLS_MKSTORE_MODEL_TREE_H_

#include <string>
#include <vector>

#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

inline constexpr size_t kMaxInstances = 255;   // The limit of an instance number is one byte.
inline constexpr size_t kMaxPathLength = 255;  // Of an object's URL and of a parameter's full path.

// Letters, digits, '_' and '-', not all of them digits: a name that is one directory level.
bool is_plain_name(const std::string &name);

// Why a documented object path cannot be used; empty when it can.
std::string object_path_problem(const std::string &path);

// Sets `name` and `is_table` from the path.
void name_from_path(Object &object);

// The object of that name among `among`, or kNoObject.
size_t find_child(const Model &model, const std::vector<size_t> &among, const std::string &name);

// Links parents and children, implies missing ancestors, and checks lengths and counters.
void connect_objects(Model &model, std::vector<std::string> &warnings);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_MODEL_TREE_H_
