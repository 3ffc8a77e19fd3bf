// Queries of parameter attributes: one parameter, a list of them, all of an object.
#include <string.h>

#include "attr/attr_requests.h"
#include "attr/param_attr.h"
#include "core/call_frame.h"
#include "core/export.h"
#include "core/listing.h"
#include "core/record_index.h"
#include "core/request_list.h"
#include "enum/url_split.h"

namespace zrcfg {
namespace {

bool fills_buffer(int mode) {
  return mode >= ZRCFG_ATTR_GET_ALL && mode <= ZRCFG_ATTR_GET_ACCESSLIST;
}

void answer(const ParamRecord &record, MultiAttrNode &node, int mode) {
  switch (mode) {
    case ZRCFG_ATTR_GET_ALL:
      read_attributes(record, *static_cast<ParamAttr *>(node.pAttr));
      break;
    case ZRCFG_ATTR_GET_NOTI:
      *static_cast<uint8_t *>(node.pAttr) = record_field::kNoti.get(record);
      break;
    case ZRCFG_ATTR_GET_ACCESSLIST:
      memcpy(node.pAttr, record.accesslist, sizeof record.accesslist);
      break;
    case ZRCFG_ATTR_GET_FLAGS:
      copy_flags(record, node);
      break;
    default:
      break;
  }
}

uint32_t list_object(const char *url, OpenObject &object, ParamAttrNode **ends) {
  ObjectImage &image = *object.loaded.image;
  if (objIsHide(&image.header) == 1) {
    ZRCFG_TRACE("objIsHid() no need show!\n");
    return ZRCFG_E_NOT_FOUND;
  }
  if (image.header.param_num == 0) {
    ZRCFG_TRACE("this node has no params,do nothing!!\n");
    return ZRCFG_E_NO_ATTRIBUTES;
  }
  const uint32_t result = constructParamAttrList(url, &image, ends, ends ? ends + 1 : nullptr);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("getParamAttrList() fail ret=%d!\n", static_cast<int>(result));
  }
  return result;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t outputToMultiParamAttrList(ZrcfgObject *image, MultiAttrNode *list,
                                                 int mode) {
  if (image == nullptr || list == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (fills_buffer(mode) && any_without_buffer(list)) {
    return ZRCFG_E_ARGUMENT;
  }
  const RecordRange range = records(*static_cast<ObjectImage *>(image));
  RecordIndex index(range);
  return for_each_request(list, [&](MultiAttrNode &node) -> uint32_t {
    const int position = index.find(node.name);
    if (position != kNoRecord) {
      answer(range.begin()[position], node, mode);
    }
    return ZRCFG_OK;
  });
}

ZRCFG_EXPORT uint32_t constructParamAttrList(const char *url, ZrcfgObject *image,
                                             ParamAttrNode **head, ParamAttrNode **tail) {
  if (url == nullptr || image == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  ObjectImage &object = *static_cast<ObjectImage *>(image);
  if (object_is_left_out(object)) {
    return ZRCFG_E_NOT_FOUND;
  }
  ResultList<ParamAttrNode> list;
  for (const ParamRecord &record : records(object)) {
    ParamAttrNode *node;
    const uint32_t result = append_visible(list, url, record, &ParamAttrNode::name, node);
    if (result != ZRCFG_OK) {
      return result;
    }
    if (node != nullptr) {
      read_attributes(record, node->attr);
    }
  }
  finish_list(list, url, &ParamAttrNode::name, head, tail);
  return ZRCFG_OK;
}

ZRCFG_EXPORT uint32_t zrcfg_getsingleparamattr(const char *url, const char *name, ParamAttr *attr,
                                               int timeout) {
  if (url == nullptr || name == nullptr || attr == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead,
                     [&](OpenObject &object) -> uint32_t {
                       const ParamRecord *const record = find_record(*object.loaded.image, name);
                       if (record == nullptr) {
                         return ZRCFG_E_NO_PARAMETER;
                       }
                       read_and_trace(*record, *attr);
                       return ZRCFG_OK;
                     });
}

ZRCFG_EXPORT uint32_t zrcfg_getsingleparamattr_ext(const char *path, ParamAttr *attr, int timeout) {
  ParamPath split;
  if (!split_param_path(path, split)) {
    return ZRCFG_E_FAILED;
  }
  return zrcfg_getsingleparamattr(split.url, split.name, attr, timeout);
}

ZRCFG_EXPORT uint32_t zrcfg_getmultiparamattr(const char *url, MultiAttrNode *list, int mode,
                                              int timeout) {
  if (url == nullptr || list == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead, [&](OpenObject &object) {
    const uint32_t result = outputToMultiParamAttrList(object.loaded.image, list, mode);
    if (result != ZRCFG_OK) {
      ZRCFG_TRACE("outputToMultiParamAttrList() fail ret=%d!\n", static_cast<int>(result));
    }
    return result;
  });
}

ZRCFG_EXPORT uint32_t zrcfg_getallparamattr(const char *url, ParamAttrNode *headTail[2],
                                            int /*ignored*/, int timeout) {
  if (url == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead,
                     [&](OpenObject &object) { return list_object(url, object, headTail); });
}

}  // extern "C"
