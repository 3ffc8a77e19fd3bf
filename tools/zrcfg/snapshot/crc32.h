// The checksum of snapshots: CRC-32 as Ethernet and gzip have it.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_CRC32_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_CRC32_H_

#include <stddef.h>
#include <stdint.h>

namespace zrcfg_tool {

// Finds every change of up to 32 neighbouring bits.
uint32_t crc32(const char *bytes, size_t size);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_CRC32_H_
