// Updates of one parameter's attributes, by record or by text.
#include "attr/attr_update.h"

#include <string.h>

#include "attr/param_attr.h"
#include "attr/property_update.h"
#include "core/call_frame.h"
#include "core/export.h"
#include "enum/url_split.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

void set_noti(ParamRecord &record, uint32_t noti) {
  record_field::kNoti.set(record, noti);
}

void set_accesslist(ParamRecord &record, const void *bytes) {
  memcpy(record.accesslist, bytes, sizeof record.accesslist);
}

// Finds the record, changes it in the image by `change` and writes it. `log_write` takes the number
// of records written.
template <typename Change, typename LogWrite>
uint32_t update_record(ObjectImage &image, PropertyFd &file, const char *name, Change change,
                       LogWrite log_write) {
  const uint32_t result = prepare_update(image, file, PrepareGuard::kLock);
  if (result != ZRCFG_OK) {
    return result;
  }
  ParamRecord *const record = find_record(image, name);
  if (record == nullptr) {
    return ZRCFG_E_NO_ATTRIBUTE;
  }
  change(*record);
  RecordWriter writer(file.fd, image);
  writer.mark(static_cast<uint32_t>(record - records(image).begin()));
  log_write(writer.flush());
  return ZRCFG_OK;
}

uint32_t update_by_record(ObjectImage &image, PropertyFd &file, const char *name, const void *input,
                          int mode) {
  return update_record(
      image, file, name,
      [&](ParamRecord &record) { apply_mode(record, input, mode, AttrScope::kSingleUpdate); },
      [](uint32_t) { ZRCFG_TRACE("param's attr has write to file\n"); });
}

uint32_t update_by_text(ObjectImage &image, PropertyFd &file, const char *name, int number,
                        const char *text) {
  return update_record(
      image, file, name,
      // Neither argument is null, so it cannot fail.
      [&](ParamRecord &record) { (void)setParamAttrCommonFunc(&record, number, text); },
      [](uint32_t written) {
        ZRCFG_TRACE("param's attr has write to file. wcount=%d\n", static_cast<int>(written));
      });
}

// The frame of both exported updates; `step` names the work in the log line of its failure.
template <typename Work>
uint32_t update_object(const char *url, int timeout, const char *step, Work work) {
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite, [&](OpenObject &object) {
    const uint32_t result = work(*object.loaded.image, object.file);
    if (result != ZRCFG_OK) {
      ZRCFG_TRACE("%s() fail ret=%d!\n", step, static_cast<int>(result));
    }
    return result;
  });
}

}  // namespace

void apply_mode(ParamRecord &record, const void *input, int mode, AttrScope scope) {
  switch (mode) {
    case ZRCFG_ATTR_SET_ALL:
      write_attributes(record, *static_cast<const ParamAttr *>(input), scope);
      break;
    case ZRCFG_ATTR_SET_NOTI:
      set_noti(record, *static_cast<const uint8_t *>(input));
      break;
    case ZRCFG_ATTR_SET_ACCESSLIST:
      set_accesslist(record, input);
      break;
    case ZRCFG_ATTR_SET_CHANGE:
      if (scope == AttrScope::kSingleUpdate) {
        apply_change(record, *static_cast<const ParamAttrChange *>(input));
      }
      break;
    default:
      break;
  }
}

bool apply_change(ParamRecord &record, const ParamAttrChange &change) {
  if (change.noti_change != 0) {
    set_noti(record, change.noti);
  }
  if (change.access_list_change != 0) {
    set_accesslist(record, change.accesslist);
  }
  return change.noti_change != 0 || change.access_list_change != 0;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t setSingleParamAttrByParamName(ZrcfgObject *image, const char *name,
                                                    const void *input, int mode) {
  if (image == nullptr || name == nullptr || input == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  return with_own_file([&](PropertyFd &file) {
    return update_by_record(*static_cast<ObjectImage *>(image), file, name, input, mode);
  });
}

ZRCFG_EXPORT uint32_t setSingleParamAttrByParamName_ext(ZrcfgObject *image, const char *name,
                                                        int attrId, const char *text) {
  if (image == nullptr || name == nullptr || text == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  return with_own_file([&](PropertyFd &file) {
    return update_by_text(*static_cast<ObjectImage *>(image), file, name, attrId, text);
  });
}

ZRCFG_EXPORT uint32_t zrcfg_setsingleparamattr(const char *url, const char *name, const void *input,
                                               int mode, int timeout) {
  if (url == nullptr || name == nullptr || input == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  return update_object(url, timeout, "setSingleParamAttrByParamName",
                       [&](ObjectImage &image, PropertyFd &file) {
                         return update_by_record(image, file, name, input, mode);
                       });
}

ZRCFG_EXPORT uint32_t zrcfg_setsingleparamattr_ext(const char *url, const char *name, int attrId,
                                                   const char *text, int timeout) {
  if (url == nullptr || name == nullptr || text == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  return update_object(url, timeout, "setSingleParamAttrByParamName_ext",
                       [&](ObjectImage &image, PropertyFd &file) {
                         return update_by_text(image, file, name, attrId, text);
                       });
}

ZRCFG_EXPORT int zrcfg_singleparamattr_set_ext(const char *path, int attrId, const char *text,
                                               int timeout) {
  ParamPath split;
  if (!split_param_path(path, split)) {
    return -1;
  }
  ZRCFG_TRACE("objUrl =  %s, param name = %s\n", split.url, split.name);
  const uint32_t result =
      zrcfg_setsingleparamattr_ext(split.url, split.name, attrId, text, timeout);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("zrcfg_setsingleparamattr_ext return =%d!\n", static_cast<int>(result));
    return -1;
  }
  return 0;
}

}  // extern "C"
