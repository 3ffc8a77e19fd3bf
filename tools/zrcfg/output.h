// What reading commands print, in the form that the options ask for.
#ifndef ZRCFG_TOOLS_ZRCFG_OUTPUT_H_
#define ZRCFG_TOOLS_ZRCFG_OUTPUT_H_

#include <stdint.h>

#include "tools/zrcfg/options.h"

namespace zrcfg_tool {

// The form: text by default, else JSON, zero-terminated texts or shell assignments.
enum class Form { kText, kJson, kNull, kShell };

// The form that the options ask for. Reports and returns false when they ask for several.
bool choose_form(const Options &options, Form &form);

// One field of something printed: a text, a number or a truth value.
struct Field {
  enum class Kind { kText, kNumber, kBool };

  const char *name;
  Kind kind;
  const char *text;
  uint32_t number;

  static Field of(const char *name, const char *text) { return {name, Kind::kText, text, 0}; }
  static Field of(const char *name, uint32_t number) {
    return {name, Kind::kNumber, nullptr, number};
  }
  static Field of(const char *name, bool truth) {
    return {name, Kind::kBool, nullptr, truth ? 1u : 0u};
  }
};

// A JSON string with quotes. Bytes that are no UTF-8 become \udc80 to \udcff, as in Python's
// "surrogateescape", so that nothing is lost.
void print_json_string(const char *text);

// A shell word in single quotes.
void print_shell_word(const char *text);

// A name that a shell takes: other characters become "_".
void print_shell_name(const char *name);

// Prints fields of one thing: NAME=VALUE lines, or one JSON object.
class RecordPrinter {
 public:
  explicit RecordPrinter(Form form);
  ~RecordPrinter();
  RecordPrinter(const RecordPrinter &) = delete;
  RecordPrinter &operator=(const RecordPrinter &) = delete;

  void print(const Field &field);

 private:
  Form form_;
  bool first_ = true;
};

// Prints a list of things, each with its fields: a JSON array of objects, or in the other forms
// what the caller says.
class ListPrinter {
 public:
  explicit ListPrinter(Form form);
  ~ListPrinter();
  ListPrinter(const ListPrinter &) = delete;
  ListPrinter &operator=(const ListPrinter &) = delete;

  // A parameter's value; `with_name` says whether the text forms show the path.
  void print_value(const char *path, const char *value, bool with_name);
  // Something with several fields, of which the text forms show `name` and `value`.
  void print_entry(const Field *fields, int count, const char *name, const char *value);

 private:
  void print_object(const Field *fields, int count);

  Form form_;
  bool first_ = true;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_OUTPUT_H_
