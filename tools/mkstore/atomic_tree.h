// A directory tree that appears under its name complete or not at all.
#ifndef ZRCFG_TOOLS_MKSTORE_ATOMIC_TREE_H_
#define ZRCFG_TOOLS_MKSTORE_ATOMIC_TREE_H_

#include <string>

namespace zrcfg::mkstore {

// A tree under construction beside its target. What was not published is removed at the end.
struct AtomicTree {
  explicit AtomicTree(const std::string &output);
  ~AtomicTree();
  AtomicTree(const AtomicTree &) = delete;
  AtomicTree &operator=(const AtomicTree &) = delete;

  std::string target;   // The output directory without trailing slashes, links resolved.
  std::string working;  // Where the tree is built; empty when there is nothing to remove.
};

// Makes a directory or writes a file below the working directory. The parent must exist.
void make_directory(const AtomicTree &tree, const std::string &path);
void write_file(const AtomicTree &tree, const std::string &path, const std::string &bytes);

// Puts the tree in place of the target, which may be missing, empty or a store.
void publish(AtomicTree &tree);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_ATOMIC_TREE_H_
