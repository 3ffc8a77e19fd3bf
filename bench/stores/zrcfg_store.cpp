// The library itself, called as its header says; locks wait without limit.
#include <stdlib.h>

#include "bench/store.h"

namespace bench {
namespace {

constexpr int kTimeout = ZRCFG_WAIT_FOREVER;

// The tree that all stores are filled from is the library's own.
bool create(const Tree &, const char *) {
  return true;
}

bool open_store() {
  return true;
}

void close_store() {}

bool read(const char *url, const char *name, char *value) {
  return zrcfg_getsingleparamval(url, name, value, kTimeout) == ZRCFG_OK;
}

bool write(const char *url, const char *name, const char *value) {
  return zrcfg_setsingleparamval(url, name, value, kTimeout) == ZRCFG_OK;
}

bool read_many(const char *url, ParamValueEntry *list) {
  return zrcfg_getmultiparamval(url, list, kTimeout) == 0;
}

bool write_many(const char *url, ParamValueEntry *list) {
  return zrcfg_setmultiparamval(url, list, kTimeout) == 0;
}

bool list_values(const char *url, Visit visit, void *context) {
  ParamValueListNode *node = nullptr;
  ParamValueListNode *tail = nullptr;
  if (zrcfg_getallparamval(url, &node, &tail, kTimeout) != 0) {
    return false;
  }
  while (node != nullptr) {
    visit(context, node->url, 0, node->value);
    ParamValueListNode *const next = node->next;
    free(node);
    node = next;
  }
  return true;
}

bool enumerate(const char *url, Visit visit, void *context) {
  NODE_INFO *head = nullptr;
  if (zrcfg_allnode_get(url, 1, &head, kTimeout) != 0) {
    return false;
  }
  for (const NODE_INFO *node = head; node != nullptr; node = node->next) {
    visit(context, node->name, node->rw, nullptr);
  }
  return zrcfg_allnode_free(head) == 0;
}

bool add(const char *table, uint32_t *index) {
  return zrcfg_addobject(table, index, kTimeout) == ZRCFG_OK;
}

bool remove(const char *table, uint32_t index) {
  return zrcfg_delobject(table, static_cast<int>(index), kTimeout) == ZRCFG_OK;
}

}  // namespace

const Store kZrcfgStore = {"zrcfg",   create,     open_store,  close_store, read, write,
                           read_many, write_many, list_values, enumerate,   add,  remove};

}  // namespace bench
