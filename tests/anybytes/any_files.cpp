// The well-formed files that the tests damage.
#include "tests/anybytes/any_files.h"

#include "tests/support/property_builder.h"

namespace zrcfg_test {
namespace {

// A table with a counter, as the parent of itself would have it.
PropertyFile table() {
  PropertyFile file = property_file({}, {});
  file.header.rw = 1;
  file.header.max_instance = 12;
  file.header.key = 7;
  file.header.pnoe = "OfHeader/Count";
  return file;
}

PropertyFile two_values() {
  PropertyFile file = property_file({"Name", "Count"}, {"one", "2"});
  file.params[0].param_check = 1;
  return file;
}

PropertyFile full_fields() {
  PropertyFile file = property_file({std::string(64, 'n')}, {std::string(255, 'v')});
  file.params[0].accesslist = std::string(16, 'a');
  file.params[0].area = std::string(28, 'b');
  file.header.devfunc = std::string(64, 'd');
  file.header.extra_text = std::string(28, 'e');
  return file;
}

}  // namespace

const std::vector<NamedFile> &small_files() {
  static const std::vector<NamedFile> files = {{"Table", table().bytes()},
                                               {"TwoValues", two_values().bytes()},
                                               {"FullFields", full_fields().bytes()}};
  return files;
}

}  // namespace zrcfg_test
