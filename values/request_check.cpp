// What is refused about a request list before any of it is applied.
#include "values/request_check.h"

#include <string.h>

#include "core/object_image.h"
#include "core/request_list.h"
#include "core/value_section.h"

namespace zrcfg {
namespace {

bool needs_value(const ParamValueEntry &node, ListUse use) {
  return use != ListUse::kRollBack || is_failed(node);
}

// The text that a node asks to be stored; its length is bounded, and 256 for an ignored node.
struct NewText {
  const char *text;
  size_t length;
};

NewText new_text(const ParamValueEntry &node, ListUse use) {
  if (use != ListUse::kRollBack) {
    return {node.value, strnlen(node.value, ZRCFG_VALUE_SIZE)};
  }
  if (!is_failed(node) || node.changed != 1 ||
      strnlen(node.value, ZRCFG_VALUE_SIZE) == ZRCFG_VALUE_SIZE) {
    return {node.old_value, 0};
  }
  return {node.old_value, strnlen(node.old_value, kMaxValueLength)};
}

uint32_t check_line_feed(ParamValueEntry &node, ListUse use) {
  const NewText stored = new_text(node, use);
  if (stored.length == ZRCFG_VALUE_SIZE ||
      is_single_line(FieldName(node.name).text, stored.text, stored.length)) {
    return ZRCFG_OK;
  }
  if (use == ListUse::kCheckedWrite) {
    mark_refused(node);
  }
  return ZRCFG_E_FILE;
}

}  // namespace

uint32_t check_requests(ParamValueEntry *list, ListUse use) {
  const uint32_t result = for_each_request(list, [use](const ParamValueEntry &node) {
    return node.value == nullptr && needs_value(node, use) ? ZRCFG_E_ARGUMENT : ZRCFG_OK;
  });
  if (result == ZRCFG_E_ARGUMENT || use == ListUse::kRead) {
    return result == ZRCFG_E_ARGUMENT ? ZRCFG_E_ARGUMENT : ZRCFG_OK;
  }
  const uint32_t feed =
      for_each_request(list, [use](ParamValueEntry &node) { return check_line_feed(node, use); });
  return feed == ZRCFG_E_FILE ? ZRCFG_E_FILE : ZRCFG_OK;
}

bool is_failed(const ParamValueEntry &node) {
  return node.fault != nullptr && *node.fault != 0;
}

void mark_refused(ParamValueEntry &node) {
  if (node.fault != nullptr) {
    *node.fault = ZRCFG_FAULT_INVALID_VALUE;
  }
}

}  // namespace zrcfg
