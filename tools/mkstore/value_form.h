// The forms of the basic types as expressions: booleans, dates, binaries, decimals.
#ifndef ZRCFG_TOOLS_MKSTORE_VALUE_FORM_H_
#define ZRCFG_TOOLS_MKSTORE_VALUE_FORM_H_

#include "tools/mkstore/expression.h"
#include "tools/mkstore/model.h"
#include "tools/mkstore/size_limit.h"

namespace zrcfg::mkstore {

Expression boolean_form();

// YYYY-MM-DDThh:mm:ss, then optionally a fraction and a zone. Only real days, leap years included.
Expression date_time_form();

// Any number with or without a fraction, in its plain form.
Expression decimal_form();

// So many octets as the lengths permit, two digits each.
Expression hex_form(const Lengths &octets);

// Likewise in groups of four characters, of which the last may be padded.
Expression base64_form(const Lengths &octets);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_VALUE_FORM_H_
