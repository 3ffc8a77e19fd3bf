// Base64's alphabet, exported beside the codec calls of the public header.
#ifndef ZRCFG_CONFIG_BASE64_H_
#define ZRCFG_CONFIG_BASE64_H_

#include "core/export.h"

// The 64 digits in order, terminated.
extern "C" ZRCFG_EXPORT const char g_base64_char[];

#endif  // ZRCFG_CONFIG_BASE64_H_
