// Decimal texts and the scaled numbers that ranges are compared with.
#ifndef ZRCFG_TOOLS_MKSTORE_NUMBER_TEXT_H_
#define ZRCFG_TOOLS_MKSTORE_NUMBER_TEXT_H_

#include <optional>
#include <string>
#include <string_view>

#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// A decimal text with an optional sign and, where `fraction` allows it, up to nine digits behind
// the point. Nothing when it is not such a text or far outside every type.
std::optional<Number> parse_number(std::string_view text, bool fraction);

// The shortest text of the number.
std::string number_text(Number number);

// The limits that the type itself sets; decimals have none.
Range type_range(BaseType type);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_NUMBER_TEXT_H_
