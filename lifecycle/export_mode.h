// Which items an export call writes.
#ifndef ZRCFG_LIFECYCLE_EXPORT_MODE_H_
#define ZRCFG_LIFECYCLE_EXPORT_MODE_H_

#include <stdint.h>

namespace zrcfg {

// Modes 1 to 3 select by bit 0 to 2 of the item's key; any other mode selects everything.
inline bool selected_by_mode(int mode, uint8_t key) {
  return mode < 1 || mode > 3 || ((key >> (mode - 1)) & 1) != 0;
}

inline constexpr int kModeThatLogsKey = 1;

}  // namespace zrcfg

#endif  // ZRCFG_LIFECYCLE_EXPORT_MODE_H_
