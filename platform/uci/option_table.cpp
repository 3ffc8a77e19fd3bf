// The hash table over the options of a package.
#include "option_table.h"

#include <stdlib.h>
#include <string.h>

namespace zrcfg_uci {

namespace {

constexpr size_t kFirstSlots = 64;

// FNV-1a over the name, begun with the section's address: the same name in two sections differs,
// and no file can be made for which all options meet in one place.
size_t hash_of(const uci_section *section, const char *name) {
  uint64_t hash =
      0xCBF29CE484222325u ^ (reinterpret_cast<uintptr_t>(section) * 0x9E3779B97F4A7C15u);
  for (const char *at = name; *at != '\0'; ++at) {
    hash = (hash ^ static_cast<unsigned char>(*at)) * 0x100000001B3u;
  }
  return static_cast<size_t>(hash ^ (hash >> 32));
}

// The slot of that option, or the free one where it belongs.
uci_option **slot_of(const OptionTable *table, const uci_section *section, const char *name) {
  const size_t mask = table->slot_count - 1;
  for (size_t i = hash_of(section, name) & mask;; i = (i + 1) & mask) {
    const uci_option *option = table->slots[i];
    if (option == nullptr || (option->section == section && strcmp(option->e.name, name) == 0)) {
      return &table->slots[i];
    }
  }
}

bool grow(OptionTable *table) {
  const size_t slot_count = table->slot_count == 0 ? kFirstSlots : 2 * table->slot_count;
  OptionTable grown = {static_cast<uci_option **>(calloc(slot_count, sizeof(void *))), slot_count,
                       table->used};
  if (grown.slots == nullptr) {
    return false;
  }
  for (size_t i = 0; i < table->slot_count; ++i) {
    uci_option *option = table->slots[i];
    if (option != nullptr) {
      *slot_of(&grown, option->section, option->e.name) = option;
    }
  }
  free(table->slots);
  *table = grown;
  return true;
}

}  // namespace

uci_option *find_option(const OptionTable *table, const uci_section *section, const char *name) {
  return table->slot_count == 0 ? nullptr : *slot_of(table, section, name);
}

bool add_option(OptionTable *table, uci_option *option) {
  if (2 * (table->used + 1) > table->slot_count && !grow(table)) {
    return false;
  }
  *slot_of(table, option->section, option->e.name) = option;
  ++table->used;
  return true;
}

void free_table(OptionTable *table) {
  free(table->slots);
}

}  // namespace zrcfg_uci
