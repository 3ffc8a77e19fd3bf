// Reading one setting from a UCI file.
#include "config/uci_option.h"

#include <stdlib.h>
#include <string.h>
#include <uci.h>

#include "core/export.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr size_t kMaxKeyLength = 256;
constexpr char kValueOption[] = "value";
constexpr char kEmptyValueText[] = "UCI_NULL";

bool is_name_character(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

void report_load_failure(uci_context *context, const char *path) {
  char *message = nullptr;
  uci_get_errorstr(context, &message, nullptr);
  ZRCFG_TRACE("uci_load Path=%s error=%s fail!\n", path, trace_text(message));
  free(message);
}

// The value of the first section of that name that has one; null when there is none.
const char *find_value(uci_context *context, uci_package *package, const char *name) {
  uci_element *element = nullptr;
  uci_foreach_element(&package->sections, element) {
    if (strcmp(element->name, name) == 0) {
      const char *const value =
          uci_lookup_option_string(context, uci_to_section(element), kValueOption);
      if (value != nullptr) {
        return value;
      }
    }
  }
  return nullptr;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int uci_char_transform(char *text) {
  for (char *at = text; at != nullptr && *at != '\0'; ++at) {
    if (!is_name_character(*at)) {
      *at = '_';
    }
  }
  return 0;
}

ZRCFG_EXPORT void unload_ucifile(struct uci_context *ctx, struct uci_package *pkg) {
  if (ctx == nullptr) {
    return;
  }
  if (pkg != nullptr) {
    (void)uci_unload(ctx, pkg);  // The context, and all that it holds, goes anyway.
  }
  uci_free_context(ctx);
}

ZRCFG_EXPORT int zrcfg_uci_get_config(const char *filePath, const char *key, char *out,
                                      unsigned outLen) {
  ZRCFG_TRACE("zrfile_uci_get_config filepath=%s key=%s", trace_text(filePath),
              trace_text(key));
  if (filePath == nullptr || key == nullptr || out == nullptr) {
    ZRCFG_TRACE("error input param\n");
    return -1;
  }
  char name[kMaxKeyLength + 1] = {};
  strncpy(name, key, kMaxKeyLength);
  (void)uci_char_transform(name);  // Always 0.
  uci_context *const context = uci_alloc_context();
  if (context == nullptr) {
    return -1;
  }
  uci_package *package = nullptr;
  if (uci_load(context, filePath, &package) != UCI_OK) {
    report_load_failure(context, filePath);
    uci_free_context(context);
    return -1;
  }
  const char *const value = find_value(context, package, name);
  if (value != nullptr) {
    // Pads with zero bytes; the terminator is the caller's.
    strncpy(out, strcmp(value, kEmptyValueText) == 0 ? "" : value, outLen);
  }
  unload_ucifile(context, package);
  return value != nullptr ? 0 : -1;
}

}  // extern "C"
