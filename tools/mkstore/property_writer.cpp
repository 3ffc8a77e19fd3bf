// The bytes of one property file.
#include "tools/mkstore/property_writer.h"

#include <algorithm>
#include <cstring>

#include "core/value_section.h"
#include "tools/mkstore/model_tree.h"

namespace zrcfg::mkstore {

namespace {

constexpr uint32_t kFullKey = 15;  // Every export mode passes.

// Whether a table's instances may be added and deleted, and by whom.
enum TableAccess : uint32_t { kFixed = 0, kByClients = 1, kByDeviceOnly = 2 };

uint32_t table_access(const Object &table) {
  if (table.min_entries == table.max_entries) {
    return kFixed;
  }
  return table.writable ? kByClients : kByDeviceOnly;
}

void apply_table(const Model &model, const Object &table, ObjectHeader &header) {
  header.max_instance = static_cast<uint8_t>(std::min(table.max_entries, kMaxInstances));
  if (table.counter.empty()) {
    return;
  }
  const std::string text = model.objects[table.parent].name + "/" + table.counter;
  std::memcpy(header.pnoe, text.data(), text.size());  // Its length was checked with the model.
}

// The values and attributes of one directory, with those of the templates it is a copy of.
ObjectSettings inherited_settings(const Settings &settings, const Address &address) {
  ObjectSettings result;
  if (settings.objects.empty()) {
    return result;
  }
  for_each_origin(address, [&](const Address &origin) {
    const auto found = settings.objects.find(origin);
    if (found == settings.objects.end()) {
      return;
    }
    const ObjectSettings &from = found->second;
    for (const auto &[position, setting] : from.values) {
      result.values[position] = setting;
    }
    for (const auto &[position, attributes] : from.parameter_attributes) {
      auto &to = result.parameter_attributes[position];
      to.insert(to.end(), attributes.begin(), attributes.end());
    }
    result.object_attributes.insert(result.object_attributes.end(), from.object_attributes.begin(),
                                    from.object_attributes.end());
  });
  return result;
}

ParamRecord parameter_record(const Parameter &parameter) {
  ParamRecord record{};
  record.type = parameter.syntax.list ? kListTypeCode : static_cast<uint8_t>(parameter.syntax.type);
  record_field::kRw.set(record, parameter.writable ? 1 : 0);
  record_field::kKey.set(record, parameter.writable ? kFullKey : 0);
  record_field::kNoti.set(record, parameter.notification);
  record_field::kNotiRw.set(record, parameter.notification_changeable ? 1 : 0);
  record_field::kInformTr069.set(record, parameter.forced_inform ? 1 : 0);
  record.param_check.set(parameter.filter_number);
  std::memcpy(record.name, parameter.name.data(), parameter.name.size());
  return record;
}

std::string value_of(const Placement &placement, const ObjectSettings &settings, size_t position,
                     const Parameter &parameter) {
  const auto counter = placement.counters.find(position);
  if (counter != placement.counters.end()) {
    return std::to_string(counter->second);
  }
  const auto setting = settings.values.find(position);
  return setting != settings.values.end() ? setting->second.value : parameter.initial;
}

template <typename Struct>
void append_bytes(std::string &bytes, const Struct &part) {
  bytes.append(reinterpret_cast<const char *>(&part), sizeof part);
}

ObjectHeader header_with(const Model &model, const ObjectSettings &settings,
                         const Placement &placement) {
  const Object &object = model.objects[placement.address.object];
  ObjectHeader header{};
  if (!placement.table_header) {
    header.param_num = static_cast<uint8_t>(object.parameters.size());
  }
  if (placement.table_header) {
    apply_table(model, object, header);
  }
  if (object.is_table) {
    header_field::kRw.set(header, table_access(object));
    header_field::kKey.set(header, table_access(object) == kByClients ? kFullKey : 0);
  }
  for (const AttributeSetting &attribute : settings.object_attributes) {
    apply_attribute(attribute, header);
  }
  return header;
}

}  // namespace

ObjectHeader object_header(const Model &model, const Settings &settings,
                           const Placement &placement) {
  return header_with(model, inherited_settings(settings, placement.address), placement);
}

ObjectContent object_content(const Model &model, const Settings &settings,
                             const Placement &placement) {
  ObjectContent content;
  content.listed = inherited_settings(settings, placement.address);
  content.header = header_with(model, content.listed, placement);
  const std::vector<Parameter> &parameters = model.objects[placement.address.object].parameters;
  for (size_t i = 0; i < content.header.param_num; ++i) {
    ParamRecord record = parameter_record(parameters[i]);
    const auto attributes = content.listed.parameter_attributes.find(i);
    if (attributes != content.listed.parameter_attributes.end()) {
      for (const AttributeSetting &attribute : attributes->second) {
        apply_attribute(attribute, record);
      }
    }
    content.records.push_back(record);
    content.values.push_back(value_of(placement, content.listed, i, parameters[i]));
  }
  return content;
}

std::string property_file(const ObjectContent &content) {
  BigEndian32 length{};
  length.set(kHeaderSize + kRecordSize * static_cast<uint32_t>(content.records.size()));
  std::string bytes;
  append_bytes(bytes, length);
  append_bytes(bytes, content.header);
  for (const ParamRecord &record : content.records) {
    append_bytes(bytes, record);
  }
  for (const std::string &value : content.values) {
    bytes += value.empty() ? std::string(1, kEmptyValueMark) : value;
    bytes += '\n';
  }
  return bytes;
}

}  // namespace zrcfg::mkstore
