// The attribute names that the attributes file may use, and the fields that they stand for.
#ifndef ZRCFG_TOOLS_MKSTORE_ATTRIBUTE_TABLE_H_
#define ZRCFG_TOOLS_MKSTORE_ATTRIBUTE_TABLE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "core/property_file.h"

namespace zrcfg::mkstore {

// A checked assignment: the position of the attribute in its table, and its number or text.
struct AttributeSetting {
  size_t attribute = 0;
  uint32_t number = 0;
  std::string text;
};

// Checks name and value. Throws std::string, a reason without file and line.
AttributeSetting parameter_attribute(const std::string &name, const std::string &value);
AttributeSetting object_attribute(const std::string &name, const std::string &value);

void apply_attribute(const AttributeSetting &setting, ParamRecord &record);
void apply_attribute(const AttributeSetting &setting, ObjectHeader &header);

// Puts what outlives an upgrade into a new record or header: all that the model has no word for,
// reserved bytes included. Of the attributes that describe the product those in `listed` stay.
void carry_attributes(const ParamRecord &old, const std::vector<AttributeSetting> &listed,
                      ParamRecord &record);
void carry_attributes(const ObjectHeader &old, const std::vector<AttributeSetting> &listed,
                      ObjectHeader &header);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_ATTRIBUTE_TABLE_H_
