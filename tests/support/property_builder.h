// Builds the exact bytes of property files with offsets of its own, and puts them into the store.
#ifndef ZRCFG_TESTS_SUPPORT_PROPERTY_BUILDER_H_
#define ZRCFG_TESTS_SUPPORT_PROPERTY_BUILDER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zrcfg_test {

inline constexpr size_t kHeadBytes = 184;   // Object header, without the length word before it.
inline constexpr size_t kParamBytes = 124;  // One parameter record.

// The object header's fields; bits that have no name here are 0.
struct HeaderFields {
  uint32_t url_slot = 0;
  uint8_t param_num = 0;  // As stored; what readers see is recomputed from the length word.
  uint8_t max_instance = 0;
  uint8_t device_type = 0;
  uint8_t level3 = 0;
  uint8_t hide = 0;
  uint8_t flag0 = 0;
  uint8_t rw = 0;
  uint8_t key = 0;
  uint8_t level7 = 0;
  uint8_t flag9 = 0;
  uint8_t flag8 = 0;
  uint8_t flag11 = 0;
  uint8_t reserved_flag = 0;
  std::string reserved_10;   // 2 bytes
  std::string devfunc;       // 64 bytes
  std::string pnoe;          // 64 bytes
  std::string reserved_140;  // 8 bytes
  std::string extra_text;    // 28 bytes
  std::string reserved_176;  // 4 bytes
  uint32_t param_list_slot = 0;
};

// One parameter record and the parameter's value.
struct ParamFields {
  std::string name;   // 64 bytes; 64 characters leave no terminator
  std::string value;  // Empty stands for the line "\r".
  uint8_t type = 0;
  uint8_t inform_dbus = 0;
  uint8_t device_type = 0;
  uint8_t reserved_3 = 0;
  uint8_t rw = 0;
  uint8_t key = 0;
  uint8_t encryt = 0;
  uint8_t noti = 0;
  uint8_t flash_rw = 0;
  uint8_t hide = 0;
  uint8_t noti_rw = 0;
  uint8_t namechange = 0;
  uint8_t flash_encryt = 0;
  uint8_t reserved_6_high = 0;  // bit 6
  uint8_t inform_tr069 = 0;
  uint8_t reserved_6_low = 0;  // bits 4-0
  uint8_t reserved_7 = 0;
  std::string accesslist;  // 16 bytes
  std::string area;        // 28 bytes
  uint32_t param_check = 0;
  uint32_t next_slot = 0;
};

struct PropertyFile {
  HeaderFields header;
  std::vector<ParamFields> params;
  std::optional<uint32_t> length_word;  // Instead of 184 + 124 for each record.
  std::optional<std::string> values;    // Instead of one line for each record.

  // Appends a record; the reference is for further fields and dies with the next call.
  ParamFields &add(const std::string &name, const std::string &value);

  std::string head_bytes() const;   // Length word, header, records.
  std::string value_bytes() const;  // The value section.
  std::string bytes() const { return head_bytes() + value_bytes(); }
};

// A file with one record for each name, and the value of the same place.
PropertyFile property_file(const std::vector<std::string> &names,
                           const std::vector<std::string> &values);

std::string header_bytes(const HeaderFields &header);
std::string param_bytes(const ParamFields &param);

// Paths below are relative to the store root; a directory ends in "/" or is empty.
std::string store_path(const std::string &relative);
void make_store_dir(const std::string &dir);  // With its parents.
// Characters of the longest name that the store takes: 255, but 254 where a tracer gives it.
size_t longest_name();
void write_store_file(const std::string &relative, const std::string &bytes);
std::string read_store_file(const std::string &relative);  // Throws when there is none.
bool store_entry_exists(const std::string &relative);

// The object's file, its directories made where they are missing.
void write_property(const std::string &dir, const PropertyFile &file);
void write_property(const std::string &dir, const std::string &bytes);
std::string read_property(const std::string &dir);
std::string property_path(const std::string &dir);  // Absolute.

// Parts of a property file's bytes.
uint32_t length_word(const std::string &bytes);
size_t value_offset(const std::string &bytes);
std::string value_section(const std::string &bytes);
// The address slots, which have no meaning on disk, set to zero.
std::string without_slots(std::string bytes);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_PROPERTY_BUILDER_H_
