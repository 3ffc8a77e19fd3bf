// What the list files ask for, by address, and how instances inherit it from their templates.
#ifndef ZRCFG_TOOLS_MKSTORE_SETTINGS_H_
#define ZRCFG_TOOLS_MKSTORE_SETTINGS_H_

#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "tools/mkstore/attribute_table.h"
#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// The instance numbers along a path, outermost first; 0 is a template.
using Numbers = std::vector<uint8_t>;

// One object directory of the store. A table's header has one number less than its instances.
struct Address {
  size_t object = 0;
  Numbers numbers;

  bool operator<(const Address &other) const {
    return std::tie(object, numbers) < std::tie(other.object, other.numbers);
  }
};

// A line of a list file, for messages.
struct Place {
  std::string file;
  size_t line = 0;
};

struct ValueSetting {
  std::string value;
  Place place;
};

// Settings of one object directory, by position of the parameter.
struct ObjectSettings {
  Place place;  // Of the first line that names the directory.
  std::map<size_t, ValueSetting> values;
  std::map<size_t, std::vector<AttributeSetting>> parameter_attributes;
  std::vector<AttributeSetting> object_attributes;
};

struct Settings {
  std::map<Address, std::map<uint8_t, Place>> instances;  // By table header, the numbers wanted.
  std::map<Address, ObjectSettings> objects;
};

// Calls `use` with the address of every directory that the given one is a copy of, the most
// general first and the address itself last: A.2.B.3 inherits from A.0.B.0, A.0.B.3, A.2.B.0.
void for_each_origin(const Address &address, const std::function<void(const Address &)> &use);

// The number of instance numbers in the object's own path, its own one included.
size_t table_depth(const Model &model, size_t object);

// Whether the address means the table itself and not an instance of it.
bool is_table_header(const Model &model, const Address &address);

// The URL of the address, ending in a dot.
std::string url_text(const Model &model, const Address &address);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_SETTINGS_H_
