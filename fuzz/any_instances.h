// Creating, copying and deleting instances where one file of the tree holds any bytes.
#ifndef ZRCFG_FUZZ_ANY_INSTANCES_H_
#define ZRCFG_FUZZ_ANY_INSTANCES_H_

#include <stddef.h>

#include <string>

namespace zrcfg_fuzz {

// Files that are as they should be.
std::string well_formed_parent();
std::string well_formed_template();

// The calls on tables whose own file, template or parent is of these bytes; returns their number.
size_t make_instance_calls(const std::string &bytes);

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_ANY_INSTANCES_H_
