// The choice of the lock file: the property file of the outermost template instance on the path.
#ifndef ZRCFG_LOCK_LOCK_FILE_H_
#define ZRCFG_LOCK_LOCK_FILE_H_

namespace zrcfg {

// getLockFile that leaves the file open where finding it took an open: writes the lock file of
// `obj_path` to `file` (kFilePathSize bytes) and its read-only descriptor, or -1, to `*opened`.
// False when there is no lock file.
bool open_lock_file(const char *obj_path, char *file, int *opened);

}  // namespace zrcfg

#endif  // ZRCFG_LOCK_LOCK_FILE_H_
