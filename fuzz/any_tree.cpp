// The calls that open, lock and list an object, made on any object, and those on its image's bytes.
#include <string.h>

#include "core/object_image.h"
#include "enum/node_info.h"
#include "enum/sub_objects.h"
#include "fuzz/any_object.h"
#include "fuzz/image.h"
#include "fuzz/result_lists.h"
#include "lock/object_lock.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {
namespace {

constexpr int kTry = 0;

// Opens the object and asks for what is visible.
int64_t look_at_image(const AnyObject &object) {
  const Image image(object);
  if (image.get() == nullptr) {
    return image.result();
  }
  const auto *const header = static_cast<const zrcfg::ObjectHeader *>(image.get());
  const auto *const records = reinterpret_cast<const zrcfg::ParamRecord *>(header + 1);
  require(header->param_num == static_cast<uint8_t>(object.record_count),
          "an image has another number of records than its file");
  int hidden = objIsHide(header);
  for (uint32_t i = 0; i < header->param_num; ++i) {
    hidden += paramIsHide(records + i);
  }
  require(hidden >= 0, "a predicate is no truth value");
  return 0;
}

int64_t list_nodes(const AnyObject &object) {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  const uint32_t result = zrcfg_getallnodeinfo(object.url.c_str(), &head, &tail, kTry);
  look_at_and_free(head);
  return result;
}

int64_t list_tree(const AnyObject &object) {
  NODE_INFO *head = nullptr;
  const int result = zrcfg_allnode_get(object.url.c_str(), 1, &head, kTry);
  for (const NODE_INFO *node = head; node != nullptr; node = node->next) {
    look_at(*node);
  }
  (void)zrcfg_allnode_free(head);  // Always 0.
  return result;
}

int64_t list_names(const AnyObject &object) {
  SubObjName *list = nullptr;
  const uint32_t result = zrcfg_getallsubobj(object.url.c_str(), &list);
  look_at_and_free(list);
  return result;
}

// From the object above, so that the any object is one of those that are listed.
int64_t list_children(const AnyObject &object) {
  const std::string above = object.url.substr(0, object.url.rfind('.', object.url.size() - 2) + 1);
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  const int result = zrcfg_getsubobjinfo(above.c_str(), &head, &tail, kTry);
  look_at_and_free(head);
  return result;
}

int64_t worker_list_nodes(const AnyObject &object) {
  const Image image(object);
  if (image.get() == nullptr) {
    return image.result();
  }
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  const uint32_t result = constructNodeInfoList(object.url.c_str(), image.get(), &head, &tail);
  look_at_and_free(head);
  return result;
}

int64_t worker_list_tree(const AnyObject &object) {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  list_all_node_info(object.url.c_str(), &head, &tail, kTry);
  look_at_and_free(head);
  return 0;
}

int64_t worker_list_names(const AnyObject &object) {
  SubObjName *list = nullptr;
  const uint32_t result = constructObjList(object.dir.c_str(), &list);
  look_at_and_free(list);
  return result;
}

int64_t take_lock(const AnyObject &object) {
  int fd = -1;
  const uint32_t result = zrcfg_lockurl(object.url.c_str(), &fd, kTry, ZRCFG_LOCK_EXCLUSIVE);
  require(zrcfg_islock(object.url.c_str()) == 0, "a lock on a file is seen on its directory");
  require(isLocked((object.dir + "property.conf").c_str()) == 1, "a lock is not seen");
  require(zrcfg_releaselock(fd) == 0, "a lock cannot be released");
  return result;
}

}  // namespace

const std::vector<AnyCall> &any_tree_calls() {
  static const std::vector<AnyCall> calls = {
      {"createObjByPath", Effect::kReads, look_at_image},
      {"zrcfg_getallnodeinfo", Effect::kReads, list_nodes},
      {"zrcfg_allnode_get", Effect::kReads, list_tree},
      {"zrcfg_getallsubobj", Effect::kReads, list_names},
      {"zrcfg_getsubobjinfo", Effect::kReads, list_children},
      {"constructNodeInfoList", Effect::kReads, worker_list_nodes},
      {"list_all_node_info", Effect::kReads, worker_list_tree},
      {"constructObjList", Effect::kReads, worker_list_names},
      {"zrcfg_lockurl", Effect::kReads, take_lock},
  };
  return calls;
}

}  // namespace zrcfg_fuzz
