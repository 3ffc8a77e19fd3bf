// Matching with libc's extended regular expressions, as the device does it.
#ifndef ZRCFG_TOOLS_MKSTORE_ERE_MATCH_H_
#define ZRCFG_TOOLS_MKSTORE_ERE_MATCH_H_

#include <string>

namespace zrcfg::mkstore {

// Whether the value matches. An expression that libc refuses matches nothing.
bool ere_matches(const std::string &expression, const std::string &value);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_ERE_MATCH_H_
