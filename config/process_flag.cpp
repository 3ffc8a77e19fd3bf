// The process's mark as the TR-069 process.
#include "core/export.h"
#include "zrcfg.h"

namespace {
int tr069_process_flag = 0;
}

extern "C" {

ZRCFG_EXPORT int zrcfg_init_tr069_process_flag(void) {
  __atomic_store_n(&tr069_process_flag, 1, __ATOMIC_RELAXED);
  return 0;
}

ZRCFG_EXPORT int zrcfg_get_tr069_process_flag(void) {
  return __atomic_load_n(&tr069_process_flag, __ATOMIC_RELAXED);
}

}  // extern "C"
