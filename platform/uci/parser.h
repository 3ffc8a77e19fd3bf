// Turns the text of a UCI file into the sections and options of a package.
#ifndef ZRCFG_PLATFORM_UCI_PARSER_H_
#define ZRCFG_PLATFORM_UCI_PARSER_H_

#include "file_text.h"
#include "package.h"
#include "statement.h"

namespace zrcfg_uci {

// UCI_OK, UCI_ERR_MEM, or UCI_ERR_PARSE with `*error`. The package keeps addresses in the text.
int parse_text(Package *package, FileText text, ParseError *error);

// Whether the text is not empty and consists of letters, digits, "_" and the characters of `more`.
bool is_name(const char *text, const char *more);

}  // namespace zrcfg_uci

#endif  // ZRCFG_PLATFORM_UCI_PARSER_H_
