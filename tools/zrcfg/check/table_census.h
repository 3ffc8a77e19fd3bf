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

// Compares the table's counter with its instances. Of fewer than there are, those whose creation
// was interrupted may be the reason: they are then reported, and removed, in place of the counter.
void check_counter(Check &check, const zrcfg_store::ObjectPlace &table,
                   const zrcfg::ObjectHeader &header);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CHECK_TABLE_CENSUS_H_
