/* Sizes and offsets of the exchange records, as a C client and as a C++ client see them. */
#ifndef ZRCFG_TESTS_DEVICE_RECORD_LAYOUT_H_
#define ZRCFG_TESTS_DEVICE_RECORD_LAYOUT_H_

#include <stddef.h>
#include <stdint.h>

#include "zrcfg.h"

#ifdef __cplusplus
extern "C" {
#endif

/* One size or offset: what it is, what the compiler makes of it, and what the interface says, with
 * `words` of it being pointers. */
typedef struct LayoutFact {
  const char *what;
  size_t seen;
  size_t bytes;
  size_t words;
} LayoutFact;

#define ZRCFG_SIZE(type, bytes, words) \
  { "size of " #type, sizeof(type), bytes, words }
#define ZRCFG_AT(type, member, bytes, words) \
  { #type "." #member, offsetof(type, member), bytes, words }

/* Every record, every member. An entry of `words` n adds n pointers of the target. */
#define ZRCFG_LAYOUT_FACTS                                                                        \
  ZRCFG_SIZE(ParamAttr, 64, 0), ZRCFG_AT(ParamAttr, flash_rw, 0, 0),                              \
      ZRCFG_AT(ParamAttr, hide, 1, 0), ZRCFG_AT(ParamAttr, rw, 2, 0),                             \
      ZRCFG_AT(ParamAttr, noti, 3, 0), ZRCFG_AT(ParamAttr, namechange, 4, 0),                     \
      ZRCFG_AT(ParamAttr, noti_rw, 5, 0), ZRCFG_AT(ParamAttr, inform_dbus, 6, 0),                 \
      ZRCFG_AT(ParamAttr, key, 7, 0), ZRCFG_AT(ParamAttr, encryt, 8, 0),                          \
      ZRCFG_AT(ParamAttr, device_type, 9, 0), ZRCFG_AT(ParamAttr, type, 10, 0),                   \
      ZRCFG_AT(ParamAttr, flash_encryt, 11, 0), ZRCFG_AT(ParamAttr, reserved, 12, 0),             \
      ZRCFG_AT(ParamAttr, inform_tr069, 13, 0), ZRCFG_AT(ParamAttr, accesslist, 14, 0),           \
      ZRCFG_AT(ParamAttr, area, 30, 0), ZRCFG_AT(ParamAttr, param_check, 60, 0),                  \
      ZRCFG_SIZE(ParamAttrNode, 320, 1), ZRCFG_AT(ParamAttrNode, name, 0, 0),                     \
      ZRCFG_AT(ParamAttrNode, attr, 256, 0), ZRCFG_AT(ParamAttrNode, next, 320, 0),               \
      ZRCFG_SIZE(ParamAttrChange, 284, 0), ZRCFG_AT(ParamAttrChange, name, 0, 0),                 \
      ZRCFG_AT(ParamAttrChange, noti_change, 256, 0), ZRCFG_AT(ParamAttrChange, noti, 260, 0),    \
      ZRCFG_AT(ParamAttrChange, access_list_change, 264, 0),                                      \
      ZRCFG_AT(ParamAttrChange, accesslist, 268, 0), ZRCFG_SIZE(ParamValueEntry, 328, 3),         \
      ZRCFG_AT(ParamValueEntry, name, 0, 0), ZRCFG_AT(ParamValueEntry, value, 64, 0),             \
      ZRCFG_AT(ParamValueEntry, pAttr, 64, 0), ZRCFG_AT(ParamValueEntry, inform_dbus, 65, 1),     \
      ZRCFG_AT(ParamValueEntry, spare, 66, 1), ZRCFG_AT(ParamValueEntry, changed, 68, 1),         \
      ZRCFG_AT(ParamValueEntry, fault, 72, 1), ZRCFG_AT(ParamValueEntry, old_value, 72, 2),       \
      ZRCFG_AT(ParamValueEntry, next, 328, 2), ZRCFG_SIZE(MultiAttrNode, 328, 3),                 \
      ZRCFG_AT(MultiAttrNode, pAttr, 64, 0), ZRCFG_AT(MultiAttrNode, inform_dbus, 65, 1),         \
      ZRCFG_AT(MultiAttrNode, next, 328, 2), ZRCFG_SIZE(ObjAttr, 176, 0),                         \
      ZRCFG_AT(ObjAttr, flag0, 0, 0), ZRCFG_AT(ObjAttr, hide, 1, 0), ZRCFG_AT(ObjAttr, rw, 2, 0), \
      ZRCFG_AT(ObjAttr, level3, 3, 0), ZRCFG_AT(ObjAttr, key, 4, 0),                              \
      ZRCFG_AT(ObjAttr, max_instance, 5, 0), ZRCFG_AT(ObjAttr, device_type, 6, 0),                \
      ZRCFG_AT(ObjAttr, level7, 7, 0), ZRCFG_AT(ObjAttr, flag8, 8, 0),                            \
      ZRCFG_AT(ObjAttr, flag9, 9, 0), ZRCFG_AT(ObjAttr, zero10, 10, 0),                           \
      ZRCFG_AT(ObjAttr, flag11, 11, 0), ZRCFG_AT(ObjAttr, pnoe, 12, 0),                           \
      ZRCFG_AT(ObjAttr, reserved, 76, 0), ZRCFG_AT(ObjAttr, devfunc, 84, 0),                      \
      ZRCFG_AT(ObjAttr, extra_text, 148, 0), ZRCFG_SIZE(ParamValueListNode, 512, 1),              \
      ZRCFG_AT(ParamValueListNode, url, 0, 0), ZRCFG_AT(ParamValueListNode, value, 256, 0),       \
      ZRCFG_AT(ParamValueListNode, next, 512, 0), ZRCFG_SIZE(SubObjName, 64, 1),                  \
      ZRCFG_AT(SubObjName, name, 0, 0), ZRCFG_AT(SubObjName, next, 64, 0),                        \
      ZRCFG_SIZE(NODE_INFO, 256, 2), ZRCFG_AT(NODE_INFO, name, 0, 0),                             \
      ZRCFG_AT(NODE_INFO, rw, 256, 0), ZRCFG_AT(NODE_INFO, next, 256, 1),                         \
      ZRCFG_SIZE(instanceStack, 148, 0), ZRCFG_AT(instanceStack, depth, 0, 0),                    \
      ZRCFG_AT(instanceStack, index, 4, 0), ZRCFG_AT(instanceStack, objpathinxml, 20, 0),         \
      ZRCFG_SIZE(WanConIndex, 12, 0), ZRCFG_AT(WanConIndex, wanIndex, 0, 0),                      \
      ZRCFG_AT(WanConIndex, conIndex, 4, 0), ZRCFG_AT(WanConIndex, conType, 8, 0),                \
      ZRCFG_SIZE(CryptoInfo, 20, 0), ZRCFG_AT(CryptoInfo, workmode, 0, 0),                        \
      ZRCFG_AT(CryptoInfo, index_key, 4, 0), ZRCFG_AT(CryptoInfo, index_iv, 8, 0),                \
      ZRCFG_AT(CryptoInfo, padding, 12, 0), ZRCFG_AT(CryptoInfo, key_type, 16, 0)

/* The same facts, compiled as C. */
extern const LayoutFact c_layout_facts[];
extern const size_t c_layout_fact_count;

/* Sets every bit field of a node through C's view of it. */
void set_flags_in_c(MultiAttrNode *node, unsigned noti, unsigned flash_rw, unsigned namechange,
                    unsigned inform_tr069);

#ifdef __cplusplus
}
#endif

#endif /* ZRCFG_TESTS_DEVICE_RECORD_LAYOUT_H_ */
