// The attributes of a record as the tests know them, with places and rules of their own.
#include <algorithm>
#include <climits>
#include <cstring>
#include <random>

#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

constexpr size_t kNameAt = 8;
constexpr size_t kNameBytes = 64;
constexpr size_t kAccesslistAt = 72;
constexpr size_t kAreaAt = 88;
constexpr size_t kCheckAt = 116;
constexpr size_t kAttrAccesslistAt = 14;
constexpr size_t kAttrAreaAt = 30;
constexpr size_t kAttrCheckAt = 60;
constexpr Bits kNoti = {5, 4, 4};

void put_word(std::string &bytes, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) {
    bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
  }
}

void put_name(std::string &bytes, size_t at, const std::string &name) {
  bytes.replace(at, std::min(name.size() + 1, kNameBytes), name.c_str(),
                std::min(name.size() + 1, kNameBytes));
}

// Copies a text with its terminator into a field and leaves what lies behind it.
void put_text(std::string &bytes, size_t at, size_t width, const std::string &text) {
  const std::string cut = text.substr(0, width - 1) + '\0';
  bytes.replace(at, cut.size(), cut);
}

void model_all(std::string &bytes, size_t base, const std::string &attr, bool single) {
  for (const AttrRow &row : attr_rows()) {
    if (!single || row.single) {
      row.bits.set(bytes, base, static_cast<uint8_t>(attr[row.attr_offset]));
    }
  }
  model_accesslist(bytes, base, attr.substr(kAttrAccesslistAt, kAccesslistBytes));
}

}  // namespace

std::string filled(size_t size, Fill fill, unsigned seed) {
  if (fill != Fill::kRandom) {
    return std::string(size, fill == Fill::kOnes ? '\xff' : '\0');
  }
  std::mt19937 numbers(seed);
  std::string bytes(size, '\0');
  for (char &byte : bytes) {
    byte = static_cast<char>(numbers() >> 8);
  }
  return bytes;
}

std::string filled_record(const std::string &name, Fill fill, unsigned seed) {
  std::string bytes = filled(kParamBytes, fill, seed);
  put_name(bytes, kNameAt, name);
  return bytes;
}

std::string filled_file(const std::vector<std::string> &names, Fill fill, unsigned seed) {
  std::string bytes(4, '\0');
  put_word(bytes, 0, static_cast<uint32_t>(kHeadBytes + kParamBytes * names.size()));
  bytes += filled(kHeadBytes, fill, seed);
  // The count as it is recomputed, so that a header that is written again stays the same.
  bytes[kHeaderAt + 4] = static_cast<char>(names.size());
  std::string values;
  for (size_t i = 0; i < names.size(); ++i) {
    bytes += filled_record(names[i], fill, seed + 1 + static_cast<unsigned>(i));
    values += "value of " + names[i] + "\n";
  }
  return bytes + values;
}

void Bits::set(std::string &bytes, size_t base, uint32_t value) const {
  const unsigned mask = ((1u << width) - 1) << shift;
  const unsigned old = static_cast<uint8_t>(bytes.at(base + offset));
  bytes[base + offset] = static_cast<char>((old & ~mask) | ((value << shift) & mask));
}

uint8_t Bits::get(const std::string &bytes, size_t base) const {
  const unsigned byte = static_cast<uint8_t>(bytes.at(base + offset));
  return static_cast<uint8_t>((byte >> shift) & ((1u << width) - 1));
}

const std::vector<AttrRow> &attr_rows() {
  static const std::vector<AttrRow> rows = {{"flash_rw", 0, {5, 3, 1}, 0, true},
                                            {"hide", 1, {5, 2, 1}, 1, true},
                                            {"rw", 2, {4, 6, 2}, 2, true},
                                            {"noti", 3, kNoti, 3, true},
                                            {"namechange", 12, {5, 0, 1}, 4, true},
                                            {"noti_rw", 4, {5, 1, 1}, 5, true},
                                            {"inform_dbus", 5, {1, 0, 8}, 6, true},
                                            {"key", 6, {4, 2, 4}, 7, true},
                                            {"encryt", 7, {4, 0, 2}, 8, true},
                                            {"device_type", 8, {2, 0, 8}, 9, false},
                                            {"type", 9, {0, 0, 8}, 10, true},
                                            {"flash_encryt", 13, {6, 7, 1}, 11, true},
                                            {"inform_tr069", 15, {6, 5, 1}, 13, true}};
  return rows;
}

std::string model_attr(const std::string &bytes, size_t base, const std::string &before) {
  std::string attr = before;
  for (const AttrRow &row : attr_rows()) {
    attr[row.attr_offset] = static_cast<char>(row.bits.get(bytes, base));
  }
  attr.replace(kAttrAccesslistAt, kAccesslistBytes, bytes, base + kAccesslistAt, kAccesslistBytes);
  attr.replace(kAttrAreaAt, kAreaBytes, bytes, base + kAreaAt, kAreaBytes);
  const uint32_t check = word_at(bytes, base + kCheckAt);
  memcpy(&attr[kAttrCheckAt], &check, sizeof check);
  return attr;
}

void model_text(std::string &bytes, size_t base, int number, const std::string &text,
                int32_t value) {
  for (const AttrRow &row : attr_rows()) {
    if (row.number == number) {
      row.bits.set(bytes, base, static_cast<uint32_t>(value));
    }
  }
  if (number == 10) {
    put_text(bytes, base + kAccesslistAt, kAccesslistBytes, text);
  } else if (number == 11) {
    put_text(bytes, base + kAreaAt, kAreaBytes, text);
  } else if (number == 16) {
    put_word(bytes, base + kCheckAt, static_cast<uint32_t>(value));
  }
}

void model_single_all(std::string &bytes, size_t base, const std::string &attr) {
  model_all(bytes, base, attr, true);
  put_word(bytes, base + kCheckAt, attr_of(attr).param_check);
}

void model_multi_all(std::string &bytes, size_t base, const std::string &attr) {
  model_all(bytes, base, attr, false);
  bytes.replace(base + kAreaAt, kAreaBytes, attr, kAttrAreaAt, kAreaBytes);
}

void model_noti(std::string &bytes, size_t base, uint32_t noti) {
  kNoti.set(bytes, base, noti);
}

void model_accesslist(std::string &bytes, size_t base, const std::string &list) {
  bytes.replace(base + kAccesslistAt, kAccesslistBytes, list, 0, kAccesslistBytes);
}

uint32_t word_at(const std::string &bytes, size_t at) {
  uint32_t word = 0;
  for (size_t i = 0; i < 4; ++i) {
    word = (word << 8) | static_cast<uint8_t>(bytes.at(at + i));
  }
  return word;
}

const std::vector<NumberText> &number_texts() {
  static const std::vector<NumberText> texts = {
      {"0", 0},
      {"1", 1},
      {"2", 2},
      {"3", 3},
      {"4", 4},
      {"9", 9},
      {"15", 15},
      {"16", 16},
      {"58", 58},
      {"170", 170},
      {"255", 255},
      {"256", 256},
      {"300", 300},
      {"65535", 65535},
      {"305419896", 0x12345678},
      {"2147483647", INT32_MAX},
      {"2147483648", INT32_MAX},
      {"4294967295", INT32_MAX},
      {"99999999999999999999999", INT32_MAX},
      {"-1", -1},
      {"-2", -2},
      {"-256", -256},
      {"-2147483648", INT32_MIN},
      {"-2147483649", INT32_MIN},
      {"-99999999999999999999", INT32_MIN},
      {"", 0},
      {"abc", 0},
      {"x1", 0},
      {"- 3", 0},
      {"0x1f", 0},
      {"  13", 13},
      {"\t+5", 5},
      {"007", 7},
      {"12abc", 12},
      {"6.9", 6},
      {"fifteen letters", 0},
      {"sixteen letters!", 0},
      {"seven and twenty characters", 0},
      {"eight and twenty characters!", 0},
      {"1 text that is a good deal longer than a field", 1}};
  return texts;
}

const std::vector<int> &attr_numbers() {
  static const std::vector<int> numbers = {INT_MIN, -256, -1, 0,  1,  2,  3,  4,   5,   6,
                                           7,       8,    9,  10, 11, 12, 13, 14,  15,  16,
                                           17,      18,   19, 20, 31, 32, 99, 255, 256, INT_MAX};
  return numbers;
}

void expect_bytes(const std::string &actual, const std::string &expected, const std::string &what) {
  EXPECT_EQ(actual.size(), expected.size()) << what;
  const size_t size = std::min(actual.size(), expected.size());
  for (size_t i = 0; i < size; ++i) {
    if (actual[i] != expected[i]) {
      ADD_FAILURE() << what << ": byte " << i << " is " << int{static_cast<uint8_t>(actual[i])}
                    << " and not " << int{static_cast<uint8_t>(expected[i])};
      return;
    }
  }
}

std::string bytes_of(const ParamAttr &attr) {
  return std::string(reinterpret_cast<const char *>(&attr), sizeof attr);
}

ParamAttr attr_of(const std::string &bytes) {
  ParamAttr attr;
  memcpy(static_cast<void *>(&attr), bytes.data(), sizeof attr);
  return attr;
}

}  // namespace zrcfg_test
