// Object URLs, object directories and the property file of a directory.
#ifndef ZRCFG_CORE_OBJECT_PATH_H_
#define ZRCFG_CORE_OBJECT_PATH_H_

#include <stddef.h>
#include <stdint.h>

extern "C" {
// Turns every "." of the text into "/", in place. Null does nothing.
void ChangeUrlWithDirFormat(char *path);

// Whether `path` can be opened as a directory: 1 or 0.
int isDirExist(const char *path);

// Writes `dir` followed by "property.conf" into `out` (kFilePathSize bytes for what the library
// passes). 0 when the file exists, 8 when not, 10 for null or when it cannot fit.
uint32_t getPropertyFile(const char *dir, char *out);
}

namespace zrcfg {

inline constexpr size_t kUrlSize = 256;  // An object URL or directory with its terminator.
// A directory with "0/" or a number behind it, "property.conf" and the terminator.
inline constexpr size_t kFilePathSize = 288;

// Appends `suffix` to the directory path `dir` in `out`. False when `size` bytes do not hold it.
bool join_path(char *out, size_t size, const char *dir, const char *suffix);

// An object's directory path, made from its URL.
struct DirPath {
  char text[kUrlSize];
};

// Copies and converts a URL that is known to be shorter than kUrlSize.
void url_to_dir_path(const char *url, DirPath &path);

// Logs and returns false when the URL has kUrlSize characters or more.
bool url_length_ok(const char *url);

}  // namespace zrcfg

#endif  // ZRCFG_CORE_OBJECT_PATH_H_
