// The attributes of a parameter: from its record, from text, from the caller's record.
#include "attr/param_attr.h"

#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "core/decimal_text.h"
#include "core/export.h"
#include "core/refuse_null.h"
#include "core/trace.h"

namespace zrcfg {
namespace {

// One attribute that is a number: its number in the text calls, its byte in ParamAttr, its bits in
// the record.
struct AttrField {
  int number;
  size_t attr_offset;
  BitField bits;
  const char *name;
  bool in_single_update;
};

// In the order of ParamAttr, which is not that of the numbers.
constexpr AttrField kFields[] = {
    {0, offsetof(ParamAttr, flash_rw), record_field::kFlashRw, "flash_rw", true},
    {1, offsetof(ParamAttr, hide), record_field::kHide, "hide", true},
    {2, offsetof(ParamAttr, rw), record_field::kRw, "rw", true},
    {3, offsetof(ParamAttr, noti), record_field::kNoti, "noti", true},
    {12, offsetof(ParamAttr, namechange), record_field::kNamechange, "namechange", true},
    {4, offsetof(ParamAttr, noti_rw), record_field::kNotiRw, "noti_rw", true},
    {5, offsetof(ParamAttr, inform_dbus), record_field::kInformDbus, "inform_dbus", true},
    {6, offsetof(ParamAttr, key), record_field::kKey, "key", true},
    {7, offsetof(ParamAttr, encryt), record_field::kEncryt, "encryt", true},
    {8, offsetof(ParamAttr, device_type), record_field::kDeviceType, "device_type", false},
    {9, offsetof(ParamAttr, type), record_field::kType, "type", true},
    {13, offsetof(ParamAttr, flash_encryt), record_field::kFlashEncryt, "flash_encryt", true},
    {15, offsetof(ParamAttr, inform_tr069), record_field::kInformTr069, "inform_tr069", true},
};

constexpr int kAccesslistNumber = 10;
constexpr int kAreaNumber = 11;
constexpr int kParamCheckNumber = 16;

uint8_t &attr_byte(ParamAttr &attr, const AttrField &field) {
  return reinterpret_cast<uint8_t *>(&attr)[field.attr_offset];
}

uint8_t attr_byte(const ParamAttr &attr, const AttrField &field) {
  return reinterpret_cast<const uint8_t *>(&attr)[field.attr_offset];
}

}  // namespace

void read_attributes(const ParamRecord &record, ParamAttr &attr) {
  for (const AttrField &field : kFields) {
    attr_byte(attr, field) = field.bits.get(record);
  }
  memcpy(attr.accesslist, record.accesslist, sizeof attr.accesslist);
  memcpy(attr.area, record.area, sizeof attr.area);
  attr.param_check = record.param_check.get();
}

void read_and_trace(const ParamRecord &record, ParamAttr &attr) {
  read_attributes(record, attr);
  for (const AttrField &field : kFields) {
    ZRCFG_TRACE("param->ubv.boolval.%s = %d\n", field.name, attr_byte(attr, field));
  }
  ZRCFG_TRACE("param->accesslist = %.16s\n", attr.accesslist);
  ZRCFG_TRACE("param->area = %.28s\n", attr.area);
  ZRCFG_TRACE("param->param_check = %u\n", attr.param_check);
}

void write_attributes(ParamRecord &record, const ParamAttr &attr, AttrScope scope) {
  for (const AttrField &field : kFields) {
    if (scope == AttrScope::kMultiUpdate || field.in_single_update) {
      field.bits.set(record, attr_byte(attr, field));
    }
  }
  memcpy(record.accesslist, attr.accesslist, sizeof record.accesslist);
  if (scope == AttrScope::kMultiUpdate) {
    memcpy(record.area, attr.area, sizeof record.area);
  } else {
    record.param_check.set(attr.param_check);
  }
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" ZRCFG_EXPORT uint32_t setParamAttrCommonFunc(void *record, int attrId,
                                                        const char *text) {
  if (record == nullptr || text == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  ParamRecord &parameter = *static_cast<ParamRecord *>(record);
  // Texts are cut to their field by contract; what lies behind their terminator stays.
  if (attrId == kAccesslistNumber) {
    (void)snprintf(parameter.accesslist, sizeof parameter.accesslist, "%s", text);
  } else if (attrId == kAreaNumber) {
    (void)snprintf(parameter.area, sizeof parameter.area, "%s", text);
  } else if (attrId == kParamCheckNumber) {
    parameter.param_check.set(static_cast<uint32_t>(decimal_value(text)));
  }
  for (const AttrField &field : kFields) {
    if (field.number == attrId) {
      field.bits.set(parameter, static_cast<uint32_t>(decimal_value(text)));
    }
  }
  return ZRCFG_OK;
}
