// What may stand for an argument of a command: things of the store, and names.
#ifndef ZRCFG_TOOLS_ZRCFG_COMPLETION_VALUES_H_
#define ZRCFG_TOOLS_ZRCFG_COMPLETION_VALUES_H_

#include "tools/zrcfg/attribute_table.h"
#include "tools/zrcfg/completion.h"

namespace zrcfg_tool {

// Objects one level below what is typed, with their final dot; `parameter_tail`, unless null, adds
// the parameters of the object that is typed, with that text behind them.
void add_paths(const char *typed, const char *parameter_tail, Candidates &out);

// The names of attributes, all or only those that can be set, with a text behind them.
void add_attributes(const AttributeTable &table, bool settable, const char *tail, const char *typed,
                    Candidates &out);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_COMPLETION_VALUES_H_
