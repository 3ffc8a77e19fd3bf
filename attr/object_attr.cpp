// The attributes that an object's own header holds.
#include <stddef.h>
#include <string.h>

#include "attr/property_update.h"
#include "core/call_frame.h"
#include "core/checked_url.h"
#include "core/decimal_text.h"
#include "core/export.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr int kNotSettable = -1;

// One attribute that is a number: its number in the text call, its byte in ObjAttr, its bits in the
// header.
struct ObjectField {
  int number;
  size_t attr_offset;
  BitField bits;
};

constexpr ObjectField kFields[] = {
    {0, offsetof(ObjAttr, flag0), header_field::kFlag0},
    {1, offsetof(ObjAttr, hide), header_field::kHide},
    {2, offsetof(ObjAttr, rw), header_field::kRw},
    {3, offsetof(ObjAttr, level3), header_field::kLevel3},
    {4, offsetof(ObjAttr, key), header_field::kKey},
    {5, offsetof(ObjAttr, max_instance), header_field::kMaxInstance},
    {kNotSettable, offsetof(ObjAttr, device_type), header_field::kDeviceType},
    {10, offsetof(ObjAttr, level7), header_field::kLevel7},
    {13, offsetof(ObjAttr, flag8), header_field::kFlag8},
    {11, offsetof(ObjAttr, flag9), header_field::kFlag9},
    {14, offsetof(ObjAttr, flag11), header_field::kFlag11},
};

void read_header(const ObjectHeader &header, ObjAttr &attr) {
  uint8_t *const bytes = reinterpret_cast<uint8_t *>(&attr);
  for (const ObjectField &field : kFields) {
    bytes[field.attr_offset] = field.bits.get(header);
  }
  attr.zero10 = 0;
  memcpy(attr.pnoe, header.pnoe, sizeof attr.pnoe);
  memcpy(attr.devfunc, header.devfunc, sizeof attr.devfunc);
  memcpy(attr.extra_text, header.extra_text, sizeof attr.extra_text);
  ZRCFG_TRACE("pAttr->devfunc=%.64s!\n", attr.devfunc);
}

void set_header_field(ObjectHeader &header, int number, const char *text) {
  for (const ObjectField &field : kFields) {
    if (field.number == number && number != kNotSettable) {
      field.bits.set(header, static_cast<uint32_t>(decimal_value(text)));
    }
  }
}

uint32_t update_header(OpenObject &object, int number, const char *text) {
  ObjectImage &image = *object.loaded.image;
  const uint32_t result = prepare_update(image, object.file, PrepareGuard::kLock);
  if (result != ZRCFG_OK) {
    return result;
  }
  ZRCFG_TRACE("zrcfg_setsingleobjattr_ext() test\n");
  set_header_field(image.header, number, text);
  write_header(object.file.fd, image);
  ZRCFG_TRACE("obj's attr has write to file\n");
  return ZRCFG_OK;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t zrcfg_getobjattr(const char *url, ObjAttr *attr, int timeout) {
  if (url == nullptr || attr == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (check_url_length(url) != ZRCFG_OK) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead,
                     [&](OpenObject &object) -> uint32_t {
                       read_header(object.loaded.image->header, *attr);
                       return ZRCFG_OK;
                     });
}

ZRCFG_EXPORT uint32_t zrcfg_setsingleobjattr_ext(const char *url, int attrId, const char *text,
                                                 int timeout) {
  if (url == nullptr || text == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite,
                     [&](OpenObject &object) { return update_header(object, attrId, text); });
}

}  // extern "C"
