// A URL with its instance numbers taken out.
#include <stdio.h>
#include <string.h>

#include "core/decimal_text.h"
#include "core/export.h"
#include "core/object_path.h"
#include "enum/sub_objects.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr int kMaxComponents = 10;
constexpr size_t kKeptNumbers = sizeof(instanceStack::index) / sizeof(uint32_t);

// Appends "<text>." to the template; what does not fit is cut.
void append_component(instanceStack &stack, const char *text) {
  const size_t used = strlen(stack.objpathinxml);
  (void)snprintf(stack.objpathinxml + used, sizeof stack.objpathinxml - used, "%s.", text);
}

void take_number(instanceStack &stack, const char *digits) {
  if (stack.depth < kKeptNumbers) {
    stack.index[stack.depth] = static_cast<uint32_t>(decimal_value(digits));
  }
  ++stack.depth;
  append_component(stack, "x");
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" ZRCFG_EXPORT int xmlurl_transform(const char *url, instanceStack *stack) {
  if (url == nullptr || stack == nullptr) {
    return -1;
  }
  memset(stack, 0, sizeof *stack);
  char work[kUrlSize];
  const size_t length = strnlen(url, sizeof work - 1);
  memcpy(work, url, length);
  work[length] = '\0';
  char *rest = nullptr;
  const char *component = strtok_r(work, ".", &rest);
  for (int i = 0; component != nullptr && i < kMaxComponents; ++i) {
    // The first component is a name even when it looks like a number.
    if (i > 0 && is_digit(component) == 1) {
      take_number(*stack, component);
    } else {
      append_component(*stack, component);
    }
    component = strtok_r(nullptr, ".", &rest);
  }
  return 0;
}
