// The whole text of a configuration file in memory.
#ifndef ZRCFG_PLATFORM_UCI_FILE_TEXT_H_
#define ZRCFG_PLATFORM_UCI_FILE_TEXT_H_

#include <stddef.h>

namespace zrcfg_uci {

// A block to free(), with room for one byte behind the text.
struct FileText {
  char *bytes;
  size_t size;
};

// UCI_OK, or UCI_ERR_NOTFOUND, UCI_ERR_IO, UCI_ERR_MEM without a block.
int read_file_text(const char *path, FileText *text);

}  // namespace zrcfg_uci

#endif  // ZRCFG_PLATFORM_UCI_FILE_TEXT_H_
