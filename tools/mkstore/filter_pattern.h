// The filter of a syntax: one POSIX extended regular expression for all that its facets say.
#ifndef ZRCFG_TOOLS_MKSTORE_FILTER_PATTERN_H_
#define ZRCFG_TOOLS_MKSTORE_FILTER_PATTERN_H_

#include <string>

#include "tools/mkstore/filter.h"
#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// The filter admits whatever the syntax permits, and `initial` in any case.
Filter compile_filter(const Syntax &syntax, const std::string &initial);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_FILTER_PATTERN_H_
