// The file logger's state, exported beside the settings of the public header.
#ifndef ZRCFG_LOG_ZRCFG_LOG_H_
#define ZRCFG_LOG_ZRCFG_LOG_H_

#include <pthread.h>

#include "core/export.h"

extern "C" {
// Serialises the writers of this process.
extern ZRCFG_EXPORT pthread_mutex_t zrcfg_mut;

// 1 once the mutex is initialised.
extern ZRCFG_EXPORT int zrcfg_log_is_inited;
}

#endif  // ZRCFG_LOG_ZRCFG_LOG_H_
