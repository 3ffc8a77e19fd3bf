// The attribute names that the attributes file may use, and the fields that they stand for.
#include "tools/mkstore/attribute_table.h"

#include <cstddef>
#include <cstring>

#include "tools/mkstore/text.h"

namespace zrcfg::mkstore {

namespace {

// How an attribute lies in its struct. Texts keep one byte for their terminator.
enum class Kind { kBits, kByte, kWord, kText };

struct AttributeRule {
  const char *name;
  Kind kind;
  BitField bits;  // Only of kBits.
  size_t offset;  // Of the others.
  size_t size;    // Of kText, terminator included.
};

constexpr AttributeRule bits_rule(const char *name, BitField bits) {
  return {name, Kind::kBits, bits, 0, 0};
}
constexpr AttributeRule byte_rule(const char *name, size_t offset) {
  return {name, Kind::kByte, {}, offset, 1};
}
constexpr AttributeRule word_rule(const char *name, size_t offset) {
  return {name, Kind::kWord, {}, offset, sizeof(BigEndian32)};
}
constexpr AttributeRule text_rule(const char *name, size_t offset, size_t size) {
  return {name, Kind::kText, {}, offset, size};
}

constexpr AttributeRule kParameterRules[] = {
    bits_rule("flash_rw", record_field::kFlashRw),
    bits_rule("hide", record_field::kHide),
    bits_rule("rw", record_field::kRw),
    bits_rule("noti", record_field::kNoti),
    bits_rule("noti_rw", record_field::kNotiRw),
    byte_rule("inform_dbus", offsetof(ParamRecord, inform_dbus)),
    bits_rule("key", record_field::kKey),
    bits_rule("encryt", record_field::kEncryt),
    byte_rule("device_type", offsetof(ParamRecord, device_type)),
    byte_rule("type", offsetof(ParamRecord, type)),
    text_rule("accesslist", offsetof(ParamRecord, accesslist), sizeof ParamRecord::accesslist),
    text_rule("area", offsetof(ParamRecord, area), sizeof ParamRecord::area),
    bits_rule("namechange", record_field::kNamechange),
    bits_rule("flash_encryt", record_field::kFlashEncryt),
    bits_rule("inform_tr069", record_field::kInformTr069),
    word_rule("param_check", offsetof(ParamRecord, param_check)),
};

constexpr AttributeRule kObjectRules[] = {
    bits_rule("flag0", header_field::kFlag0),
    bits_rule("hide", header_field::kHide),
    bits_rule("rw", header_field::kRw),
    byte_rule("level3", offsetof(ObjectHeader, level3)),
    bits_rule("key", header_field::kKey),
    byte_rule("max_instance", offsetof(ObjectHeader, max_instance)),
    byte_rule("device_type", offsetof(ObjectHeader, device_type)),
    bits_rule("level7", header_field::kLevel7),
    bits_rule("flag9", header_field::kFlag9),
    bits_rule("flag8", header_field::kFlag8),
    bits_rule("flag11", header_field::kFlag11),
    text_rule("devfunc", offsetof(ObjectHeader, devfunc), sizeof ObjectHeader::devfunc),
    text_rule("pnoe", offsetof(ObjectHeader, pnoe), sizeof ObjectHeader::pnoe),
    text_rule("extra_text", offsetof(ObjectHeader, extra_text), sizeof ObjectHeader::extra_text),
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

}  // namespace zrcfg::mkstore
