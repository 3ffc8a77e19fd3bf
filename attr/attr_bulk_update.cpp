// Updates of many parameters' attributes: those that a list names, or all of an object.
#include "attr/attr_requests.h"
#include "attr/attr_update.h"
#include "attr/property_update.h"
#include "core/call_frame.h"
#include "core/checked_url.h"
#include "core/export.h"
#include "core/record_index.h"
#include "core/request_list.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

bool reads_buffer(int mode) {
  return mode >= ZRCFG_ATTR_SET_ALL && mode <= ZRCFG_ATTR_SET_ACCESSLIST;
}

void update_node(ParamRecord &record, const MultiAttrNode &node, int mode) {
  apply_mode(record, node.pAttr, mode, AttrScope::kMultiUpdate);
  if (mode == ZRCFG_ATTR_SET_ALL) {
    // The one field that the list does not set is handed back.
    static_cast<ParamAttr *>(node.pAttr)->param_check = record.param_check.get();
  }
}

uint32_t update_list(ObjectImage &image, PropertyFd &file, MultiAttrNode *list, int mode) {
  if (reads_buffer(mode) && any_without_buffer(list)) {
    return ZRCFG_E_ARGUMENT;
  }
  uint32_t result = prepare_update(image, file, PrepareGuard::kNone);
  if (result != ZRCFG_OK) {
    return result;
  }
  RecordIndex index(records(image));
  RecordWriter writer(file.fd, image);
  result = for_each_request(list, [&](MultiAttrNode &node) -> uint32_t {
    const int position = index.find(node.name);
    if (position != kNoRecord) {
      ZRCFG_TRACE("param=%d \n", position);
      ZRCFG_TRACE("param->name = %s\n", FieldName(node.name).text);
      update_node(records(image).begin()[position], node, mode);
      writer.mark(static_cast<uint32_t>(position));
    }
    return ZRCFG_OK;
  });
  (void)writer.flush();  // It logs what it could not write.
  return result;
}

uint32_t update_all(ObjectImage &image, PropertyFd &file, const ParamAttrChange &change) {
  ZRCFG_TRACE("setAllParamAttr!\n");
  char path[kFilePathSize];
  uint32_t result = bring_file(image, file, PrepareGuard::kNone, path);
  if (result != ZRCFG_OK) {
    return result;
  }
  ZRCFG_TRACE("setAllParamAttr. property_file=%s\n", path);
  result = open_for_update(path, file);
  if (result != ZRCFG_OK) {
    return result;
  }
  RecordWriter writer(file.fd, image);
  uint32_t position = 0;
  for (ParamRecord &record : records(image)) {
    ZRCFG_TRACE("param->name = %s, noti_change=%d, access_list_change=%d\n",
                FieldName(record.name).text, static_cast<int>(change.noti_change),
                static_cast<int>(change.access_list_change));
    if (apply_change(record, change)) {
      writer.mark(position);
    }
    ++position;
  }
  (void)writer.flush();  // It logs what it could not write.
  return ZRCFG_OK;
}

// Logs the failure of a work step, under the name that it has always had.
uint32_t report(uint32_t result) {
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("createObjByPath() fail ret=%d!\n", static_cast<int>(result));
  }
  return result;
}

}  // namespace

bool any_without_buffer(MultiAttrNode *list) {
  return for_each_request(list, [](const MultiAttrNode &node) {
           return node.pAttr == nullptr ? ZRCFG_E_ARGUMENT : ZRCFG_OK;
         }) == ZRCFG_E_ARGUMENT;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t modiMultiParamAttr(ZrcfgObject *image, MultiAttrNode *list, int mode,
                                         int /*timeout*/) {
  if (image == nullptr || list == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  return with_own_file([&](PropertyFd &file) {
    return update_list(*static_cast<ObjectImage *>(image), file, list, mode);
  });
}

ZRCFG_EXPORT uint32_t setAllParamAttr(ZrcfgObject *image, const ParamAttrChange *change,
                                      int /*timeout*/) {
  if (image == nullptr || change == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  return with_own_file([&](PropertyFd &file) {
    return update_all(*static_cast<ObjectImage *>(image), file, *change);
  });
}

ZRCFG_EXPORT uint32_t zrcfg_setmultiparamattr(const char *url, MultiAttrNode *list, int mode,
                                              int timeout) {
  if (url == nullptr || list == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (check_url_length(url) != ZRCFG_OK) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite, [&](OpenObject &object) {
    return report(update_list(*object.loaded.image, object.file, list, mode));
  });
}

ZRCFG_EXPORT uint32_t zrcfg_setallParamattr(const char *url, const ParamAttrChange *change,
                                            int timeout) {
  if (url == nullptr || change == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  // The readers' lock, although the call writes: callers rely on it.
  return with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead,
                     [&](OpenObject &object) -> uint32_t {
                       if (object.loaded.image->header.param_num == 0) {
                         ZRCFG_TRACE("this node has no params,do nothing!!\n");
                         return ZRCFG_E_NO_ATTRIBUTES;
                       }
                       return report(update_all(*object.loaded.image, object.file, *change));
                     });
}

}  // extern "C"
