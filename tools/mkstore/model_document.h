// Reads a Broadband Forum data model document in its flattened form.
#ifndef ZRCFG_TOOLS_MKSTORE_MODEL_DOCUMENT_H_
#define ZRCFG_TOOLS_MKSTORE_MODEL_DOCUMENT_H_

#include <string>

#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// Loads the model called `model_name`, or the only one when the name is empty. Throws BuildError
// that names file, line and element. `warnings` receives one line for each oddity that is not
// an error.
Model load_model(const std::string &file, const std::string &model_name,
                 std::vector<std::string> &warnings);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_MODEL_DOCUMENT_H_
