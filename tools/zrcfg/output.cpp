// What reading commands print, in the form that the options ask for.
#include "tools/zrcfg/output.h"

#include <ctype.h>
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

bool is_continuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

// The length of the well-formed UTF-8 sequence that `text` begins with; 0 for none.
int utf8_length(const unsigned char *text) {
  if (text[0] < 0x80) {
    return 1;
  }
  if (text[0] >= 0xC2 && text[0] <= 0xDF) {
    return is_continuation(text[1]) ? 2 : 0;
  }
  if (text[0] >= 0xE0 && text[0] <= 0xEF) {
    const bool overlong = text[0] == 0xE0 && text[1] < 0xA0;
    const bool surrogate = text[0] == 0xED && text[1] > 0x9F;
    return is_continuation(text[1]) && is_continuation(text[2]) && !overlong && !surrogate ? 3 : 0;
  }
  if (text[0] >= 0xF0 && text[0] <= 0xF4) {
    const bool overlong = text[0] == 0xF0 && text[1] < 0x90;
    const bool too_large = text[0] == 0xF4 && text[1] > 0x8F;
    return is_continuation(text[1]) && is_continuation(text[2]) && is_continuation(text[3]) &&
                   !overlong && !too_large
               ? 4
               : 0;
  }
  return 0;
}

void print_json_character(unsigned char c) {
  if (c == '"' || c == '\\') {
    putchar('\\');
    putchar(c);
  } else if (c == '\t') {
    fputs("\\t", stdout);
  } else if (c == '\r') {
    fputs("\\r", stdout);
  } else if (c == '\n') {
    fputs("\\n", stdout);
  } else if (c < 0x20 || c == 0x7F) {
    printf("\\u%04x", c);
  } else {
    putchar(c);
  }
}

void print_json_value(const Field &field) {
  switch (field.kind) {
    case Field::Kind::kText:
      print_json_string(field.text);
      break;
    case Field::Kind::kNumber:
      printf("%" PRIu32, field.number);
      break;
    case Field::Kind::kBool:
      fputs(field.number != 0 ? "true" : "false", stdout);
      break;
  }
}

// A field's value as text, in a buffer for numbers.
struct FieldText {
  char number[16];
  const char *text;

  explicit FieldText(const Field &field) : text(field.text) {
    if (field.kind != Field::Kind::kText) {
      (void)snprintf(number, sizeof number, "%" PRIu32, field.number);  // Fits.
      text = number;
    }
  }
};

// NAME=VALUE, or VALUE alone without a name.
void print_pair(Form form, const char *name, const char *value) {
  if (form == Form::kShell) {
    print_shell_name(name);
    putchar('=');
    print_shell_word(value);
    putchar('\n');
    return;
  }
  if (name != nullptr) {
    printf("%s=", name);
  }
  fputs(value, stdout);
  putchar(form == Form::kNull ? '\0' : '\n');
}

}  // namespace

bool choose_form(const Options &options, Form &form) {
  const bool json = options.has(kJson);
  const bool null = options.has(kNull);
  const bool shell = options.has(kShell);
  if ((json && null) || (json && shell) || (null && shell)) {
    complain("only one of --json, --null and --shell");
    return false;
  }
  form = json ? Form::kJson : null ? Form::kNull : shell ? Form::kShell : Form::kText;
  return true;
}

void print_json_string(const char *text) {
  putchar('"');
  const unsigned char *at = reinterpret_cast<const unsigned char *>(text);
  while (*at != '\0') {
    const int length = utf8_length(at);
    if (length == 0) {
      printf("\\udc%02x", *at);
    } else if (length == 1) {
      print_json_character(*at);
    } else {
      fwrite(at, 1, static_cast<size_t>(length), stdout);
    }
    at += length == 0 ? 1 : length;
  }
  putchar('"');
}

void print_shell_word(const char *text) {
  putchar('\'');
  for (; *text != '\0'; ++text) {
    if (*text == '\'') {
      fputs("'\\''", stdout);
    } else {
      putchar(*text);
    }
  }
  putchar('\'');
}

void print_shell_name(const char *name) {
  if (isdigit(static_cast<unsigned char>(*name))) {
    putchar('_');
  }
  for (; *name != '\0'; ++name) {
    putchar(isalnum(static_cast<unsigned char>(*name)) ? *name : '_');
  }
}

RecordPrinter::RecordPrinter(Form form) : form_(form) {
  if (form_ == Form::kJson) {
    putchar('{');
  }
}

RecordPrinter::~RecordPrinter() {
  if (form_ == Form::kJson) {
    puts("}");
  }
}

void RecordPrinter::print(const Field &field) {
  if (form_ != Form::kJson) {
    print_pair(form_, field.name, FieldText(field).text);
    return;
  }
  if (!first_) {
    fputs(", ", stdout);
  }
  first_ = false;
  print_json_string(field.name);
  fputs(": ", stdout);
  print_json_value(field);
}

ListPrinter::ListPrinter(Form form) : form_(form) {
  if (form_ == Form::kJson) {
    putchar('[');
  }
}

ListPrinter::~ListPrinter() {
  if (form_ == Form::kJson) {
    puts(first_ ? "]" : "\n]");
  }
}

void ListPrinter::print_object(const Field *fields, int count) {
  fputs(first_ ? "\n  {" : ",\n  {", stdout);
  first_ = false;
  for (int i = 0; i < count; ++i) {
    fputs(i == 0 ? "" : ", ", stdout);
    print_json_string(fields[i].name);
    fputs(": ", stdout);
    print_json_value(fields[i]);
  }
  putchar('}');
}

void ListPrinter::print_value(const char *path, const char *value, bool with_name) {
  if (form_ == Form::kJson) {
    const Field fields[] = {Field::of("path", path), Field::of("value", value)};
    print_object(fields, 2);
    return;
  }
  print_pair(form_, with_name || form_ == Form::kShell ? path : nullptr, value);
}

void ListPrinter::print_entry(const Field *fields, int count, const char *name, const char *value) {
  if (form_ == Form::kJson) {
    print_object(fields, count);
    return;
  }
  print_pair(form_, name, value);
}

}  // namespace zrcfg_tool
