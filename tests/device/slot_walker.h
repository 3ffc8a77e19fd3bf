/* A client that reads an open object by its bytes and addresses alone. */
#ifndef ZRCFG_TESTS_DEVICE_SLOT_WALKER_H_
#define ZRCFG_TESTS_DEVICE_SLOT_WALKER_H_

#ifdef __cplusplus
extern "C" {
#endif

enum { SLOT_WALK_LIMIT = 300 };

/* What the walk found. */
typedef struct SlotWalk {
  const char *path;
  int param_num;
  int count; /* records met until a zero link, SLOT_WALK_LIMIT at most */
  const unsigned char *records[SLOT_WALK_LIMIT];
} SlotWalk;

void walk_slots(const void *image, SlotWalk *walk);

/* The name of a record as it lies in memory. */
const char *slot_record_name(const unsigned char *record);

#ifdef __cplusplus
}
#endif

#endif /* ZRCFG_TESTS_DEVICE_SLOT_WALKER_H_ */
