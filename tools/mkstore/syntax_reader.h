// The `syntax` and `dataType` elements of a document, resolved into what a value may be.
#ifndef ZRCFG_TOOLS_MKSTORE_SYNTAX_READER_H_
#define ZRCFG_TOOLS_MKSTORE_SYNTAX_READER_H_

#include <map>
#include <pugixml.hpp>
#include <string>

#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// The named types of one document, as elements; they are resolved where they are used.
using DataTypes = std::map<std::string, pugi::xml_node>;

DataTypes read_data_types(const pugi::xml_node &document);

// Throws std::string, a reason without file and place, when the element makes no sense.
Syntax read_syntax(const pugi::xml_node &syntax, const DataTypes &types);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_SYNTAX_READER_H_
