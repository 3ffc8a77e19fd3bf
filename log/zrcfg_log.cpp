// The file logger: time-stamped lines of the library's clients, to a file of bounded size.
#include "log/zrcfg_log.h"

#include <errno.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "zrcfg.h"

pthread_mutex_t zrcfg_mut;
int zrcfg_log_is_inited = 0;

extern "C" {
extern ZRCFG_EXPORT char zrcfg_log_file_path[64];
extern ZRCFG_EXPORT int zrcfg_log_size;
extern ZRCFG_EXPORT int zrcfg_log_out_mode;
}

char zrcfg_log_file_path[64] = "/var/zrcfg.log";
int zrcfg_log_size = 2000;
int zrcfg_log_out_mode = 1;

namespace zrcfg {
namespace {

constexpr char kSwitchFile[] = "/usr/local/zr/log_switch/zrcfg_log_enable";
// Rotation keeps to these paths whatever the settings say.
constexpr char kMoveCommand[] = "mv  /var/zrcfg.log /var/zrcfg.log.bak";
constexpr char kNewFileCommand[] = "touch  /var/zrcfg.log";
constexpr int kOpenFailureNumber = 103;
constexpr size_t kTimeLength = 24;  // A line of asctime without its line feed.

enum OutMode { kStandardError = 0, kFile = 1, kBoth = 2 };

// Where a line comes from and what it says.
struct Line {
  const char *where;
  int number;
  const char *format;
};

void run(const char *command) {
  if (system(command) == -1) {
    // Nothing depends on it: the append that follows tells whether there is a file.
  }
}

// Reads the setting with a bound, since the client may have filled it to the last byte.
struct LogPath {
  char text[sizeof zrcfg_log_file_path + 1];

  LogPath() {
    const size_t length = strnlen(zrcfg_log_file_path, sizeof zrcfg_log_file_path);
    memcpy(text, zrcfg_log_file_path, length);
    text[length] = '\0';
  }
};

struct TimeStamp {
  char text[32] = {};

  TimeStamp() {
    const time_t now = time(nullptr);
    tm local = {};
    char line[64] = {};
    tzset();  // localtime_r need not look at a changed time zone.
    if (localtime_r(&now, &local) != nullptr && asctime_r(&local, line) != nullptr) {
      memcpy(text, line, kTimeLength);
    }
  }
};

void rotate_when_full(const LogPath &path) {
  struct stat status;
  if (stat(path.text, &status) != 0) {
    printf("zrcfg_log_file_path = %s\n", path.text);
    return;
  }
  if (int64_t{zrcfg_log_size} * 1024 < status.st_size) {
    run(kMoveCommand);
    run(kNewFileCommand);
  }
}

void write_line(FILE *stream, const TimeStamp &stamp, const Line &line, va_list arguments) {
  va_list own;
  va_copy(own, arguments);
  fprintf(stream, "%s,%s[%d]: ", stamp.text, line.where, line.number);
  vfprintf(stream, line.format, own);
  fflush(stream);
  va_end(own);
}

// The work under the mutex; 0, or -1 when the file cannot be opened.
int log_line(const Line &line, va_list arguments) {
  const TimeStamp stamp;
  const LogPath path;
  rotate_when_full(path);
  FILE *const file = fopen(path.text, "ae");
  if (file == nullptr) {
    fprintf(stderr, "zrcfg_log.c[%d](zrcfg_logger): %s\n", kOpenFailureNumber, strerror(errno));
    return -1;
  }
  const int mode = zrcfg_log_out_mode;
  if (mode == kStandardError || mode == kBoth) {
    write_line(stderr, stamp, line, arguments);
  }
  if (mode == kFile || mode == kBoth) {
    write_line(file, stamp, line, arguments);
  }
  (void)fclose(file);  // What could not be written is not reported.
  return 0;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int init_zrcfg_logger(void) {
  const LogPath path;
  char command[128];
  (void)snprintf(command, sizeof command, "touch %s", path.text);  // Fits.
  run(command);
  if (pthread_mutex_init(&zrcfg_mut, nullptr) != 0) {
    return -1;
  }
  __atomic_store_n(&zrcfg_log_is_inited, 1, __ATOMIC_RELEASE);
  return 0;
}

ZRCFG_EXPORT int zrcfg_logger(int /*level*/, const char *where, int line, const char *fmt, ...) {
  if (__atomic_load_n(&zrcfg_log_is_inited, __ATOMIC_ACQUIRE) == 0) {
    (void)init_zrcfg_logger();  // The next call tries again.
  }
  if (access(kSwitchFile, F_OK) != 0) {
    return 0;
  }
  if (fmt == nullptr) {
    return -1;
  }
  pthread_mutex_lock(&zrcfg_mut);
  va_list arguments;
  va_start(arguments, fmt);
  const int result = log_line({where != nullptr ? where : "(null)", line, fmt}, arguments);
  va_end(arguments);
  pthread_mutex_unlock(&zrcfg_mut);
  return result;
}

}  // extern "C"
