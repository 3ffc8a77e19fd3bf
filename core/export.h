// Marks what leaves the library; everything else is hidden.
#ifndef ZRCFG_CORE_EXPORT_H_
#define ZRCFG_CORE_EXPORT_H_

// In front of the definition of every exported function, declared in an extern "C" header.
#define ZRCFG_EXPORT __attribute__((visibility("default")))

#endif  // ZRCFG_CORE_EXPORT_H_
