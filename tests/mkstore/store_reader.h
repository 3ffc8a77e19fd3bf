// Reads property files by their documented offsets, sharing nothing with the builder's structs.
#ifndef ZRCFG_TESTS_MKSTORE_STORE_READER_H_
#define ZRCFG_TESTS_MKSTORE_STORE_READER_H_

#include <cstdint>
#include <string>
#include <vector>

struct ReadRecord {
  std::string bytes;  // All 124.
  std::string name;
  std::string accesslist;
  std::string area;
  std::string line;  // The value as the file has it, without its line feed.
  unsigned type = 0;
  unsigned inform_dbus = 0;
  unsigned device_type = 0;
  unsigned rw = 0;
  unsigned key = 0;
  unsigned encryt = 0;
  unsigned noti = 0;
  unsigned flash_rw = 0;
  unsigned hide = 0;
  unsigned noti_rw = 0;
  unsigned namechange = 0;
  unsigned flash_encryt = 0;
  unsigned inform_tr069 = 0;
  uint32_t param_check = 0;
};

struct ReadFile {
  bool exists = false;
  bool well_formed = false;  // Length word, header, records and exactly one line a record.
  std::string bytes;
  std::string header;  // All 184.
  unsigned param_num = 0;
  unsigned max_instance = 0;
  unsigned device_type = 0;
  unsigned level3 = 0;
  unsigned hide = 0;
  unsigned flag0 = 0;
  unsigned rw = 0;
  unsigned key = 0;
  unsigned level7 = 0;
  unsigned flag9 = 0;
  unsigned flag8 = 0;
  unsigned flag11 = 0;
  std::string devfunc;
  std::string pnoe;
  std::string extra_text;
  std::vector<ReadRecord> records;
};

std::string read_bytes(const std::string &path);

// The property file in the directory.
ReadFile read_property_file(const std::string &directory);

// The record of that name; one without a name when there is none.
ReadRecord find_record(const ReadFile &file, const std::string &name);

#endif  // ZRCFG_TESTS_MKSTORE_STORE_READER_H_
