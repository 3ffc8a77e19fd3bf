// The instances, values and attributes files: one entry a line, comments, places for messages.
#ifndef ZRCFG_TOOLS_MKSTORE_LIST_FILE_H_
#define ZRCFG_TOOLS_MKSTORE_LIST_FILE_H_

#include <string>
#include <vector>

#include "tools/mkstore/settings.h"

namespace zrcfg::mkstore {

// Each function reads one file into the settings and throws BuildError with file and line.
// Whether an addressed instance exists is checked when all files are known (store_plan.h).
void read_instances_file(const std::string &file, const Model &model, Settings &settings);
void read_values_file(const std::string &file, const Model &model, Settings &settings);
void read_attributes_file(const std::string &file, const Model &model, Settings &settings);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_LIST_FILE_H_
