// Testing, making, copying and removing files and directory trees of the store.
#ifndef ZRCFG_LIFECYCLE_DIR_TREE_H_
#define ZRCFG_LIFECYCLE_DIR_TREE_H_

// Paths are relative to the store root. A null path gives -1. Paths that the store cannot hold (255
// characters for what is created, the root "/var/" included) are passed over, never cut.
extern "C" {
// 1 a directory, 0 anything else, -1 not to be examined (a message goes to standard output).
int isDir(const char *path);

// Copies a file; into `dst` under its own name when that is a directory. An existing destination
// keeps what lies behind the copied bytes. 0, or -1. What could not be written is logged only.
int fileCopy(const char *src, const char *dst);

// Makes a directory and its missing ancestors, mode 0755. 0, or -1 (with a message on standard
// output when one cannot be made).
int createDir(const char *path);

// Copies a file or a directory tree, following symbolic links. 0, also when single files could not
// be copied; -1 when `src` cannot be examined.
int dirCopy(const char *src, const char *dst);

// Removes a directory tree, children first. 0, also when something could not be removed; -1 when
// the directory cannot be opened (a message goes to standard output).
int dirDel(const char *path);
}

namespace zrcfg {

// dirCopy that tells whether every path of the copy fitted.
int copy_tree(const char *src, const char *dst, bool &all_fitted);

}  // namespace zrcfg

#endif  // ZRCFG_LIFECYCLE_DIR_TREE_H_
