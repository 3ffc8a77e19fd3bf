// Memory of a package, and its elements.
#include "package.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace zrcfg_uci {

namespace {

constexpr size_t kBlockSize = 4096;
constexpr size_t kAlignment = alignof(max_align_t);
constexpr size_t kBlockHead = (sizeof(Block) + kAlignment - 1) / kAlignment * kAlignment;

// Zero-filled; null without memory.
void *take_memory(Package *package, size_t size) {
  const size_t needed = (size + kAlignment - 1) / kAlignment * kAlignment;
  Block *block = package->blocks;
  if (block == nullptr || block->size - block->used < needed) {
    const size_t block_size = kBlockHead + needed > kBlockSize ? kBlockHead + needed : kBlockSize;
    block = static_cast<Block *>(calloc(1, block_size));
    if (block == nullptr) {
      return nullptr;
    }
    *block = Block{package->blocks, kBlockHead, block_size};
    package->blocks = block;
  }
  void *taken = reinterpret_cast<char *>(block) + block->used;
  block->used += needed;
  return taken;
}

template <typename Element>
Element *take_element(Package *package, uci_type type, char *name) {
  Element *element = static_cast<Element *>(take_memory(package, sizeof(Element)));
  if (element != nullptr) {
    element->e.type = type;
    element->e.name = name;
  }
  return element;
}

// Unnamed sections are told apart by their number in the file; the type makes the name harder to
// rely on by accident after the file was reordered.
char *made_up_name(Package *package, const char *type) {
  unsigned hash = 5381;
  for (const char *at = type; *at != '\0'; ++at) {
    hash = hash * 33 + static_cast<unsigned char>(*at);
  }
  constexpr size_t kRoom = sizeof "cfg" + 8 + 4;
  char *name = static_cast<char *>(take_memory(package, kRoom));
  if (name != nullptr) {
    (void)snprintf(name, kRoom, "cfg%02x%04x", package->section_count, hash & 0xFFFFu);
  }
  return name;
}

bool append_item(Package *package, uci_list *list, char *text) {
  uci_element *item = static_cast<uci_element *>(take_memory(package, sizeof(uci_element)));
  if (item == nullptr) {
    return false;
  }
  item->type = UCI_TYPE_ITEM;
  item->name = text;
  append_to_list(list, &item->list);
  return true;
}

}  // namespace

void init_list(uci_list *list) {
  list->next = list;
  list->prev = list;
}

void append_to_list(uci_list *list, uci_list *entry) {
  entry->next = list;
  entry->prev = list->prev;
  list->prev->next = entry;
  list->prev = entry;
}

void remove_from_list(uci_list *entry) {
  entry->next->prev = entry->prev;
  entry->prev->next = entry->next;
  *entry = uci_list{nullptr, nullptr};
}

Package *new_package(uci_context *ctx, const char *path, size_t name_at) {
  Package *package = static_cast<Package *>(calloc(1, sizeof(Package)));
  if (package == nullptr) {
    return nullptr;
  }
  const size_t size = strlen(path) + 1;
  char *kept_path = static_cast<char *>(take_memory(package, size));
  if (kept_path == nullptr) {
    free_package(package);
    return nullptr;
  }
  memcpy(kept_path, path, size);
  uci_package *shown = &package->shown;
  shown->e.type = UCI_TYPE_PACKAGE;
  shown->e.name = kept_path + name_at;
  shown->ctx = ctx;
  shown->path = kept_path;
  init_list(&shown->e.list);
  init_list(&shown->sections);
  return package;
}

void free_package(Package *package) {
  for (Block *block = package->blocks; block != nullptr;) {
    Block *next = block->next;
    free(block);
    block = next;
  }
  free(package->text);
  free(package);
}

uci_section *add_section(Package *package, char *type, char *name) {
  ++package->section_count;
  const bool anonymous = name[0] == '\0';
  char *shown_name = anonymous ? made_up_name(package, type) : name;
  if (shown_name == nullptr) {
    return nullptr;
  }
  uci_section *section = take_element<uci_section>(package, UCI_TYPE_SECTION, shown_name);
  if (section == nullptr) {
    return nullptr;
  }
  init_list(&section->options);
  section->package = &package->shown;
  section->anonymous = anonymous;
  section->type = type;
  append_to_list(&package->shown.sections, &section->e.list);
  return section;
}

uci_option *new_option(Package *package, uci_section *section, char *name) {
  uci_option *option = take_element<uci_option>(package, UCI_TYPE_OPTION, name);
  if (option != nullptr) {
    option->section = section;
  }
  return option;
}

bool append_value(Package *package, uci_option *option, char *value) {
  if (option->type == UCI_TYPE_STRING) {
    char *first = option->v.string;
    option->type = UCI_TYPE_LIST;
    init_list(&option->v.list);
    if (first != nullptr && !append_item(package, &option->v.list, first)) {
      return false;
    }
  }
  return append_item(package, &option->v.list, value);
}

}  // namespace zrcfg_uci
