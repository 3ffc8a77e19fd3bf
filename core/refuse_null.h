// What the calls say and return about a null argument.
#ifndef ZRCFG_CORE_REFUSE_NULL_H_
#define ZRCFG_CORE_REFUSE_NULL_H_

#include <stdint.h>

#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {

// There are two texts; each call keeps its own.
enum class NullText { kPlain, kExclaimed };

inline uint32_t refuse_null(NullText text) {
  ZRCFG_TRACE("Input parameters can't be NULL%s\n", text == NullText::kExclaimed ? "!" : "");
  return ZRCFG_E_ARGUMENT;
}

// Whether one of a work step's three pointers is null; that is logged.
inline bool any_null(NullText text, const void *first, const void *second, const void *third) {
  if (first != nullptr && second != nullptr && third != nullptr) {
    return false;
  }
  (void)refuse_null(text);  // Only its text is wanted here.
  return true;
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_REFUSE_NULL_H_
