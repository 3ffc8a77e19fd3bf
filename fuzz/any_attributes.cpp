// The calls on attributes, made on any object.
#include <string.h>

#include "attr/attr_requests.h"
#include "attr/attr_update.h"
#include "fuzz/any_object.h"
#include "fuzz/image.h"
#include "fuzz/request.h"
#include "fuzz/result_lists.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {
namespace {

constexpr int kTry = 0;
constexpr char kLongText[] = "a text that is longer than any field of a record";
// A field of bits, both fields of text, and a number that stands for nothing.
constexpr int kParameterNumbers[] = {3, 10, 11, 99};
constexpr int kObjectNumbers[] = {1, 5, 99};

std::string path_of(const AnyObject &object) {
  return object.url + object.first_name;
}

int64_t read_one(const AnyObject &object) {
  const Buffer attr(sizeof(ParamAttr));
  char *const at = attr;
  return zrcfg_getsingleparamattr(object.url.c_str(), object.first_name.c_str(),
                                  reinterpret_cast<ParamAttr *>(at), kTry);
}

int64_t read_path(const AnyObject &object) {
  const Buffer attr(sizeof(ParamAttr));
  char *const at = attr;
  return zrcfg_getsingleparamattr_ext(path_of(object).c_str(), reinterpret_cast<ParamAttr *>(at),
                                      kTry);
}

// What a node points at in a mode.
size_t size_of_mode(int mode) {
  switch (mode) {
    case ZRCFG_ATTR_GET_NOTI:
    case ZRCFG_ATTR_SET_NOTI:
      return sizeof(uint8_t);
    case ZRCFG_ATTR_GET_ACCESSLIST:
    case ZRCFG_ATTR_SET_ACCESSLIST:
      return sizeof(ParamAttr::accesslist);
    case ZRCFG_ATTR_SET_CHANGE:
      return sizeof(ParamAttrChange);
    default:
      return sizeof(ParamAttr);
  }
}

// The result of the first mode that fails; each is tried.
template <typename Call>
int64_t with_modes(const AnyObject &object, std::initializer_list<int> modes, Call call) {
  int64_t result = 0;
  for (const int mode : modes) {
    Request request(object, size_of_mode(mode), "");
    const int64_t now = call(request.first(), mode);
    result = result == 0 ? now : result;
  }
  return result;
}

constexpr std::initializer_list<int> kReadModes = {ZRCFG_ATTR_GET_ALL, ZRCFG_ATTR_GET_NOTI,
                                                   ZRCFG_ATTR_GET_ACCESSLIST, ZRCFG_ATTR_GET_FLAGS};
constexpr std::initializer_list<int> kListModes = {ZRCFG_ATTR_SET_ALL, ZRCFG_ATTR_SET_NOTI,
                                                   ZRCFG_ATTR_SET_ACCESSLIST};
constexpr std::initializer_list<int> kSingleModes = {
    ZRCFG_ATTR_SET_ALL, ZRCFG_ATTR_SET_NOTI, ZRCFG_ATTR_SET_ACCESSLIST, ZRCFG_ATTR_SET_CHANGE};

int64_t read_list(const AnyObject &object) {
  return with_modes(object, kReadModes, [&](MultiAttrNode *list, int mode) {
    return int64_t{zrcfg_getmultiparamattr(object.url.c_str(), list, mode, kTry)};
  });
}

int64_t list_all(const AnyObject &object) {
  ParamAttrNode *ends[2] = {};
  const uint32_t result = zrcfg_getallparamattr(object.url.c_str(), ends, 0, kTry);
  look_at_and_free(ends[0]);
  return result;
}

int64_t read_object(const AnyObject &object) {
  const Buffer attr(sizeof(ObjAttr));
  char *const at = attr;
  return zrcfg_getobjattr(object.url.c_str(), reinterpret_cast<ObjAttr *>(at), kTry);
}

int64_t worker_read_list(const AnyObject &object) {
  const Image image(object);
  if (image.get() == nullptr) {
    return image.result();
  }
  return with_modes(object, kReadModes, [&](MultiAttrNode *list, int mode) {
    return int64_t{outputToMultiParamAttrList(image.get(), list, mode)};
  });
}

int64_t worker_list_all(const AnyObject &object) {
  const Image image(object);
  if (image.get() == nullptr) {
    return image.result();
  }
  ParamAttrNode *head = nullptr;
  const uint32_t result = constructParamAttrList(object.url.c_str(), image.get(), &head, nullptr);
  look_at_and_free(head);
  return result;
}

int64_t write_one(const AnyObject &object) {
  return with_modes(object, kSingleModes, [&](MultiAttrNode *list, int mode) {
    return int64_t{zrcfg_setsingleparamattr(object.url.c_str(), object.first_name.c_str(),
                                            list->pAttr, mode, kTry)};
  });
}

int64_t write_text(const AnyObject &object) {
  int64_t result = 0;
  for (const int number : kParameterNumbers) {
    const int64_t now = zrcfg_setsingleparamattr_ext(object.url.c_str(), object.last_name.c_str(),
                                                     number, kLongText, kTry);
    result = result == 0 ? now : result;
  }
  return result;
}

int64_t write_path(const AnyObject &object) {
  return zrcfg_singleparamattr_set_ext(path_of(object).c_str(), 3, "2", kTry);
}

int64_t write_list(const AnyObject &object) {
  return with_modes(object, kListModes, [&](MultiAttrNode *list, int mode) {
    return int64_t{zrcfg_setmultiparamattr(object.url.c_str(), list, mode, kTry)};
  });
}

ParamAttrChange whole_change() {
  ParamAttrChange change = {};
  change.noti_change = 1;
  change.noti = 2;
  change.access_list_change = 1;
  memcpy(change.accesslist, kLongText, sizeof change.accesslist);
  return change;
}

int64_t write_all(const AnyObject &object) {
  const ParamAttrChange change = whole_change();
  return zrcfg_setallParamattr(object.url.c_str(), &change, kTry);
}

int64_t write_object(const AnyObject &object) {
  int64_t result = 0;
  for (const int number : kObjectNumbers) {
    const int64_t now = zrcfg_setsingleobjattr_ext(object.url.c_str(), number, "5", kTry);
    result = result == 0 ? now : result;
  }
  return result;
}

int64_t worker_write(const AnyObject &object) {
  const Image image(object);
  if (image.get() == nullptr) {
    return image.result();
  }
  return with_modes(object, kSingleModes, [&](MultiAttrNode *list, int mode) {
    return int64_t{
        setSingleParamAttrByParamName(image.get(), object.last_name.c_str(), list->pAttr, mode)};
  });
}

int64_t worker_write_text(const AnyObject &object) {
  const Image image(object);
  return image.get() == nullptr ? image.result()
                                : setSingleParamAttrByParamName_ext(
                                      image.get(), object.first_name.c_str(), 10, kLongText);
}

int64_t worker_write_list(const AnyObject &object) {
  const Image image(object);
  if (image.get() == nullptr) {
    return image.result();
  }
  return with_modes(object, kListModes, [&](MultiAttrNode *list, int mode) {
    return int64_t{modiMultiParamAttr(image.get(), list, mode, kTry)};
  });
}

int64_t worker_write_all(const AnyObject &object) {
  const Image image(object);
  const ParamAttrChange change = whole_change();
  return image.get() == nullptr ? image.result() : setAllParamAttr(image.get(), &change, kTry);
}

}  // namespace

const std::vector<AnyCall> &any_attribute_calls() {
  static const std::vector<AnyCall> calls = {
      {"zrcfg_getsingleparamattr", Effect::kReads, read_one},
      {"zrcfg_getsingleparamattr_ext", Effect::kReads, read_path},
      {"zrcfg_getmultiparamattr", Effect::kReads, read_list},
      {"zrcfg_getallparamattr", Effect::kReads, list_all},
      {"zrcfg_getobjattr", Effect::kReads, read_object},
      {"outputToMultiParamAttrList", Effect::kReads, worker_read_list},
      {"constructParamAttrList", Effect::kReads, worker_list_all},
      {"zrcfg_setsingleparamattr", Effect::kWritesAttributes, write_one},
      {"zrcfg_setsingleparamattr_ext", Effect::kWritesAttributes, write_text},
      {"zrcfg_singleparamattr_set_ext", Effect::kWritesAttributes, write_path},
      {"zrcfg_setmultiparamattr", Effect::kWritesAttributes, write_list},
      {"zrcfg_setallParamattr", Effect::kWritesAttributes, write_all},
      {"zrcfg_setsingleobjattr_ext", Effect::kWritesAttributes, write_object},
      {"setSingleParamAttrByParamName", Effect::kWritesAttributes, worker_write},
      {"setSingleParamAttrByParamName_ext", Effect::kWritesAttributes, worker_write_text},
      {"modiMultiParamAttr", Effect::kWritesAttributes, worker_write_list},
      {"setAllParamAttr", Effect::kWritesAttributes, worker_write_all},
  };
  return calls;
}

}  // namespace zrcfg_fuzz
