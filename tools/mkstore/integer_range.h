// Ranges of whole numbers as expressions over their decimal texts.
#ifndef ZRCFG_TOOLS_MKSTORE_INTEGER_RANGE_H_
#define ZRCFG_TOOLS_MKSTORE_INTEGER_RANGE_H_

#include "tools/mkstore/expression.h"
#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// The numbers from `lowest` to `highest` in their shortest decimal form: no plus sign, no leading
// zeros, no "-0". Matches nothing when the range is empty. Both are whole numbers of at most 27
// digits, not scaled.
Expression integers_between(Number lowest, Number highest);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_INTEGER_RANGE_H_
