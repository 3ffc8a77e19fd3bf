// The lines that were typed, kept in a file from one session to the next.
#include "tools/zrcfg/history.h"

#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include "tools/zrcfg/bytes.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kKeptLines = 1000;
constexpr size_t kMaxLines = 2 * kKeptLines;
constexpr size_t kMaxText = 16u << 20;

bool history_name(char (&name)[PATH_MAX]) {
  const char *const given = getenv("ZRCFG_HISTORY");
  if (given != nullptr) {
    const int length = snprintf(name, sizeof name, "%s", given);
    return length > 0 && static_cast<size_t>(length) < sizeof name;
  }
  const char *const home = getenv("HOME");
  if (home == nullptr || home[0] == '\0') {
    return false;
  }
  const int length = snprintf(name, sizeof name, "%s/.zrcfg_history", home);
  return length > 0 && static_cast<size_t>(length) < sizeof name;
}

// Puts other content in place of the file, as a whole or not at all.
void replace_file(const char *name, const char *text, size_t size) {
  char temporary[PATH_MAX + 8];
  (void)snprintf(temporary, sizeof temporary, "%s.XXXXXX", name);  // Fits.
  const int fd = mkostemp(temporary, O_CLOEXEC);
  if (fd == -1) {
    return;
  }
  const bool written = write(fd, text, size) == static_cast<ssize_t>(size);
  if (close(fd) != 0 || !written || rename(temporary, name) != 0) {
    (void)unlink(temporary);  // The older file stays.
  }
}

// A history is a regular file: a pipe or a device would hold everything up.
FILE *open_history(const char *name) {
  const int fd = open(name, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat status;
  if (fd == -1 || fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
    if (fd != -1) {
      (void)close(fd);  // Not read.
    }
    return nullptr;
  }
  FILE *const stream = fdopen(fd, "re");
  if (stream == nullptr) {
    (void)close(fd);  // Not read.
  }
  return stream;
}

size_t count_lines(const char *text) {
  size_t count = 0;
  for (const char *feed = strchr(text, '\n'); feed != nullptr; feed = strchr(feed + 1, '\n')) {
    ++count;
  }
  return count;
}

}  // namespace

void load_history(void (*take)(const char *line)) {
  char name[PATH_MAX];
  FILE *const stream = history_name(name) ? open_history(name) : nullptr;
  if (stream == nullptr) {
    return;
  }
  Bytes text;
  const bool read = text.read_all(stream, name, kMaxText);
  (void)fclose(stream);  // Only read.
  if (!read) {
    return;
  }
  const size_t lines = count_lines(text.at);
  char *at = text.at;
  for (size_t i = lines; i > kKeptLines; --i) {
    at = strchr(at, '\n') + 1;
  }
  if (lines > kMaxLines) {
    replace_file(name, at, strlen(at));
  }
  for (char *feed = strchr(at, '\n'); feed != nullptr; feed = strchr(at, '\n')) {
    *feed = '\0';
    take(at);
    at = feed + 1;
  }
}

void append_history(const char *line) {
  char name[PATH_MAX];
  Bytes text;
  if (!history_name(name) || !text.append(line) || !text.append('\n')) {
    return;
  }
  const int fd =
      open(name, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
  if (fd == -1) {
    return;
  }
  (void)!write(fd, text.at, text.size);  // A line that is lost costs typing only.
  (void)close(fd);
}

}  // namespace zrcfg_tool
