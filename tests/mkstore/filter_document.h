// The documents that the filter tests build: the project's own, or the real ones.
#ifndef ZRCFG_TESTS_MKSTORE_FILTER_DOCUMENT_H_
#define ZRCFG_TESTS_MKSTORE_FILTER_DOCUMENT_H_

#include <ostream>
#include <string>
#include <vector>

#include "tests/mkstore/build_run.h"

struct FilterDocument {
  std::string title;
  std::vector<std::string> arguments;  // Of the store builder, without the output.
};

inline void PrintTo(const FilterDocument &document, std::ostream *out) {
  *out << document.title;
}

inline std::vector<FilterDocument> filter_documents() {
#ifdef ZRCFG_MODEL_DIR
  const std::string folder = std::string(ZRCFG_MODEL_DIR) + "/";
  return {{"InternetGatewayDevice", {"--model", folder + "tr-098-1-8-0-full.xml"}},
          {"Device", {"--model", folder + "tr-181-2-11-0-full.xml"}}};
#else
  const std::string name = ZRCFG_EXAMPLE;
  return {{"HomeGateway",
           {"--model", name + ".xml", "--instances", name + ".instances", "--values",
            name + ".values", "--attributes", name + ".attributes"}}};
#endif
}

inline std::string filter_document_title(const testing::TestParamInfo<FilterDocument> &given) {
  return given.param.title;
}

class FilterDocumentTest : public BuildTest, public testing::WithParamInterface<FilterDocument> {
 protected:
  RunResult build_document() const {
    std::vector<std::string> arguments = GetParam().arguments;
    arguments.push_back(path("out"));
    return run(arguments);
  }
};

#endif  // ZRCFG_TESTS_MKSTORE_FILTER_DOCUMENT_H_
