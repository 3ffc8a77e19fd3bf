// The bytes of one property file.
#ifndef ZRCFG_TOOLS_MKSTORE_PROPERTY_WRITER_H_
#define ZRCFG_TOOLS_MKSTORE_PROPERTY_WRITER_H_

#include <string>
#include <vector>

#include "core/property_file.h"
#include "tools/mkstore/store_plan.h"

namespace zrcfg::mkstore {

// The header of the placement's file: what the model says, then what the attributes file says.
ObjectHeader object_header(const Model &model, const Settings &settings,
                           const Placement &placement);

// What a placement's file holds, before it becomes bytes.
struct ObjectContent {
  ObjectHeader header = {};
  std::vector<ParamRecord> records;
  std::vector<std::string> values;
  ObjectSettings listed;  // What the list files say about it, its templates included.
};

// The content that the model and the list files ask for.
ObjectContent object_content(const Model &model, const Settings &settings,
                             const Placement &placement);

// The whole file.
std::string property_file(const ObjectContent &content);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_PROPERTY_WRITER_H_
