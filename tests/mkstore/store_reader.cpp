// Reads property files by their documented offsets, sharing nothing with the builder's structs.
#include "tests/mkstore/store_reader.h"

#include <fstream>
#include <iterator>

namespace {

unsigned byte_at(const std::string &bytes, size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

uint32_t word_at(const std::string &bytes, size_t at) {
  return (byte_at(bytes, at) << 24) + (byte_at(bytes, at + 1) << 16) +
         (byte_at(bytes, at + 2) << 8) + byte_at(bytes, at + 3);
}

std::string text_at(const std::string &bytes, size_t at, size_t size) {
  return std::string(bytes.substr(at, size).c_str());
}

void read_header(ReadFile &file) {
  const std::string &h = file.header;
  file.param_num = byte_at(h, 4);
  file.max_instance = byte_at(h, 5);
  file.device_type = byte_at(h, 6);
  file.level3 = byte_at(h, 7);
  file.hide = byte_at(h, 8) / 128;
  file.flag0 = byte_at(h, 8) / 64 % 2;
  file.rw = byte_at(h, 8) / 16 % 4;
  file.key = byte_at(h, 8) % 16;
  file.level7 = byte_at(h, 9) / 16;
  file.flag9 = byte_at(h, 9) / 8 % 2;
  file.flag8 = byte_at(h, 9) / 4 % 2;
  file.flag11 = byte_at(h, 9) / 2 % 2;
  file.devfunc = text_at(h, 12, 64);
  file.pnoe = text_at(h, 76, 64);
  file.extra_text = text_at(h, 148, 28);
}

ReadRecord read_record(const std::string &r) {
  ReadRecord record;
  record.bytes = r;
  record.type = byte_at(r, 0);
  record.inform_dbus = byte_at(r, 1);
  record.device_type = byte_at(r, 2);
  record.rw = byte_at(r, 4) / 64;
  record.key = byte_at(r, 4) / 4 % 16;
  record.encryt = byte_at(r, 4) % 4;
  record.noti = byte_at(r, 5) / 16;
  record.flash_rw = byte_at(r, 5) / 8 % 2;
  record.hide = byte_at(r, 5) / 4 % 2;
  record.noti_rw = byte_at(r, 5) / 2 % 2;
  record.namechange = byte_at(r, 5) % 2;
  record.flash_encryt = byte_at(r, 6) / 128;
  record.inform_tr069 = byte_at(r, 6) / 32 % 2;
  record.name = text_at(r, 8, 64);
  record.accesslist = text_at(r, 72, 16);
  record.area = text_at(r, 88, 28);
  record.param_check = word_at(r, 116);
  return record;
}

}  // namespace

std::string read_bytes(const std::string &path) {
  std::ifstream stream(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

ReadFile read_property_file(const std::string &directory) {
  ReadFile file;
  const std::string path = directory + "/property.conf";
  file.exists = std::ifstream(path).good();
  file.bytes = read_bytes(path);
  if (file.bytes.size() < 188) {
    return file;
  }
  const size_t length = word_at(file.bytes, 0);
  file.header = file.bytes.substr(4, 184);
  read_header(file);
  if (length < 184 || (length - 184) % 124 != 0 || file.bytes.size() < length + 4) {
    return file;
  }
  size_t line_at = length + 4;
  for (size_t at = 188; at < length + 4; at += 124) {
    ReadRecord record = read_record(file.bytes.substr(at, 124));
    const size_t end = file.bytes.find('\n', line_at);
    if (end == std::string::npos || end == line_at) {
      return file;
    }
    record.line = file.bytes.substr(line_at, end - line_at);
    line_at = end + 1;
    file.records.push_back(record);
  }
  file.well_formed = line_at == file.bytes.size() && file.param_num == file.records.size();
  return file;
}

ReadRecord find_record(const ReadFile &file, const std::string &name) {
  for (const ReadRecord &record : file.records) {
    if (record.name == name) {
      return record;
    }
  }
  return {};
}
