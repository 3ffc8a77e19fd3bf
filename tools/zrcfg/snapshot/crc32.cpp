// The checksum of snapshots: CRC-32 as Ethernet and gzip have it.
#include "tools/zrcfg/snapshot/crc32.h"

namespace zrcfg_tool {
namespace {

constexpr uint32_t kPolynomial = 0xEDB88320;  // Bits reversed.

struct Table {
  uint32_t entries[256] = {};

  constexpr Table() {
    for (uint32_t i = 0; i < 256; ++i) {
      uint32_t value = i;
      for (int bit = 0; bit < 8; ++bit) {
        value = (value & 1) != 0 ? (value >> 1) ^ kPolynomial : value >> 1;
      }
      entries[i] = value;
    }
  }
};

constexpr Table kTable;

}  // namespace

uint32_t crc32(const char *bytes, size_t size) {
  uint32_t crc = UINT32_MAX;
  for (size_t i = 0; i < size; ++i) {
    crc = (crc >> 8) ^ kTable.entries[(crc ^ static_cast<uint8_t>(bytes[i])) & 0xFF];
  }
  return ~crc;
}

}  // namespace zrcfg_tool
