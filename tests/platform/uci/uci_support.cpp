// Loading texts and describing what came out.
#include "tests/platform/uci/uci_support.h"

#include <cstdlib>

namespace zrcfg_test {
namespace {

constexpr char kFile[] = "package";

std::string describe_option(uci_option *option) {
  const std::string name = option->e.name;
  EXPECT_EQ(option->e.type, UCI_TYPE_OPTION);
  if (option->type == UCI_TYPE_STRING) {
    return name + "=" + option->v.string;
  }
  EXPECT_EQ(option->type, UCI_TYPE_LIST);
  std::string entries;
  uci_element *entry = nullptr;
  uci_foreach_element(&option->v.list, entry) {
    entries += (entries.empty() ? "" : ",") + std::string(entry->name);
  }
  return name + "=[" + entries + "]";
}

std::string describe_section(uci_section *section) {
  EXPECT_EQ(section->e.type, UCI_TYPE_SECTION);
  std::string options;
  uci_element *element = nullptr;
  uci_foreach_element(&section->options, element) {
    uci_option *option = uci_to_option(element);
    EXPECT_EQ(option->section, section);
    options += (options.empty() ? "" : ",") + describe_option(option);
  }
  const std::string name = section->anonymous ? "?" : section->e.name;
  return std::string(section->type) + " " + name + "{" + options + "}";
}

}  // namespace

UciContext::UciContext() : context_(uci_alloc_context()) {
  if (context_ == nullptr) {
    std::abort();
  }
}

UciContext::~UciContext() {
  uci_free_context(context_);
}

int UciContext::load(const std::string &path, uci_package **package) {
  return uci_load(context_, path.c_str(), package);
}

std::string UciContext::error_text(const char *prefix) {
  char *text = nullptr;
  uci_get_errorstr(context_, &text, prefix);
  const std::string copy = text != nullptr ? text : "(null)";
  std::free(text);
  return copy;
}

std::vector<uci_section *> sections_of(const uci_package *package) {
  std::vector<uci_section *> sections;
  uci_element *element = nullptr;
  uci_foreach_element(&package->sections, element) {
    sections.push_back(uci_to_section(element));
  }
  return sections;
}

std::string describe(const uci_package *package) {
  std::string text;
  for (uci_section *section : sections_of(package)) {
    EXPECT_EQ(section->package, package);
    text += (text.empty() ? "" : " ") + describe_section(section);
  }
  return text;
}

std::string read_uci(const std::string &text) {
  write_store_file(kFile, text);
  UciContext context;
  uci_package *package = nullptr;
  const int result = context.load(store_path(kFile), &package);
  EXPECT_EQ(result == UCI_OK, package != nullptr);
  return result == UCI_OK ? describe(package) : context.error_text();
}

std::string read_value(const std::string &text) {
  const std::string found = read_uci("config t s\noption value " + text);
  const std::string before = "t s{value=";
  return found.rfind(before, 0) == 0 ? found.substr(before.size(), found.size() - before.size() - 1)
                                     : found;
}

}  // namespace zrcfg_test
