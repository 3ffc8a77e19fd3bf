// Builds the exact bytes of property files with offsets of its own, and puts them into the store.
#include "support/property_builder.h"

#include <limits.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zrcfg_test {
namespace {

void put_text(std::string &bytes, size_t offset, size_t width, const std::string &text) {
  if (text.size() > width) {
    throw std::length_error("text is wider than its field: " + text);
  }
  bytes.replace(offset, text.size(), text);
}

void put_byte(std::string &bytes, size_t offset, unsigned value) {
  bytes[offset] = static_cast<char>(value & 0xffu);
}

void put_word(std::string &bytes, size_t offset, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) {
    put_byte(bytes, offset + i, value >> (24 - 8 * i));
  }
}

unsigned bits(unsigned value, unsigned width, unsigned shift) {
  if (value >= (1u << width)) {
    throw std::out_of_range("value is wider than its bit field");
  }
  return value << shift;
}

}  // namespace

std::string header_bytes(const HeaderFields &header) {
  std::string bytes(kHeadBytes, '\0');
  put_word(bytes, 0, header.url_slot);
  put_byte(bytes, 4, header.param_num);
  put_byte(bytes, 5, header.max_instance);
  put_byte(bytes, 6, header.device_type);
  put_byte(bytes, 7, header.level3);
  put_byte(bytes, 8,
           bits(header.hide, 1, 7) | bits(header.flag0, 1, 6) | bits(header.rw, 2, 4) |
               bits(header.key, 4, 0));
  put_byte(bytes, 9,
           bits(header.level7, 4, 4) | bits(header.flag9, 1, 3) | bits(header.flag8, 1, 2) |
               bits(header.flag11, 1, 1) | bits(header.reserved_flag, 1, 0));
  put_text(bytes, 10, 2, header.reserved_10);
  put_text(bytes, 12, 64, header.devfunc);
  put_text(bytes, 76, 64, header.pnoe);
  put_text(bytes, 140, 8, header.reserved_140);
  put_text(bytes, 148, 28, header.extra_text);
  put_text(bytes, 176, 4, header.reserved_176);
  put_word(bytes, 180, header.param_list_slot);
  return bytes;
}

std::string param_bytes(const ParamFields &param) {
  std::string bytes(kParamBytes, '\0');
  put_byte(bytes, 0, param.type);
  put_byte(bytes, 1, param.inform_dbus);
  put_byte(bytes, 2, param.device_type);
  put_byte(bytes, 3, param.reserved_3);
  put_byte(bytes, 4, bits(param.rw, 2, 6) | bits(param.key, 4, 2) | bits(param.encryt, 2, 0));
  put_byte(bytes, 5,
           bits(param.noti, 4, 4) | bits(param.flash_rw, 1, 3) | bits(param.hide, 1, 2) |
               bits(param.noti_rw, 1, 1) | bits(param.namechange, 1, 0));
  put_byte(bytes, 6,
           bits(param.flash_encryt, 1, 7) | bits(param.reserved_6_high, 1, 6) |
               bits(param.inform_tr069, 1, 5) | bits(param.reserved_6_low, 5, 0));
  put_byte(bytes, 7, param.reserved_7);
  put_text(bytes, 8, 64, param.name);
  put_text(bytes, 72, 16, param.accesslist);
  put_text(bytes, 88, 28, param.area);
  put_word(bytes, 116, param.param_check);
  put_word(bytes, 120, param.next_slot);
  return bytes;
}

ParamFields &PropertyFile::add(const std::string &name, const std::string &value) {
  ParamFields param;
  param.name = name;
  param.value = value;
  params.push_back(param);
  return params.back();
}

std::string PropertyFile::head_bytes() const {
  std::string bytes(4, '\0');
  const auto computed = static_cast<uint32_t>(kHeadBytes + kParamBytes * params.size());
  put_word(bytes, 0, length_word.value_or(computed));
  bytes += header_bytes(header);
  for (const ParamFields &param : params) {
    bytes += param_bytes(param);
  }
  return bytes;
}

std::string PropertyFile::value_bytes() const {
  if (values) {
    return *values;
  }
  std::string text;
  for (const ParamFields &param : params) {
    text += (param.value.empty() ? "\r" : param.value) + "\n";
  }
  return text;
}

PropertyFile property_file(const std::vector<std::string> &names,
                           const std::vector<std::string> &values) {
  PropertyFile file;
  for (size_t i = 0; i < names.size(); ++i) {
    file.add(names[i], values.at(i));
  }
  return file;
}

std::string store_path(const std::string &relative) {
  return "/var/" + relative;
}

void make_store_dir(const std::string &dir) {
  std::filesystem::create_directories(store_path(dir));
}

size_t longest_name() {
  const std::string dir = store_path(std::string(NAME_MAX, 'n'));
  if (mkdir(dir.c_str(), 0755) != 0) {
    return NAME_MAX - 1;
  }
  std::filesystem::remove(dir);
  return NAME_MAX;
}

void write_store_file(const std::string &relative, const std::string &bytes) {
  std::ofstream out(store_path(relative), std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) {
    throw std::runtime_error("cannot write " + store_path(relative));
  }
}

std::string read_store_file(const std::string &relative) {
  std::ifstream in(store_path(relative), std::ios::binary);
  if (!in) {
    throw std::runtime_error("cannot read " + store_path(relative));
  }
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool store_entry_exists(const std::string &relative) {
  return std::filesystem::exists(std::filesystem::symlink_status(store_path(relative)));
}

void write_property(const std::string &dir, const PropertyFile &file) {
  write_property(dir, file.bytes());
}

void write_property(const std::string &dir, const std::string &bytes) {
  make_store_dir(dir);
  write_store_file(dir + "property.conf", bytes);
}

std::string read_property(const std::string &dir) {
  return read_store_file(dir + "property.conf");
}

std::string property_path(const std::string &dir) {
  return store_path(dir + "property.conf");
}

uint32_t length_word(const std::string &bytes) {
  uint32_t word = 0;
  for (size_t i = 0; i < 4; ++i) {
    word = (word << 8) | static_cast<uint8_t>(bytes.at(i));
  }
  return word;
}

size_t value_offset(const std::string &bytes) {
  return 4 + size_t{length_word(bytes)};
}

std::string value_section(const std::string &bytes) {
  return bytes.substr(value_offset(bytes));
}

std::string without_slots(std::string bytes) {
  constexpr size_t kSlot = 4;
  constexpr size_t kRecords = 4 + kHeadBytes;
  const auto clear = [&bytes](size_t end) {
    if (end <= bytes.size()) {
      bytes.replace(end - kSlot, kSlot, kSlot, '\0');
    }
  };
  clear(4 + kSlot);
  clear(kRecords);
  const size_t known = bytes.size() < kRecords ? 0 : std::min(bytes.size(), value_offset(bytes));
  for (size_t end = kRecords + kParamBytes; end <= known; end += kParamBytes) {
    clear(end);
  }
  return bytes;
}

}  // namespace zrcfg_test
