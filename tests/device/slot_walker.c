/* A client that reads an open object by its bytes and addresses alone: 32-bit addresses in the
 * header's bytes 0 and 180 and in a record's bytes 120, as device code follows them. */
#include "tests/device/slot_walker.h"

#include <stddef.h>
#include <string.h>

static const void *address_at(const unsigned char *slot) {
  const void *address;
  memcpy(&address, slot, 4);
  return address;
}

void walk_slots(const void *image, SlotWalk *walk) {
  const unsigned char *header = image;
  const unsigned char *record = address_at(header + 180);
  walk->path = address_at(header);
  walk->param_num = header[4];
  walk->count = 0;
  while (record != NULL && walk->count < SLOT_WALK_LIMIT) {
    walk->records[walk->count++] = record;
    record = address_at(record + 120);
  }
}

const char *slot_record_name(const unsigned char *record) {
  return (const char *)record + 8;
}
