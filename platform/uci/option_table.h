// Finds an option by section and name while a package is built, however many there are.
#ifndef ZRCFG_PLATFORM_UCI_OPTION_TABLE_H_
#define ZRCFG_PLATFORM_UCI_OPTION_TABLE_H_

#include <stddef.h>
#include <stdint.h>

#include "uci.h"

namespace zrcfg_uci {

// A hash table with linear probing, never more than half full.
struct OptionTable {
  uci_option **slots;
  size_t slot_count;  // A power of two, or 0.
  size_t used;
};

uci_option *find_option(const OptionTable *table, const uci_section *section, const char *name);

// The option must not be there yet. False without memory.
bool add_option(OptionTable *table, uci_option *option);

void free_table(OptionTable *table);

}  // namespace zrcfg_uci

#endif  // ZRCFG_PLATFORM_UCI_OPTION_TABLE_H_
