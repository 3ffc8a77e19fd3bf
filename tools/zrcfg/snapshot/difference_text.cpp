// How a difference is printed: a line of words, or a JSON object on a line.
#include <stdio.h>

#include "tools/zrcfg/escape.h"
#include "tools/zrcfg/output.h"
#include "tools/zrcfg/snapshot/difference.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// The words of the lines, and the values of "event".
const char *word_of(Change change) {
  switch (change) {
    case Change::kChanged:
      return "changed";
    case Change::kAttribute:
      return "attribute";
    case Change::kAdded:
      return "added";
    case Change::kRemoved:
      return "removed";
    case Change::kOrder:
      return "order";
  }
  return "";
}

// A word in double quotes, as a batch takes it.
void print_quoted(const char *text) {
  fputs(" \"", stdout);
  for (; *text != '\0'; ++text) {
    const char c = *text;
    if (c == '"' || c == '\\') {
      putchar('\\');
      putchar(c);
    } else if (is_control(c)) {
      printf("\\x%02x", static_cast<unsigned char>(c));
    } else {
      putchar(c);
    }
  }
  putchar('"');
}

void print_json(const Difference &difference, const char *path) {
  RecordPrinter printer(Form::kJson);
  printer.print(Field::of("event", word_of(difference.change)));
  printer.print(Field::of("path", path));
  if (difference.attribute != nullptr) {
    printer.print(Field::of("attribute", difference.attribute));
  }
  const bool both = difference.before != nullptr && difference.after != nullptr;
  if (difference.before != nullptr) {
    printer.print(Field::of(both ? "old" : "value", difference.before));
  }
  if (difference.after != nullptr) {
    printer.print(Field::of(both ? "new" : "value", difference.after));
  }
}

}  // namespace

void print_difference(const Difference &difference, bool json) {
  char path[ZRCFG_URL_SIZE + ZRCFG_NAME_SIZE];
  (void)snprintf(path, sizeof path, "%s%s", difference.url,  // Fits.
                 difference.parameter != nullptr ? difference.parameter : "");
  if (json) {
    print_json(difference, path);
    return;
  }
  printf("%s %s", word_of(difference.change), path);
  if (difference.attribute != nullptr) {
    printf(" %s", difference.attribute);
  }
  if (difference.before != nullptr) {
    print_quoted(difference.before);
  }
  if (difference.after != nullptr) {
    print_quoted(difference.after);
  }
  putchar('\n');
}

}  // namespace zrcfg_tool
