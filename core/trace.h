// The library's one way to the device's log: module "ZRCFG", level 7.
#ifndef ZRCFG_CORE_TRACE_H_
#define ZRCFG_CORE_TRACE_H_

#include "platform/zrlogmgr/zrlogmgr.h"

#define ZRCFG_TRACE(...) ((void)zr_mod_log_printf("ZRCFG", 7, __VA_ARGS__))

namespace zrcfg {

// The texts say "%x" for pointers: the low 32 bits of the address.
inline unsigned trace_address(const void *pointer) {
  return static_cast<unsigned>(reinterpret_cast<unsigned long>(pointer));
}

// What "%s" prints for a text that may be null.
inline const char *trace_text(const char *text) {
  return text != nullptr ? text : "(null)";
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_TRACE_H_
