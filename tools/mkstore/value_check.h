// What a syntax permits: the check of a value, and the first value of a parameter without default.
#ifndef ZRCFG_TOOLS_MKSTORE_VALUE_CHECK_H_
#define ZRCFG_TOOLS_MKSTORE_VALUE_CHECK_H_

#include <optional>
#include <string>

#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// Why the property file cannot hold the value whatever its type; empty when it can.
std::string storage_problem(const std::string &value);

// Why the syntax does not permit the value; empty when it does. The document's default is always
// permitted. Storage is not looked at.
std::string value_problem(const Syntax &syntax, const std::string &value);

// Why the parameter's filter refuses the value; empty when it does not. A filter takes all that the
// syntax permits, but for texts with control characters.
std::string filter_problem(const Filter &filter, const std::string &value);

// The first permitted value by the rule of docs/store-builder.md; nothing when none can be derived.
std::optional<std::string> first_value(const Syntax &syntax);

// The name that documents use for the type.
const char *type_name(BaseType type);

bool is_number(BaseType type);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_VALUE_CHECK_H_
