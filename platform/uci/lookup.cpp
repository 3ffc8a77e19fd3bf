// Finding the options of a section.
#include <string.h>

#include "export.h"
#include "uci.h"

ZRCFG_UCI_EXPORT uci_option *uci_lookup_option(uci_context *ctx, uci_section *section,
                                               const char *name) {
  (void)ctx;
  if (section == nullptr || name == nullptr) {
    return nullptr;
  }
  uci_element *element = nullptr;
  uci_foreach_element(&section->options, element) {
    if (strcmp(element->name, name) == 0) {
      return uci_to_option(element);
    }
  }
  return nullptr;
}

ZRCFG_UCI_EXPORT const char *uci_lookup_option_string(uci_context *ctx, uci_section *section,
                                                      const char *name) {
  const uci_option *option = uci_lookup_option(ctx, section, name);
  return option != nullptr && option->type == UCI_TYPE_STRING ? option->v.string : nullptr;
}
