// What a UCI text is read as, in a form that tests can write down.
#ifndef ZRCFG_TESTS_PLATFORM_UCI_UCI_SUPPORT_H_
#define ZRCFG_TESTS_PLATFORM_UCI_UCI_SUPPORT_H_

#include <gtest/gtest.h>
#include <uci.h>

#include <optional>
#include <string>
#include <vector>

#include "support/property_builder.h"
#include "support/store_fixture.h"

namespace zrcfg_test {

class UciTest : public StoreTest {};

// A context of its own, freed at the end.
class UciContext {
 public:
  UciContext();
  ~UciContext();
  UciContext(const UciContext &) = delete;
  UciContext &operator=(const UciContext &) = delete;

  uci_context *get() { return context_; }
  int load(const std::string &path, uci_package **package);
  std::string error_text(const char *prefix = nullptr);

 private:
  uci_context *context_;
};

// "type name{option=value,list=[entry,entry]} type name{}"; "?" stands for a name that was made up.
std::string describe(const uci_package *package);
std::vector<uci_section *> sections_of(const uci_package *package);

// Writes the text to a file, loads it and describes the package, or gives the error's text.
std::string read_uci(const std::string &text);

// The value that `text` has behind "option value "; what read_uci tells when there is none.
std::string read_value(const std::string &text);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_PLATFORM_UCI_UCI_SUPPORT_H_
