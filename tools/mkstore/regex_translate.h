// The document's regular expressions, which follow XML Schema, as expression trees.
#ifndef ZRCFG_TOOLS_MKSTORE_REGEX_TRANSLATE_H_
#define ZRCFG_TOOLS_MKSTORE_REGEX_TRANSLATE_H_

#include <optional>
#include <string>

#include "tools/mkstore/expression.h"

namespace zrcfg::mkstore {

// Nothing when the expression is malformed or uses what docs/store-builder.md does not list.
std::optional<Expression> translate_regex(const std::string &regex);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_REGEX_TRANSLATE_H_
