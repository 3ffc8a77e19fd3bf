// The configuration tree as it lies on the disk, read without the library's help.
#ifndef ZRCFG_BENCH_TREE_H_
#define ZRCFG_BENCH_TREE_H_

#include <stdint.h>

#include <string>
#include <vector>

namespace bench {

struct Parameter {
  std::string name;
  std::string value;
  uint8_t rw;
};

struct Object {
  std::string url;
  uint8_t rw;
  bool in_template;     // A template instance, or below one.
  std::string counter;  // The parent's parameter that counts a table's instances.
  std::vector<Parameter> parameters;
};

// All objects in the order of a listing: an object, then its sub-objects, numbers by value first.
using Tree = std::vector<Object>;

// Reads everything below `dir` + the path of `url`. Throws on a file that is not well formed.
Tree read_tree(const std::string &dir, const std::string &url);

std::string dir_path_of(const std::string &url);

}  // namespace bench

#endif  // ZRCFG_BENCH_TREE_H_
