// A configuration as text: its lines, and how values are escaped in them.
#ifndef ZRCFG_TOOLS_ZRCFG_CONFIG_TEXT_H_
#define ZRCFG_TOOLS_ZRCFG_CONFIG_TEXT_H_

#include <stddef.h>

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/param_path.h"

namespace zrcfg_tool {

// A text holds one of these a line; empty lines and those that begin with "#" are passed over:
//   -INSTANCE-URL   delete an instance
//   +INSTANCE-URL   create an instance
//   PATH=VALUE      set a parameter; only the first "=" splits, and nothing is trimmed
// In a value "\\" stands for a backslash, "\t" for a tab, "\r" for a carriage return, and "\xHH"
// for any byte; control characters stand nowhere as they are.
enum class LineKind { kDelete, kCreate, kValue };

// Which of a text's wrong lines are reported.
enum class WrongLines { kAll, kFirst };

struct ConfigLine {
  size_t number;  // In the text, from 1.
  LineKind kind;
  ParamPath path;   // Of an instance only the URL, with its final dot.
  char value[256];  // Unescaped.
};

// The instance that a line of such kind names.
InstanceName instance_of(const ConfigLine &line);

// All lines of a text, in their order.
class ConfigText {
 public:
  ConfigText() = default;
  ~ConfigText();
  ConfigText(const ConfigText &) = delete;
  ConfigText &operator=(const ConfigText &) = delete;

  // Takes a text apart, which is changed on the way. Reports lines that are wrong; false when there
  // was one.
  bool parse(Bytes &text, WrongLines reported);

  // Adds the deletion of an instance, with the line number 0. False without memory.
  bool add_deletion(const ObjectUrl &url);

  size_t size() const { return count_; }
  ConfigLine &at(size_t i) const { return lines_[i]; }

 private:
  bool reserve_line();

  ConfigLine *lines_ = nullptr;
  size_t count_ = 0;
  size_t capacity_ = 0;
};

// Appends PATH=VALUE and a line feed, escaped.
bool append_value_line(Bytes &text, const char *url, const char *name, const char *value);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CONFIG_TEXT_H_
