// Tests of listing the attributes of all parameters, as a call and as its building block.
#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

#include "attr/attr_requests.h"
#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr char kHiddenParam[] = "paramIsHid() ret=1,no need show!\n";

// The outputs of a listing; what it built is freed at the end.
struct Listing {
  static ParamAttrNode *mark() {
    static ParamAttrNode node;
    return &node;
  }

  ParamAttrNode *ends[2] = {mark(), mark()};

  Listing() = default;
  Listing(const Listing &) = delete;
  Listing &operator=(const Listing &) = delete;
  ~Listing() {
    ParamAttrNode *node = ends[0] == mark() ? nullptr : ends[0];
    while (node != nullptr) {
      ParamAttrNode *const next = node->next;
      free(node);
      node = next;
    }
  }

  bool untouched() const { return ends[0] == mark() && ends[1] == mark(); }

  // The names; checks the end of the list.
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    const ParamAttrNode *last = nullptr;
    for (const ParamAttrNode *node = ends[0]; node != nullptr; node = node->next) {
      all.emplace_back(node->name);
      last = node;
    }
    EXPECT_EQ(ends[1], last);
    return all;
  }
};

std::string end_line(const char *which, const ParamAttrNode *node, const std::string &call_url) {
  char text[400];
  snprintf(text, sizeof text, "%s=0x%x url=%s\n", which,
           static_cast<unsigned>(reinterpret_cast<unsigned long>(node)),
           node == nullptr ? call_url.c_str() : node->name);
  return text;
}

class AttrListingTest : public AttrTest {
 protected:
  static uint32_t list(Listing &listing, const char *url = kUrl) {
    clear_log();
    return zrcfg_getallparamattr(url, listing.ends, 77, 0);
  }

  void expect_no_list(uint32_t result) {
    Listing listing;
    EXPECT_EQ(list(listing), result);
    EXPECT_TRUE(listing.untouched());
    expect_untouched();
  }

  // A file of visible parameters in a visible object, all other bits random.
  static std::string visible_file(const std::vector<std::string> &names) {
    std::string bytes = filled_file(names, Fill::kRandom, 31);
    bytes[kHeaderAt + 6] = 0;
    Bits{8, 7, 1}.set(bytes, kHeaderAt, 0);
    for (size_t i = 0; i < names.size(); ++i) {
      Bits{2, 0, 8}.set(bytes, record_at(i), 0x80);
      Bits{5, 2, 1}.set(bytes, record_at(i), 0);
    }
    return bytes;
  }
};

TEST_F(AttrListingTest, AllVisibleParametersComeInFileOrderWithAllAttributes) {
  store(visible_file({"B", "A", "C"}));
  Listing listing;
  EXPECT_EQ(list(listing), 0u);
  EXPECT_THAT(listing.names(),
              ElementsAre("Gateway.Device.B", "Gateway.Device.A", "Gateway.Device.C"));
  size_t position = 0;
  for (const ParamAttrNode *node = listing.ends[0]; node != nullptr; node = node->next) {
    const std::string zeros(sizeof(ParamAttr), '\0');
    expect_bytes(bytes_of(node->attr), model_attr(before_, record_at(position), zeros), node->name);
    const std::string name = node->name;
    EXPECT_EQ(std::string(node->name, 256), name + std::string(256 - name.size(), '\0'));
    ++position;
  }
  expect_untouched();
}

TEST_F(AttrListingTest, LogTellsHeadAndTail) {
  store(visible_file({"A", "B"}));
  Listing listing;
  EXPECT_EQ(list(listing), 0u);
  EXPECT_THAT(attr_log(), ElementsAre(end_line("Head", listing.ends[0], kUrl),
                                      end_line("Tail", listing.ends[1], kUrl)));
}

TEST_F(AttrListingTest, HiddenParametersAreLeftOut) {
  PropertyFile file = property_file({"A", "B", "C", "D"}, {"a", "b", "c", "d"});
  file.params[1].hide = 1;
  file.params[2].device_type = 0x40;
  store(file);
  Listing listing;
  EXPECT_EQ(list(listing), 0u);
  EXPECT_THAT(listing.names(), ElementsAre("Gateway.Device.A", "Gateway.Device.D"));
  EXPECT_THAT(attr_log(),
              ElementsAre(kHiddenParam, kHiddenParam, end_line("Head", listing.ends[0], kUrl),
                          end_line("Tail", listing.ends[1], kUrl)));
}

TEST_F(AttrListingTest, VisibilityFollowsTheMask) {
  struct Row {
    uint8_t device_type;
    uint8_t hide;
    bool visible;
  };
  const Row rows[] = {{0, 0, true},    {0x40, 0, false}, {0x41, 0, true}, {0xc0, 0, true},
                      {0x01, 0, true}, {0x80, 0, true},  {0, 1, false},   {0x40, 1, false}};
  for (const Row &row : rows) {
    PropertyFile file = property_file({"A", "B"}, {"one", "two"});
    file.params[0].device_type = row.device_type;
    file.params[0].hide = row.hide;
    store(file);
    Listing listing;
    EXPECT_EQ(list(listing), 0u);
    EXPECT_EQ(listing.names().size(), row.visible ? 2u : 1u) << int{row.device_type};
    PropertyFile object = property_file({"A"}, {"one"});
    object.header.device_type = row.device_type;
    object.header.hide = row.hide;
    store(object);
    Listing of_object;
    EXPECT_EQ(list(of_object), row.visible ? 0u : 1u) << int{row.device_type};
    EXPECT_EQ(of_object.untouched(), !row.visible);
  }
}

TEST_F(AttrListingTest, AllHiddenGives0AndNull) {
  PropertyFile file = property_file({"A", "B"}, {"one", "two"});
  file.params[0].hide = file.params[1].hide = 1;
  store(file);
  Listing listing;
  EXPECT_EQ(list(listing), 0u);
  EXPECT_EQ(listing.ends[0], nullptr);
  EXPECT_EQ(listing.ends[1], nullptr);
  EXPECT_THAT(attr_log(), ElementsAre(kHiddenParam, kHiddenParam, "Head=0x0 url=Gateway.Device.\n",
                                      "Tail=0x0 url=Gateway.Device.\n"));
}

TEST_F(AttrListingTest, HiddenObjectGives1) {
  PropertyFile file = property_file({"A"}, {"one"});
  file.header.hide = 1;
  store(file);
  expect_no_list(1);
  EXPECT_THAT(attr_log(), ElementsAre("objIsHid() no need show!\n"));
  file.params.clear();
  store(file);
  expect_no_list(1);
}

TEST_F(AttrListingTest, ObjectWithoutServedRecordsGives16) {
  for (const size_t count : {0u, 256u, 512u}) {
    store(visible_file(std::vector<std::string>(count, "A")));
    expect_no_list(16);
    EXPECT_THAT(attr_log(), ElementsAre("this node has no params,do nothing!!\n"));
  }
}

TEST_F(AttrListingTest, ExactlyTheCountedRecordsAreListed) {
  for (const size_t count : {1u, 255u, 257u, 300u}) {
    std::vector<std::string> names;
    for (size_t i = 0; i < count; ++i) {
      names.push_back("P" + std::to_string(i));
    }
    store(visible_file(names));
    Listing listing;
    EXPECT_EQ(list(listing), 0u);
    const std::vector<std::string> found = listing.names();
    ASSERT_EQ(found.size(), count % 256);
    EXPECT_EQ(found.front(), "Gateway.Device.P0");
    EXPECT_EQ(found.back(), kUrl + names[count % 256 - 1]);
  }
}

TEST_F(AttrListingTest, ValueSectionDoesNotMatter) {
  store(visible_file({"A", "B"}).substr(0, record_at(2)));
  Listing listing;
  EXPECT_EQ(list(listing), 0u);
  EXPECT_EQ(listing.names().size(), 2u);
}

TEST_F(AttrListingTest, TooLongNamesAreCutAt255) {
  const std::string name(63, 'n');
  for (const size_t length : {192u, 193u, 200u, 255u}) {
    write_property(long_path(length, '/'), property_file({name}, {"one"}));
    const std::string url = long_path(length, '.');
    Listing listing;
    EXPECT_EQ(list(listing, url.c_str()), 0u);
    EXPECT_THAT(listing.names(), ElementsAre((url + name).substr(0, 255)));
  }
}

TEST_F(AttrListingTest, NameWithoutTerminatorEndsAtItsWidth) {
  const std::string name(64, 'n');
  store(property_file({name, "B"}, {"one", "two"}));
  Listing listing;
  EXPECT_EQ(list(listing), 0u);
  EXPECT_THAT(listing.names(), ElementsAre(kUrl + name, "Gateway.Device.B"));
}

TEST_F(AttrListingTest, NullUrlGives10WithItsTextAlone) {
  Listing listing;
  EXPECT_EQ(list(listing, nullptr), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(1, kNullText));
  EXPECT_TRUE(listing.untouched());
}

// The pair may be refused or left unfilled; what was built must not be lost, the leak check looks.
TEST_F(AttrListingTest, NullPairIsNoCrash) {
  store(visible_file({"A", "B"}));
  const uint32_t result = zrcfg_getallparamattr(kUrl, nullptr, 0, 0);
  EXPECT_TRUE(result == 0 || result == 10) << result;
  expect_untouched();
}

class AttrListingStepTest : public AttrTest {};

TEST_F(AttrListingStepTest, CallersUrlStandsBeforeEachName) {
  store(property_file({"A", "B"}, {"one", "two"}));
  const OpenedImage image;
  for (const std::string url : {"A.B.", "A.B", "", "any text at all "}) {
    clear_log();
    Listing listing;
    EXPECT_EQ(constructParamAttrList(url.c_str(), image.get(), &listing.ends[0], &listing.ends[1]),
              0u);
    EXPECT_THAT(listing.names(), ElementsAre(url + "A", url + "B"));
    EXPECT_THAT(attr_log(), ElementsAreArray({end_line("Head", listing.ends[0], url),
                                              end_line("Tail", listing.ends[1], url)}));
  }
  Listing cut;
  const std::string longer(300, 'u');
  EXPECT_EQ(constructParamAttrList(longer.c_str(), image.get(), &cut.ends[0], &cut.ends[1]), 0u);
  EXPECT_THAT(cut.names(), ElementsAre(longer.substr(0, 255), longer.substr(0, 255)));
  expect_untouched();
}

TEST_F(AttrListingStepTest, NullUrlOrImageGives10) {
  store(property_file({"A"}, {"one"}));
  const OpenedImage image;
  Listing listing;
  EXPECT_EQ(constructParamAttrList(nullptr, image.get(), &listing.ends[0], &listing.ends[1]), 10u);
  EXPECT_EQ(constructParamAttrList(kUrl, nullptr, &listing.ends[0], &listing.ends[1]), 10u);
  EXPECT_TRUE(listing.untouched());
}

TEST_F(AttrListingStepTest, HeadAndTailMayBeNull) {
  store(property_file({"A", "B"}, {"one", "two"}));
  const OpenedImage image;
  Listing listing;
  EXPECT_EQ(constructParamAttrList(kUrl, image.get(), nullptr, nullptr), 0u);
  EXPECT_EQ(constructParamAttrList(kUrl, image.get(), nullptr, &listing.ends[1]), 0u);
  EXPECT_EQ(constructParamAttrList(kUrl, image.get(), &listing.ends[0], nullptr), 0u);
  ASSERT_NE(listing.ends[0], Listing::mark());
  listing.ends[1] = listing.ends[0]->next;
  EXPECT_EQ(listing.names().size(), 2u);
}

TEST_F(AttrListingStepTest, HiddenObjectGives1WithItsOwnText) {
  PropertyFile file = property_file({"A"}, {"one"});
  file.header.device_type = 0x40;
  store(file);
  const OpenedImage image;
  Listing listing;
  EXPECT_EQ(constructParamAttrList(kUrl, image.get(), &listing.ends[0], &listing.ends[1]), 1u);
  EXPECT_THAT(attr_log(), ElementsAre("objIsHid() ret=1,no need show!\n"));
  EXPECT_TRUE(listing.untouched());
}

TEST_F(AttrListingStepTest, NoRecordsGive0AndNull) {
  store(PropertyFile());
  const OpenedImage image;
  Listing listing;
  EXPECT_EQ(constructParamAttrList(kUrl, image.get(), &listing.ends[0], &listing.ends[1]), 0u);
  EXPECT_EQ(listing.ends[0], nullptr);
  EXPECT_EQ(listing.ends[1], nullptr);
}

}  // namespace
}  // namespace zrcfg_test
