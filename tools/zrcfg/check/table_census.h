// The instances of a table, and the parent's parameter that counts them.
#ifndef ZRCFG_TOOLS_ZRCFG_CHECK_TABLE_CENSUS_H_
#define ZRCFG_TOOLS_ZRCFG_CHECK_TABLE_CENSUS_H_

#include <stdint.h>

#include "core/property_file.h"
#include "tools/store/directory_names.h"
#include "tools/store/object_place.h"

namespace zrcfg_tool {

struct Check;

// Whether a table's entry is an instance; the template is not counted.
bool is_instance_directory(const zrcfg_store::Entry &entry);

uint32_t count_instances(int root_fd, const zrcfg_store::ObjectPlace &table);

// Whether the object is a dynamic table without a template. One that nothing marks as a table, and
// that has no instance, is a plain object whose instances could be added.
bool lacks_template(int root_fd, const zrcfg_store::ObjectPlace &place,
                    const zrcfg::ObjectHeader &header);

// Compares the table's counter with its instances. Of fewer than there are, those whose creation
// was interrupted may be the reason: they are then reported, and removed, in place of the counter.
void check_counter(Check &check, const zrcfg_store::ObjectPlace &table,
                   const zrcfg::ObjectHeader &header);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CHECK_TABLE_CENSUS_H_
