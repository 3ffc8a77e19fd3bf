// Stores of any size, written file by file.
#include "bench/growth_store.h"

#include <string.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "bench/tree.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

constexpr size_t kHeaderSize = 184;
constexpr size_t kRecordSize = 124;

void put_text(std::string &bytes, size_t at, const std::string &text) {
  bytes.replace(at, text.size(), text);
}

// What an object's file holds: its table's counter and limit where it is a table, its parameters.
struct Content {
  std::string counter;
  std::vector<std::string> names;
  std::vector<std::string> values;
};

void write_object(const std::string &url, const Content &content) {
  const size_t length = kHeaderSize + content.names.size() * kRecordSize;
  std::string bytes(4 + length, '\0');
  for (size_t i = 0; i < 4; ++i) {
    bytes[i] = static_cast<char>(length >> (8 * (3 - i)) & 255u);
  }
  if (!content.counter.empty()) {
    bytes[4 + 5] = static_cast<char>(255);     // max_instance
    bytes[4 + 8] = static_cast<char>(1 << 4);  // rw
    put_text(bytes, 4 + 76, "Parent/" + content.counter);
  }
  for (size_t i = 0; i < content.names.size(); ++i) {
    put_text(bytes, 4 + kHeaderSize + i * kRecordSize + 8, content.names[i]);
  }
  for (const std::string &value : content.values) {
    bytes += (value.empty() ? "\r" : value) + "\n";
  }
  const std::string dir = "/var/" + dir_path_of(url);
  fs::create_directories(dir);
  std::ofstream(dir + "property.conf", std::ios::binary) << bytes;
}

}  // namespace

std::string growth_table(unsigned group) {
  return "Gate.Group" + std::to_string(group) + ".Port.";
}

std::string growth_parameter(unsigned i) {
  return "Parameter" + std::to_string(i);
}

unsigned make_growth_store(const GrowthSize &size) {
  fs::remove_all("/var/Gate");
  Content instance;
  for (unsigned i = 0; i < size.parameters; ++i) {
    instance.names.push_back(growth_parameter(i));
    instance.values.push_back("value " + std::to_string(i * 7919));
  }
  write_object("Gate.", {});
  unsigned objects = 1;
  for (unsigned group = 1; group <= size.groups; ++group) {
    const std::string table = growth_table(group);
    write_object(table.substr(0, table.size() - 5),
                 {"", {"PortNumberOfEntries"}, {std::to_string(size.instances)}});
    write_object(table, {"PortNumberOfEntries", {}, {}});
    for (unsigned i = 0; i <= size.instances; ++i) {
      write_object(table + std::to_string(i) + ".", instance);
    }
    objects += 2 + size.instances;
  }
  return objects;
}

}  // namespace bench
