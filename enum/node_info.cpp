// Objects and parameters with their access rights.
#include "enum/node_info.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "core/call_frame.h"
#include "core/checked_url.h"
#include "core/export.h"
#include "core/listing.h"
#include "enum/sub_objects.h"

namespace zrcfg {
namespace {

// False without memory, which is logged.
bool append_node(ResultList<NODE_INFO> &list, const char *url, const char *name, size_t name_length,
                 uint8_t rw) {
  NODE_INFO *const node = list.append();
  if (node == nullptr) {
    ZRCFG_TRACE("ptr is NULL\n");
    return false;
  }
  name_node(node->name, url, name, name_length);
  node->rw = rw;
  return true;
}

uint32_t list_parameters(ResultList<NODE_INFO> &list, const char *url, ObjectImage &image) {
  for (const ParamRecord &record : records(image)) {
    if (paramIsHide(&record) == 1) {
      continue;
    }
    const uint8_t rw = record_field::kRw.get(record);
    if (!append_node(list, url, record.name, strnlen(record.name, kNameSize), rw)) {
      return ZRCFG_E_MEMORY;
    }
  }
  return ZRCFG_OK;
}

// One object's records, or a whole list of them.
struct NodeRange {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
};

// Appends an object's records to the list. One whose recorded tail is not its end is dropped, and
// the records with it.
bool append_range(const char *url, NODE_INFO **head, NODE_INFO **tail, const NodeRange &added) {
  if (*head == nullptr) {
    *head = added.head;
    *tail = added.tail;
    return true;
  }
  if (*tail == nullptr || (*tail)->next != nullptr) {
    ZRCFG_TRACE("objUrl=%s last List error!\n", url);
    (void)zrcfg_allnode_free(*head);  // Always 0, here and below.
    (void)zrcfg_allnode_free(added.head);
    *head = nullptr;
    return false;
  }
  (*tail)->next = added.head;
  *tail = added.tail;
  return true;
}

// Writes what zrcfg_getallnodeinfo lists, and leaves the lock file in `lock`.
uint32_t list_object(const char *url, NODE_INFO **head, NODE_INFO **tail, int timeout,
                     LockFile &lock) {
  DirPath path;
  uint32_t result = check_url_to_path(url, NullText::kPlain, path);
  if (result != ZRCFG_OK) {
    return result;
  }
  OpenObject object;
  result = open_object_to_lock_again(object, path.text, ZRCFG_LOCK_SHARED, timeout, lock);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("createObjByPath() fail ret=%d!\n", static_cast<int>(result));
    return result;
  }
  result = constructNodeInfoList(url, object.loaded.image, head, tail);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("getParamValueList() fail ret=%d!\n", static_cast<int>(result));
  }
  close_object_to_lock_again(object, lock);
  return result;
}

// Appends an object to the list and hands out its sub-objects' names. Two locks, as everybody can
// see, but one opening of the lock file.
SubObjName *append_object(const char *url, NODE_INFO **head, NODE_INFO **tail, int timeout) {
  NodeRange added;
  LockFile lock;
  const uint32_t result = list_object(url, &added.head, &added.tail, timeout, lock);
  if (result == ZRCFG_E_NOT_FOUND) {
    ZRCFG_TRACE("objUrl=%s not exist or hide!\n", url);
    return nullptr;
  }
  if (result == ZRCFG_OK && !append_range(url, head, tail, added)) {
    return nullptr;
  }
  SubObjName *names = nullptr;
  (void)list_sub_object_names(url, &names, lock);  // Without names there is nothing to walk into.
  return names;
}

// Walks into the sub-objects in their order. Each level makes the URL longer, and the calls refuse
// a URL of 256 characters: that bounds the recursion.
void walk_sub_objects(const char *url, SubObjName *node, NODE_INFO **head, NODE_INFO **tail,
                      int timeout) {
  while (node != nullptr) {
    char child[ZRCFG_URL_SIZE + sizeof node->name];
    (void)snprintf(child, sizeof child, "%s%s.", url, node->name);  // Fits: `url` is a served one.
    list_all_node_info(child, head, tail, timeout);
    SubObjName *const next = node->next;
    free(node);
    node = next;
  }
}

// The object with its parameters and its direct sub-objects.
int list_flat(const char *url, NodeRange &list, int timeout) {
  if (zrcfg_getallnodeinfo(url, &list.head, &list.tail, timeout) != ZRCFG_OK ||
      list.head == nullptr || list.tail == nullptr) {
    return -1;
  }
  NodeRange children;
  if (zrcfg_getsubobjinfo(url, &children.head, &children.tail, timeout) != 0) {
    (void)zrcfg_allnode_free(list.head);
    return -1;
  }
  list.tail->next = children.head;
  return 0;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t constructNodeInfoList(const char *objUrl, ZrcfgObject *image,
                                            NODE_INFO **ppHead, NODE_INFO **ppTail) {
  if (objUrl == nullptr || image == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  ObjectImage &object = *static_cast<ObjectImage *>(image);
  if (object_is_left_out(object)) {
    return ZRCFG_E_NOT_FOUND;
  }
  ResultList<NODE_INFO> list;
  if (!append_node(list, objUrl, "", 0, header_field::kRw.get(object.header))) {
    return ZRCFG_E_MEMORY;
  }
  const uint32_t result = list_parameters(list, objUrl, object);
  if (result != ZRCFG_OK) {
    return result;
  }
  finish_list(list, objUrl, &NODE_INFO::name, ppHead, ppTail);
  return ZRCFG_OK;
}

ZRCFG_EXPORT uint32_t zrcfg_getallnodeinfo(const char *url, NODE_INFO **ppHead, NODE_INFO **ppTail,
                                           int timeout) {
  LockFile lock;
  return list_object(url, ppHead, ppTail, timeout, lock);
}

ZRCFG_EXPORT void list_all_node_info(const char *objUrl, NODE_INFO **ppHead, NODE_INFO **ppTail,
                                     int timeout) {
  if (objUrl == nullptr || ppHead == nullptr || ppTail == nullptr) {
    return;
  }
  ZRCFG_TRACE("objUrl=%s\n", objUrl);
  SubObjName *const names = append_object(objUrl, ppHead, ppTail, timeout);
  walk_sub_objects(objUrl, names, ppHead, ppTail, timeout);
}

ZRCFG_EXPORT int zrcfg_allnode_get(const char *url, int recursive, NODE_INFO **ppHead,
                                   int timeout) {
  NodeRange list;
  if (recursive != 0) {
    list_all_node_info(url, &list.head, &list.tail, timeout);
    if (list.head == nullptr || list.tail == nullptr) {
      return -1;
    }
  } else if (list_flat(url, list, timeout) != 0) {
    return -1;
  }
  if (ppHead == nullptr) {
    (void)zrcfg_allnode_free(list.head);  // Nobody could own it.
    return 0;
  }
  *ppHead = list.head;
  return 0;
}

ZRCFG_EXPORT uint32_t zrcfg_allnode_free(NODE_INFO *head) {
  while (head != nullptr) {
    NODE_INFO *const next = head->next;
    free(head);
    head = next;
  }
  return 0;
}

}  // extern "C"
