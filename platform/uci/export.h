// Marks the public calls where the reader is built as a shared library; elsewhere it stays hidden.
#ifndef ZRCFG_PLATFORM_UCI_EXPORT_H_
#define ZRCFG_PLATFORM_UCI_EXPORT_H_

#ifdef ZRCFG_UCI_SHARED
#define ZRCFG_UCI_EXPORT __attribute__((visibility("default")))
#else
#define ZRCFG_UCI_EXPORT
#endif

#endif  // ZRCFG_PLATFORM_UCI_EXPORT_H_
