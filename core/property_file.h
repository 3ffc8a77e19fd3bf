// The one definition of the property file's bytes: length word, object header, parameter records.
//
// A file is a big-endian length word, the object header, the parameter records and, behind them,
// the value section (core/value_section.h). docs/format.md describes the same bytes in prose.
#ifndef ZRCFG_CORE_PROPERTY_FILE_H_
#define ZRCFG_CORE_PROPERTY_FILE_H_

#include <stddef.h>
#include <stdint.h>

namespace zrcfg {

inline constexpr char kPropertyFileName[] = "property.conf";

// A 32-bit word as files hold it, most significant byte first, at any alignment.
struct BigEndian32 {
  uint8_t bytes[4];

  constexpr uint32_t get() const {
    return (uint32_t{bytes[0]} << 24) | (uint32_t{bytes[1]} << 16) | (uint32_t{bytes[2]} << 8) |
           uint32_t{bytes[3]};
  }
  constexpr void set(uint32_t value) {
    bytes[0] = static_cast<uint8_t>(value >> 24);
    bytes[1] = static_cast<uint8_t>(value >> 16);
    bytes[2] = static_cast<uint8_t>(value >> 8);
    bytes[3] = static_cast<uint8_t>(value);
  }
};

inline constexpr size_t kNameSize = 64;  // Bytes of every name field, terminator included.

// The object header. Fields called reserved are kept as they were read.
struct ObjectHeader {
  uint8_t url_slot[4];  // Address of the path on 32-bit targets; without meaning on disk.
  uint8_t param_num;    // Low byte of the record count, recomputed whenever a file is loaded.
  uint8_t max_instance;
  uint8_t device_type;
  uint8_t level3;
  uint8_t access_flags;  // hide, flag0, rw, key
  uint8_t extra_flags;   // level7, flag9, flag8, flag11
  uint8_t reserved_10[2];
  char devfunc[64];
  char pnoe[64];
  uint8_t reserved_140[8];
  char extra_text[28];
  uint8_t reserved_176[4];
  uint8_t param_list_slot[4];  // Address of the first record; without meaning on disk.
};

// One parameter record. The value stands in the value section, in record order.
struct ParamRecord {
  uint8_t type;
  uint8_t inform_dbus;
  uint8_t device_type;
  uint8_t reserved_3;
  uint8_t access_flags;  // rw, key, encryt
  uint8_t notify_flags;  // noti, flash_rw, hide, noti_rw, namechange
  uint8_t inform_flags;  // flash_encryt, inform_tr069
  uint8_t reserved_7;
  char name[kNameSize];
  char accesslist[16];
  char area[28];
  BigEndian32 param_check;
  uint8_t next_slot[4];  // Address of the next record; without meaning on disk.
};

inline constexpr uint32_t kHeaderSize = 184;
inline constexpr uint32_t kRecordSize = 124;
inline constexpr uint32_t kLengthWordSize = 4;
inline constexpr uint32_t kMaxStructSize = 16u << 20;  // A larger length word is refused.
inline constexpr uint32_t kMaxServedRecords = 255;     // The count is one byte.
inline constexpr size_t kMaxValueLength = 255;
inline constexpr size_t kValueSlotSize = kMaxValueLength + 1;

static_assert(sizeof(ObjectHeader) == kHeaderSize && alignof(ObjectHeader) == 1);
static_assert(offsetof(ObjectHeader, param_num) == 4);
static_assert(offsetof(ObjectHeader, max_instance) == 5);
static_assert(offsetof(ObjectHeader, device_type) == 6);
static_assert(offsetof(ObjectHeader, level3) == 7);
static_assert(offsetof(ObjectHeader, access_flags) == 8);
static_assert(offsetof(ObjectHeader, extra_flags) == 9);
static_assert(offsetof(ObjectHeader, reserved_10) == 10);
static_assert(offsetof(ObjectHeader, devfunc) == 12);
static_assert(offsetof(ObjectHeader, pnoe) == 76);
static_assert(offsetof(ObjectHeader, reserved_140) == 140);
static_assert(offsetof(ObjectHeader, extra_text) == 148);
static_assert(offsetof(ObjectHeader, reserved_176) == 176);
static_assert(offsetof(ObjectHeader, param_list_slot) == 180);

static_assert(sizeof(ParamRecord) == kRecordSize && alignof(ParamRecord) == 1);
static_assert(offsetof(ParamRecord, inform_dbus) == 1);
static_assert(offsetof(ParamRecord, device_type) == 2);
static_assert(offsetof(ParamRecord, reserved_3) == 3);
static_assert(offsetof(ParamRecord, access_flags) == 4);
static_assert(offsetof(ParamRecord, notify_flags) == 5);
static_assert(offsetof(ParamRecord, inform_flags) == 6);
static_assert(offsetof(ParamRecord, reserved_7) == 7);
static_assert(offsetof(ParamRecord, name) == 8);
static_assert(offsetof(ParamRecord, accesslist) == 72);
static_assert(offsetof(ParamRecord, area) == 88);
static_assert(offsetof(ParamRecord, param_check) == 116);
static_assert(offsetof(ParamRecord, next_slot) == 120);

// A bit field inside an on-disk struct: the byte that holds it, its lowest bit, its width in bits.
struct BitField {
  uint8_t offset;
  uint8_t shift;
  uint8_t width;

  constexpr uint8_t mask() const { return static_cast<uint8_t>((1u << width) - 1u); }

  template <typename Struct>
  uint8_t get(const Struct &from) const {
    const uint8_t byte = reinterpret_cast<const uint8_t *>(&from)[offset];
    return static_cast<uint8_t>((byte >> shift) & mask());
  }

  // Stores the low `width` bits of `value`; the byte's other bits stay as they are.
  template <typename Struct>
  void set(Struct &in, uint32_t value) const {
    uint8_t &byte = reinterpret_cast<uint8_t *>(&in)[offset];
    const unsigned kept = byte & ~(unsigned{mask()} << shift);
    byte = static_cast<uint8_t>(kept | ((value & mask()) << shift));
  }
};

namespace header_field {
inline constexpr BitField kMaxInstance{5, 0, 8};
inline constexpr BitField kDeviceType{6, 0, 8};
inline constexpr BitField kLevel3{7, 0, 8};
inline constexpr BitField kHide{8, 7, 1};
inline constexpr BitField kFlag0{8, 6, 1};
inline constexpr BitField kRw{8, 4, 2};
inline constexpr BitField kKey{8, 0, 4};
inline constexpr BitField kLevel7{9, 4, 4};
inline constexpr BitField kFlag9{9, 3, 1};
inline constexpr BitField kFlag8{9, 2, 1};
inline constexpr BitField kFlag11{9, 1, 1};
}  // namespace header_field

namespace record_field {
inline constexpr BitField kType{0, 0, 8};
inline constexpr BitField kInformDbus{1, 0, 8};
inline constexpr BitField kDeviceType{2, 0, 8};
inline constexpr BitField kRw{4, 6, 2};
inline constexpr BitField kKey{4, 2, 4};
inline constexpr BitField kEncryt{4, 0, 2};
inline constexpr BitField kNoti{5, 4, 4};
inline constexpr BitField kFlashRw{5, 3, 1};
inline constexpr BitField kHide{5, 2, 1};
inline constexpr BitField kNotiRw{5, 1, 1};
inline constexpr BitField kNamechange{5, 0, 1};
inline constexpr BitField kFlashEncryt{6, 7, 1};
inline constexpr BitField kInformTr069{6, 5, 1};
}  // namespace record_field

// The number of whole records that a length word announces.
constexpr uint32_t record_count(uint32_t len) {
  return (len - kHeaderSize) / kRecordSize;
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_PROPERTY_FILE_H_
