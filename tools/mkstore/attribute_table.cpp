// The attribute names that the attributes file may use, and the fields that they stand for.
#include "tools/mkstore/attribute_table.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "tools/mkstore/text.h"

namespace zrcfg::mkstore {

namespace {

// How an attribute lies in its struct. Texts keep one byte for their terminator.
enum class Kind { kBits, kByte, kWord, kText };

// Where an upgrade takes the attribute from.
enum class Origin {
  kModel,    // The new model: structure and rights.
  kStore,    // The old store: what clients set while the device runs.
  kProduct,  // The new attributes file where it names the attribute, else the old store.
};

struct AttributeRule {
  const char *name;
  Origin origin;
  Kind kind;
  BitField bits;  // Only of kBits.
  size_t offset;  // Of the others.
  size_t size;    // Of kText, terminator included.
};

constexpr AttributeRule bits_rule(const char *name, Origin origin, BitField bits) {
  return {name, origin, Kind::kBits, bits, 0, 0};
}
constexpr AttributeRule byte_rule(const char *name, Origin origin, size_t offset) {
  return {name, origin, Kind::kByte, {}, offset, 1};
}
constexpr AttributeRule word_rule(const char *name, Origin origin, size_t offset) {
  return {name, origin, Kind::kWord, {}, offset, sizeof(BigEndian32)};
}
constexpr AttributeRule text_rule(const char *name, Origin origin, size_t offset, size_t size) {
  return {name, origin, Kind::kText, {}, offset, size};
}

constexpr AttributeRule kParameterRules[] = {
    bits_rule("flash_rw", Origin::kStore, record_field::kFlashRw),
    bits_rule("hide", Origin::kProduct, record_field::kHide),
    bits_rule("rw", Origin::kModel, record_field::kRw),
    bits_rule("noti", Origin::kStore, record_field::kNoti),
    bits_rule("noti_rw", Origin::kModel, record_field::kNotiRw),
    byte_rule("inform_dbus", Origin::kStore, offsetof(ParamRecord, inform_dbus)),
    bits_rule("key", Origin::kModel, record_field::kKey),
    bits_rule("encryt", Origin::kStore, record_field::kEncryt),
    byte_rule("device_type", Origin::kProduct, offsetof(ParamRecord, device_type)),
    byte_rule("type", Origin::kModel, offsetof(ParamRecord, type)),
    text_rule("accesslist", Origin::kStore, offsetof(ParamRecord, accesslist),
              sizeof ParamRecord::accesslist),
    text_rule("area", Origin::kProduct, offsetof(ParamRecord, area), sizeof ParamRecord::area),
    bits_rule("namechange", Origin::kStore, record_field::kNamechange),
    bits_rule("flash_encryt", Origin::kStore, record_field::kFlashEncryt),
    bits_rule("inform_tr069", Origin::kStore, record_field::kInformTr069),
    word_rule("param_check", Origin::kModel, offsetof(ParamRecord, param_check)),
};

constexpr AttributeRule kObjectRules[] = {
    bits_rule("flag0", Origin::kProduct, header_field::kFlag0),
    bits_rule("hide", Origin::kProduct, header_field::kHide),
    bits_rule("rw", Origin::kModel, header_field::kRw),
    byte_rule("level3", Origin::kProduct, offsetof(ObjectHeader, level3)),
    bits_rule("key", Origin::kModel, header_field::kKey),
    byte_rule("max_instance", Origin::kModel, offsetof(ObjectHeader, max_instance)),
    byte_rule("device_type", Origin::kProduct, offsetof(ObjectHeader, device_type)),
    bits_rule("level7", Origin::kProduct, header_field::kLevel7),
    bits_rule("flag9", Origin::kProduct, header_field::kFlag9),
    bits_rule("flag8", Origin::kProduct, header_field::kFlag8),
    bits_rule("flag11", Origin::kProduct, header_field::kFlag11),
    text_rule("devfunc", Origin::kProduct, offsetof(ObjectHeader, devfunc),
              sizeof ObjectHeader::devfunc),
    text_rule("pnoe", Origin::kModel, offsetof(ObjectHeader, pnoe), sizeof ObjectHeader::pnoe),
    text_rule("extra_text", Origin::kProduct, offsetof(ObjectHeader, extra_text),
              sizeof ObjectHeader::extra_text),
};

uint32_t largest_number(const AttributeRule &rule) {
  switch (rule.kind) {
    case Kind::kBits:
      return rule.bits.mask();
    case Kind::kByte:
      return UINT8_MAX;
    default:
      return UINT32_MAX;
  }
}

template <size_t Count>
AttributeSetting checked_setting(const AttributeRule (&rules)[Count], const char *owner,
                                 const std::string &name, const std::string &value) {
  AttributeSetting setting;
  while (setting.attribute < Count && name != rules[setting.attribute].name) {
    ++setting.attribute;
  }
  if (setting.attribute == Count) {
    throw std::string(owner) + " has no attribute \"" + name + "\"";
  }
  const AttributeRule &rule = rules[setting.attribute];
  if (rule.kind == Kind::kText) {
    if (value.size() >= rule.size) {
      throw "the text of " + name + " has " + std::to_string(value.size()) +
          " characters, more than " + std::to_string(rule.size - 1);
    }
    if (value.find('\0') != std::string::npos) {
      throw "the text of " + name + " contains a NUL character";
    }
    setting.text = value;
    return setting;
  }
  const std::optional<size_t> number = parse_count(value, largest_number(rule));
  if (!number) {
    throw name + " \"" + value + "\" is not a number from 0 to " +
        std::to_string(largest_number(rule));
  }
  setting.number = static_cast<uint32_t>(*number);
  return setting;
}

template <typename Struct>
void apply_rule(const AttributeRule &rule, const AttributeSetting &setting, Struct &target) {
  uint8_t *bytes = reinterpret_cast<uint8_t *>(&target);
  switch (rule.kind) {
    case Kind::kBits:
      rule.bits.set(target, setting.number);
      return;
    case Kind::kByte:
      bytes[rule.offset] = static_cast<uint8_t>(setting.number);
      return;
    case Kind::kWord: {
      BigEndian32 word{};
      word.set(setting.number);
      std::memcpy(bytes + rule.offset, &word, sizeof word);
      return;
    }
    case Kind::kText:
      std::memset(bytes + rule.offset, 0, rule.size);
      std::memcpy(bytes + rule.offset, setting.text.data(), setting.text.size());
      return;
  }
}

template <typename Struct>
void copy_field(const AttributeRule &rule, const Struct &from, Struct &to) {
  if (rule.kind == Kind::kBits) {
    rule.bits.set(to, rule.bits.get(from));
    return;
  }
  std::memcpy(reinterpret_cast<uint8_t *>(&to) + rule.offset,
              reinterpret_cast<const uint8_t *>(&from) + rule.offset, rule.size);
}

template <typename Struct, size_t Count>
Struct carried(const AttributeRule (&rules)[Count], const Struct &old,
               const std::vector<AttributeSetting> &listed, const Struct &fresh) {
  Struct result = old;
  for (size_t i = 0; i < Count; ++i) {
    const bool named = std::any_of(listed.begin(), listed.end(),
                                   [i](const AttributeSetting &s) { return s.attribute == i; });
    if (rules[i].origin == Origin::kModel || (rules[i].origin == Origin::kProduct && named)) {
      copy_field(rules[i], fresh, result);
    }
  }
  return result;
}

}  // namespace

AttributeSetting parameter_attribute(const std::string &name, const std::string &value) {
  return checked_setting(kParameterRules, "a parameter", name, value);
}

AttributeSetting object_attribute(const std::string &name, const std::string &value) {
  return checked_setting(kObjectRules, "an object", name, value);
}

void apply_attribute(const AttributeSetting &setting, ParamRecord &record) {
  apply_rule(kParameterRules[setting.attribute], setting, record);
}

void apply_attribute(const AttributeSetting &setting, ObjectHeader &header) {
  apply_rule(kObjectRules[setting.attribute], setting, header);
}

void carry_attributes(const ParamRecord &old, const std::vector<AttributeSetting> &listed,
                      ParamRecord &record) {
  ParamRecord result = carried(kParameterRules, old, listed, record);
  std::memcpy(result.name, record.name, sizeof result.name);
  std::memcpy(result.next_slot, record.next_slot, sizeof result.next_slot);
  record = result;
}

void carry_attributes(const ObjectHeader &old, const std::vector<AttributeSetting> &listed,
                      ObjectHeader &header) {
  ObjectHeader result = carried(kObjectRules, old, listed, header);
  result.param_num = header.param_num;
  std::memcpy(result.url_slot, header.url_slot, sizeof result.url_slot);
  std::memcpy(result.param_list_slot, header.param_list_slot, sizeof result.param_list_slot);
  header = result;
}

}  // namespace zrcfg::mkstore
