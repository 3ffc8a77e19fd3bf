// Target: the input is a UCI file.
#include <stdlib.h>
#include <string.h>
#include <uci.h>

#include <memory>
#include <string>

#include "config/uci_option.h"
#include "fuzz/check.h"
#include "fuzz/store_file.h"
#include "fuzz/target.h"
#include "zrcfg.h"

namespace {

using zrcfg_fuzz::require;

constexpr char kPath[] = "/var/any_settings";
constexpr char kName[] = "any_settings";

// Every string of an option is read to its end, every entry of a list is of the list's own kind.
size_t walk_option(uci_option *option) {
  if (option->type == UCI_TYPE_STRING) {
    return strlen(option->v.string);
  }
  size_t length = 0;
  uci_element *item = nullptr;
  uci_foreach_element(&option->v.list, item) {
    length += strlen(item->name);
  }
  return length;
}

void walk_section(uci_context *context, uci_section *section) {
  uci_element *element = nullptr;
  uci_foreach_element(&section->options, element) {
    uci_option *const option = uci_to_option(element);
    (void)walk_option(option);  // What matters is that it ends.
    const uci_option *const found = uci_lookup_option(context, section, element->name);
    require(found != nullptr && strcmp(found->e.name, element->name) == 0,
            "an option is not found by its name");
    const char *const text = uci_lookup_option_string(context, section, element->name);
    require(found != nullptr && (text == nullptr) == (found->type != UCI_TYPE_STRING),
            "a text of another kind");
  }
  require(uci_lookup_option(context, section, "no such option") == nullptr,
          "an option that is not there is found");
}

void ask_for(const std::string &section) {
  constexpr unsigned kSizes[] = {0, 1, 7, ZRCFG_VALUE_SIZE};
  for (const unsigned size : kSizes) {
    const std::unique_ptr<char[]> out(new char[size]());
    (void)zrcfg_uci_get_config(kPath, section.c_str(), out.get(), size);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  zrcfg_fuzz::require_private_store();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static zrcfg_fuzz::StoreFile file("", kName);
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  file.write(bytes);
  zrcfg_fuzz::set_under_way("reading a UCI file");
  const int descriptor = zrcfg_fuzz::lowest_free_descriptor();
  uci_context *const context = uci_alloc_context();
  require(context != nullptr, "no context");
  uci_package *package = nullptr;
  const int result = uci_load(context, kPath, &package);
  require((result == UCI_OK) == (package != nullptr), "a package without success");
  if (package != nullptr) {
    uci_element *element = nullptr;
    uci_foreach_element(&package->sections, element) {
      walk_section(context, uci_to_section(element));
      ask_for(element->name);
    }
  } else {
    char *text = nullptr;
    uci_get_errorstr(context, &text, "any");
    require(text != nullptr && text[0] != '\0', "an error without a text");
    free(text);
  }
  unload_ucifile(context, package);
  ask_for("filter1");
  ask_for(bytes);
  require(zrcfg_fuzz::lowest_free_descriptor() == descriptor, "a descriptor is left open");
  return 0;
}
