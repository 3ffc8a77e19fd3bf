// The configuration tree as it lies on the disk, read without the library's help.
#include "bench/tree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace bench {
namespace {

namespace fs = std::filesystem;

constexpr size_t kHeaderAt = 4;
constexpr size_t kRecordsAt = 188;
constexpr size_t kRecordSize = 124;

uint8_t byte_at(const std::string &bytes, size_t at) {
  return static_cast<uint8_t>(bytes.at(at));
}

std::string text_at(const std::string &bytes, size_t at, size_t width) {
  const std::string field = bytes.substr(at, width);
  return field.substr(0, field.find('\0'));
}

Object parse_object(const std::string &url, const std::string &bytes) {
  size_t length = 0;
  for (size_t i = 0; i < kHeaderAt; ++i) {
    length = length << 8 | byte_at(bytes, i);
  }
  const std::string pnoe = text_at(bytes, kHeaderAt + 76, 64);
  Object object = {url,
                   static_cast<uint8_t>(byte_at(bytes, kHeaderAt + 8) >> 4 & 3),
                   url.find(".0.") != std::string::npos,
                   pnoe.substr(pnoe.rfind('/') + 1),
                   {}};
  size_t value_at = kHeaderAt + length;
  for (size_t at = kRecordsAt; at + kRecordSize <= kHeaderAt + length; at += kRecordSize) {
    const size_t feed = bytes.find('\n', value_at);
    if (feed == std::string::npos) {
      throw std::runtime_error(url + ": fewer values than records");
    }
    const std::string line = bytes.substr(value_at, feed - value_at);
    object.parameters.push_back({text_at(bytes, at + 8, 64), line == "\r" ? "" : line,
                                 static_cast<uint8_t>(byte_at(bytes, at + 4) >> 6)});
    value_at = feed + 1;
  }
  return object;
}

bool is_number(const std::string &name) {
  return name.find_first_not_of("0123456789") == std::string::npos;
}

bool listed_before(const std::string &left, const std::string &right) {
  return is_number(left) && is_number(right) ? std::stoi(left) < std::stoi(right) : left < right;
}

void read_object(const std::string &dir, const std::string &url, Tree &tree) {
  const std::string path = dir + dir_path_of(url);
  std::ifstream file(path + "property.conf", std::ios::binary);
  if (!file) {
    throw std::runtime_error(path + ": no property file");
  }
  tree.push_back(parse_object(url, std::string(std::istreambuf_iterator<char>(file), {})));
  std::vector<std::string> names;
  for (const fs::directory_entry &entry : fs::directory_iterator(path)) {
    if (entry.is_directory()) {
      names.push_back(entry.path().filename());
    }
  }
  std::sort(names.begin(), names.end(), listed_before);
  for (const std::string &name : names) {
    read_object(dir, url + name + ".", tree);
  }
}

}  // namespace

std::string dir_path_of(const std::string &url) {
  std::string path = url;
  std::replace(path.begin(), path.end(), '.', '/');
  return path;
}

Tree read_tree(const std::string &dir, const std::string &url) {
  Tree tree;
  read_object(dir, url, tree);
  return tree;
}

}  // namespace bench
