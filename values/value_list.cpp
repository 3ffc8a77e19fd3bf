// The list of all visible values of an object.
#include "values/value_list.h"

#include "core/call_frame.h"
#include "core/checked_url.h"
#include "core/export.h"
#include "core/fresh_section.h"
#include "core/listing.h"
#include "core/value_section.h"

namespace zrcfg {
namespace {

using ValueList = ResultList<ParamValueListNode>;

uint32_t list_value(ValueList &list, int i, const char *url, const ParamRecord &record,
                    const ValueLine &line) {
  ParamValueListNode *node;
  const uint32_t result = append_visible(list, url, record, &ParamValueListNode::url, node);
  if (node == nullptr) {
    return result;
  }
  line.copy_value(node->value);
  ZRCFG_TRACE("i=%d ptr=0x%x ptr->url=%s\n", i, trace_address(node), node->url);
  return ZRCFG_OK;
}

uint32_t list_section(const char *url, ObjectImage &image, const ValueSection &section,
                      ParamValueListNode **head, ParamValueListNode **tail) {
  ValueList list;
  ValueLines lines(section);
  int i = 0;
  for (const ParamRecord &record : records(image)) {
    const ValueLine line = lines.next();
    if (!line.exists()) {
      ZRCFG_TRACE("i=%d param=%x pValue=%x err!\n", i, trace_address(&record), 0u);
      return ZRCFG_E_MEMORY;
    }
    const uint32_t result = list_value(list, i, url, record, line);
    if (result != ZRCFG_OK) {
      return result;
    }
    ++i;
  }
  finish_list(list, url, &ParamValueListNode::url, head, tail);
  return ZRCFG_OK;
}

uint32_t list_object(const char *url, OpenObject &object, ParamValueListNode **head,
                     ParamValueListNode **tail) {
  ObjectImage &image = *object.loaded.image;
  if (objIsHide(&image.header) == 1) {
    ZRCFG_TRACE("objIsHid() no need show!\n");
    return ZRCFG_E_NOT_FOUND;
  }
  if (image.header.param_num == 0) {
    ZRCFG_TRACE("this node has no params,do nothing!!\n");
    return ZRCFG_E_NO_VALUES;
  }
  const uint32_t result = object_is_left_out(image)
                              ? ZRCFG_E_NOT_FOUND
                              : list_section(url, image, object.loaded.section, head, tail);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("getParamValueList() fail ret=%d!\n", static_cast<int>(result));
  }
  return result;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int constructParamValueList(const char *objUrl, ZrcfgObject *image,
                                         ParamValueListNode **head, ParamValueListNode **tail) {
  if (objUrl == nullptr || image == nullptr) {
    return static_cast<int>(refuse_null(NullText::kPlain));
  }
  ObjectImage &object = *static_cast<ObjectImage *>(image);
  if (object_is_left_out(object)) {
    return ZRCFG_E_NOT_FOUND;
  }
  FreshSection fresh;
  uint32_t result = fresh.load(object, Access::kRead);
  if (result == ZRCFG_E_MEMORY) {
    ZRCFG_TRACE("pValue is NULL\n");
  }
  if (result == ZRCFG_OK) {
    result = list_section(objUrl, object, fresh.loaded.section, head, tail);
  }
  return static_cast<int>(result);
}

ZRCFG_EXPORT int zrcfg_getallparamval(const char *url, ParamValueListNode **head,
                                      ParamValueListNode **tail, int timeout) {
  const uint32_t result = check_url(url, NullText::kPlain);
  if (result != ZRCFG_OK) {
    return static_cast<int>(result);
  }
  return static_cast<int>(
      with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead,
                  [&](OpenObject &object) { return list_object(url, object, head, tail); }));
}

}  // extern "C"
