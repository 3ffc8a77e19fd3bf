// A package while it is built: its memory, its sections, their options.
#ifndef ZRCFG_PLATFORM_UCI_PACKAGE_H_
#define ZRCFG_PLATFORM_UCI_PACKAGE_H_

#include <stddef.h>

#include "uci.h"

namespace zrcfg_uci {

// Memory is taken in blocks that are freed together; elements are never freed one by one.
struct Block {
  Block *next;
  size_t used;
  size_t size;
};

// The public part comes first, so that its address is that of the whole. Names and values stay in
// the file's text, which the package keeps.
struct Package {
  uci_package shown;
  char *text;
  Block *blocks;
  unsigned section_count;
};

void init_list(uci_list *list);
void append_to_list(uci_list *list, uci_list *entry);
void remove_from_list(uci_list *entry);

// `name_at` is where the file's name begins in `path`. Null without memory.
Package *new_package(uci_context *ctx, const char *path, size_t name_at);
void free_package(Package *package);

// Null without memory. An empty name makes an unnamed section. The texts are kept, not copied.
uci_section *add_section(Package *package, char *type, char *name);
uci_option *new_option(Package *package, uci_section *section, char *name);

// Turns the option into a list, what it held being the first entry, and appends. False without
// memory.
bool append_value(Package *package, uci_option *option, char *value);

}  // namespace zrcfg_uci

#endif  // ZRCFG_PLATFORM_UCI_PACKAGE_H_
