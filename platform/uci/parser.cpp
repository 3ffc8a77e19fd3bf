// The four statements of a UCI file: package, config, option, list.
#include "parser.h"

#include <string.h>

#include "option_table.h"

namespace zrcfg_uci {

namespace {

struct Parser {
  Package *package;
  uci_section *section;
  OptionTable options;
  ParseError *error;
};

constexpr const char kTooFew[] = "insufficient arguments";
constexpr const char kTooMany[] = "too many arguments";
constexpr const char kBadName[] = "invalid character in name field";

int refuse(Parser *parser, const char *reason, Place place) {
  *parser->error = {reason, place};
  return UCI_ERR_PARSE;
}

// A section's type may have any visible ASCII character.
bool is_type(const char *text) {
  for (const char *at = text; *at != '\0'; ++at) {
    if (*at <= ' ' || *at > '~') {
      return false;
    }
  }
  return true;
}

// The name of a package in the file is checked and then left aside: the package is the file.
int parse_package(Parser *parser, const Statement &statement) {
  const Word &name = statement.words[1];
  return is_name(name.text, "-") ? UCI_OK : refuse(parser, kBadName, name.place);
}

int parse_config(Parser *parser, const Statement &statement) {
  const Word &type = statement.words[1];
  if (!is_type(type.text)) {
    return refuse(parser, "invalid character in type field", type.place);
  }
  static char unnamed[] = "";
  char *name = unnamed;
  if (statement.count > 2 && statement.words[2].text[0] != '\0') {
    name = statement.words[2].text;
    if (!is_name(name, "")) {
      return refuse(parser, kBadName, statement.words[2].place);
    }
  }
  parser->section = add_section(parser->package, type.text, name);
  return parser->section != nullptr ? UCI_OK : UCI_ERR_MEM;
}

// The option of that name in the current section, made and put there when it is missing. Null
// without memory.
uci_option *option_to_fill(Parser *parser, char *name) {
  uci_option *option = find_option(&parser->options, parser->section, name);
  if (option == nullptr) {
    option = new_option(parser->package, parser->section, name);
    if (option == nullptr || !add_option(&parser->options, option)) {
      return nullptr;
    }
  }
  if (option->e.list.next == nullptr) {
    append_to_list(&parser->section->options, &option->e.list);
  }
  return option;
}

// An empty value is none, and what was there goes. The table keeps the option for a later one.
void unset_option(Parser *parser, const char *name) {
  uci_option *option = find_option(&parser->options, parser->section, name);
  if (option != nullptr && option->e.list.next != nullptr) {
    remove_from_list(&option->e.list);
    option->type = UCI_TYPE_STRING;
    option->v.string = nullptr;
  }
}

int set_option(Parser *parser, char *name, char *value) {
  if (value[0] == '\0') {
    unset_option(parser, name);
    return UCI_OK;
  }
  uci_option *option = option_to_fill(parser, name);
  if (option == nullptr) {
    return UCI_ERR_MEM;
  }
  option->type = UCI_TYPE_STRING;
  option->v.string = value;
  return UCI_OK;
}

int add_to_list(Parser *parser, char *name, char *value) {
  uci_option *option = option_to_fill(parser, name);
  return option != nullptr && append_value(parser->package, option, value) ? UCI_OK : UCI_ERR_MEM;
}

int parse_option(Parser *parser, const Statement &statement, bool is_list) {
  const Word &name = statement.words[1];
  if (parser->section == nullptr) {
    return refuse(parser, "option/list command found before the first section",
                  statement.words[0].place);
  }
  if (!is_name(name.text, "")) {
    return refuse(parser, kBadName, name.place);
  }
  static char nothing[] = "";
  char *value = statement.count > 2 ? statement.words[2].text : nothing;
  return is_list ? add_to_list(parser, name.text, value) : set_option(parser, name.text, value);
}

// Every command may be shortened to its first letter.
bool is_command(const char *word, const char *command) {
  return strcmp(word, command) == 0 || (word[0] == command[0] && word[1] == '\0');
}

int parse_statement(Parser *parser, const Statement &statement) {
  const char *command = statement.words[0].text;
  const bool is_package = is_command(command, "package");
  const bool is_config = is_command(command, "config");
  const bool is_list = is_command(command, "list");
  if (!is_package && !is_config && !is_list && !is_command(command, "option")) {
    return refuse(parser, "invalid command", statement.words[0].place);
  }
  if (statement.count < 2) {
    return refuse(parser, kTooFew, statement.end);
  }
  if (statement.words[1].text[0] == '\0') {
    return refuse(parser, kTooFew, statement.words[1].place);
  }
  const int most = is_package ? 2 : kMostWords;
  if (statement.count > most) {
    return refuse(parser, kTooMany, statement.words[most].place);
  }
  if (is_package) {
    return parse_package(parser, statement);
  }
  return is_config ? parse_config(parser, statement) : parse_option(parser, statement, is_list);
}

int parse_statements(Parser *parser, StatementReader *reader) {
  for (;;) {
    Statement statement;
    switch (read_statement(reader, &statement, parser->error)) {
      case ReadResult::kEnd:
        return UCI_OK;
      case ReadResult::kError:
        return UCI_ERR_PARSE;
      case ReadResult::kStatement:
        break;
    }
    const int result = parse_statement(parser, statement);
    if (result != UCI_OK) {
      return result;
    }
  }
}

Place place_in(FileText text, const char *at) {
  Place place = {1, 1};
  for (const char *passed = text.bytes; passed != at; ++passed) {
    place = *passed == '\n' ? Place{place.line + 1, 1} : Place{place.line, place.byte + 1};
  }
  return place;
}

}  // namespace

bool is_name(const char *text, const char *more) {
  for (const char *at = text; *at != '\0'; ++at) {
    const char c = *at;
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (!plain && c != '_' && strchr(more, c) == nullptr) {
      return false;
    }
  }
  return text[0] != '\0';
}

int parse_text(Package *package, FileText text, ParseError *error) {
  // No text has a zero byte, and none could be told from the end of a name or value.
  const void *zero = memchr(text.bytes, '\0', text.size);
  if (zero != nullptr) {
    *error = {"zero byte", place_in(text, static_cast<const char *>(zero))};
    return UCI_ERR_PARSE;
  }
  StatementReader reader = {text.bytes, text.bytes + text.size, text.bytes, 1};
  Parser parser = {package, nullptr, {nullptr, 0, 0}, error};
  const int result = parse_statements(&parser, &reader);
  free_table(&parser.options);
  return result;
}

}  // namespace zrcfg_uci
