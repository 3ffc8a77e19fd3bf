// What the errors are called.
#include <stdio.h>

#include "export.h"
#include "uci.h"

namespace {

const char *error_name(int error) {
  switch (error) {
    case UCI_OK:
      return "Success";
    case UCI_ERR_MEM:
      return "Out of memory";
    case UCI_ERR_INVAL:
      return "Invalid argument";
    case UCI_ERR_NOTFOUND:
      return "Entry not found";
    case UCI_ERR_IO:
      return "I/O error";
    case UCI_ERR_PARSE:
      return "Parse error";
    case UCI_ERR_DUPLICATE:
      return "Duplicate entry";
    default:
      return "Unknown error";
  }
}

}  // namespace

ZRCFG_UCI_EXPORT void uci_get_errorstr(uci_context *ctx, char **dest, const char *prefix) {
  const int error = ctx != nullptr ? ctx->err : UCI_ERR_INVAL;
  const char *before = prefix != nullptr ? prefix : "";
  const char *colon = prefix != nullptr ? ": " : "";
  char place[128] = "";
  if (error == UCI_ERR_PARSE) {
    (void)snprintf(place, sizeof place, " (%s) at line %d, byte %d", ctx->parse_reason,
                   ctx->parse_line, ctx->parse_byte);
  }
  if (dest == nullptr) {
    (void)fprintf(stderr, "%s%s%s%s\n", before, colon, error_name(error), place);
    return;
  }
  if (asprintf(dest, "%s%s%s%s", before, colon, error_name(error), place) < 0) {
    *dest = nullptr;
  }
}
