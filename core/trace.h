// The library's one way to the device's log: module "ZRCFG", level 7.
#ifndef ZRCFG_CORE_TRACE_H_
#define ZRCFG_CORE_TRACE_H_

#include "platform/zrlogmgr/zrlogmgr.h"

// The branch that is never taken lets the compiler compare format and arguments.
#define ZRCFG_TRACE(...) \
  (false ? (void)zr_mod_log_printf("ZRCFG", 7, __VA_ARGS__) : zrcfg::write_trace(__VA_ARGS__))

namespace zrcfg {

// One copy for all places that have arguments of the same types: they are many, and most of what
// each would cost is the two arguments in front. The macro has checked the format.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
template <typename... Arguments>
[[gnu::noinline]] void write_trace(const char *format, Arguments... arguments) {
  (void)zr_mod_log_printf("ZRCFG", 7, format, arguments...);
}
#pragma GCC diagnostic pop

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
