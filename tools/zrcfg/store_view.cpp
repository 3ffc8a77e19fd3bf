// The store as a configuration text would leave it, before anything is changed.
#include "tools/zrcfg/store_view.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/number.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kNumberRoom = 16;  // Of an instance number with its dot and the final zero.

// Appends the `length` characters at `text` to a URL; false when it becomes too long.
bool append(ObjectUrl &url, const char *text, size_t length) {
  const size_t used = strlen(url.text);
  if (used + length >= sizeof url.text) {
    return false;
  }
  memcpy(url.text + used, text, length);
  url.text[used + length] = '\0';
  return true;
}

}  // namespace

int StoreView::source_instance(const char *table_url) const {
  char url[ZRCFG_URL_SIZE + kNumberRoom];
  (void)snprintf(url, sizeof url, "%s0.", table_url);
  if (zrcfg_isobjectexist(url) == 1) {
    return 0;
  }
  SubObjName *node = nullptr;
  int lowest = -1;
  if (zrcfg_getallsubobj(table_url, &node) != ZRCFG_OK) {
    return -1;
  }
  while (node != nullptr) {
    int number;
    // The list begins with the numbers, in their order.
    if (lowest == -1 && parse_number(node->name, strlen(node->name), number)) {
      (void)snprintf(url, sizeof url, "%s%d.", table_url, number);
      lowest = deleted_.has(url) ? -1 : number;
    }
    SubObjName *const next = node->next;
    free(node);
    node = next;
  }
  return lowest;
}

bool StoreView::append_source(ObjectUrl &real) const {
  const int source = source_instance(real.text);
  char component[kNumberRoom];
  const int length = snprintf(component, sizeof component, "%d.", source);
  return source >= 0 && append(real, component, static_cast<size_t>(length));
}

ViewResult StoreView::locate(const char *url, ObjectUrl &real) const {
  real.text[0] = '\0';
  for (const char *at = url; *at != '\0';) {
    const char *const dot = strchr(at, '.');
    const size_t length = dot != nullptr ? static_cast<size_t>(dot - at) + 1 : strlen(at);
    const size_t so_far = static_cast<size_t>(at - url) + length;
    if (held_.has(url, so_far)) {
      return ViewResult::kHeld;
    }
    if (deleted_copies_.has(url, so_far)) {
      return ViewResult::kMissing;
    }
    if (created_.has(url, so_far)) {
      if (!append_source(real)) {
        return ViewResult::kMissing;
      }
    } else if (!append(real, at, length) || deleted_.has(real.text)) {
      return ViewResult::kMissing;
    }
    at += length;
  }
  return ViewResult::kThere;
}

ViewResult StoreView::resolve(const char *url, ObjectUrl &real) const {
  const ViewResult found = locate(url, real);
  if (found != ViewResult::kThere) {
    return found;
  }
  return zrcfg_isobjectexist(real.text) == 1 ? ViewResult::kThere : ViewResult::kMissing;
}

bool StoreView::create_instance(const char *url) {
  return created_.add(url);
}

bool StoreView::delete_instance(const char *url) {
  return deleted_.add(url);
}

bool StoreView::delete_copy(const char *url) {
  return deleted_copies_.add(url);
}

bool StoreView::hold_instance(const char *url) {
  return held_.add(url);
}

}  // namespace zrcfg_tool
