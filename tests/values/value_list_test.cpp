// Tests of listing all visible values of an object, as a call and as its building block.
#include "values/value_list.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <string>

#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// The outputs of a listing; what it built is freed at the end.
struct Listing {
  static ParamValueListNode *mark() {
    static ParamValueListNode node;
    return &node;
  }

  ParamValueListNode *head = mark();
  ParamValueListNode *tail = mark();

  Listing() = default;
  Listing(const Listing &) = delete;
  Listing &operator=(const Listing &) = delete;
  ~Listing() {
    if (untouched()) {
      return;
    }
    while (head != nullptr) {
      ParamValueListNode *const next = head->next;
      free(head);
      head = next;
    }
  }

  bool untouched() const { return head == mark() && tail == mark(); }

  // "url=value" of each node; checks the end of the list.
  std::vector<std::string> texts() const {
    std::vector<std::string> all;
    const ParamValueListNode *last = nullptr;
    for (const ParamValueListNode *node = head; node != nullptr; node = node->next) {
      all.push_back(std::string(node->url) + "=" + node->value);
      last = node;
    }
    EXPECT_EQ(tail, last);
    return all;
  }
};

std::string pointer_text(const void *pointer) {
  char text[32];
  snprintf(text, sizeof text, "%x",
           static_cast<unsigned>(reinterpret_cast<unsigned long>(pointer)));
  return text;
}

std::vector<std::string> list_log(const Listing &listing, const std::vector<size_t> &places,
                                  const std::string &call_url) {
  std::vector<std::string> lines;
  const ParamValueListNode *node = listing.head;
  for (const size_t place : places) {
    lines.push_back("i=" + std::to_string(place) + " ptr=0x" + pointer_text(node) +
                    " ptr->url=" + node->url + "\n");
    node = node->next;
  }
  const bool empty = listing.head == nullptr;
  lines.push_back("Head=0x" + pointer_text(listing.head) +
                  " url=" + (empty ? call_url : listing.head->url) + "\n");
  lines.push_back("Tail=0x" + pointer_text(listing.tail) +
                  " url=" + (empty ? call_url : listing.tail->url) + "\n");
  return lines;
}

class ValueListTest : public ValuesTest {
 protected:
  static int list(Listing &listing, const char *url = kUrl, int timeout = 0) {
    clear_log();
    return zrcfg_getallparamval(url, &listing.head, &listing.tail, timeout);
  }

  void expect_no_list(int result) {
    Listing listing;
    EXPECT_EQ(list(listing), result);
    EXPECT_TRUE(listing.untouched());
    expect_untouched();
  }
};

TEST_F(ValueListTest, AllVisibleValuesComeInFileOrder) {
  store_section("one\n\r\nthree words here\n");
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  EXPECT_THAT(listing.texts(), ElementsAre("Gateway.Device.A=one", "Gateway.Device.B=",
                                           "Gateway.Device.C=three words here"));
  expect_untouched();
}

TEST_F(ValueListTest, LogTellsEachNodeThenHeadAndTail) {
  store_section("one\n\r\nthree\n");
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  EXPECT_THAT(value_log(), ElementsAreArray(joined({{"objUrl =  Gateway.Device.\n"},
                                                    list_log(listing, {0, 1, 2}, kUrl)})));
}

TEST_F(ValueListTest, RestOfEachNodeIsZero) {
  store_section("one\n\r\nthree\n");
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  ASSERT_NE(listing.head, nullptr);
  const std::string url = "Gateway.Device.A";
  EXPECT_EQ(std::string(listing.head->url, 256), url + std::string(256 - url.size(), '\0'));
  EXPECT_EQ(std::string(listing.head->value, 256), "one" + std::string(253, '\0'));
  EXPECT_EQ(std::string(listing.head->next->value, 256), std::string(256, '\0'));
}

TEST_F(ValueListTest, HiddenParameterInTheMiddleShiftsNothing) {
  PropertyFile file = property_file({"A", "B", "C", "D"}, {"one", "two", "three", "four"});
  file.params[1].hide = 1;
  file.params[2].device_type = 0x40;
  store(file);
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  EXPECT_THAT(listing.texts(), ElementsAre("Gateway.Device.A=one", "Gateway.Device.D=four"));
  const std::vector<std::string> nodes = list_log(listing, {0, 3}, kUrl);
  EXPECT_THAT(
      value_log(),
      ElementsAre("objUrl =  Gateway.Device.\n", nodes[0], "paramIsHid() ret=1,no need show!\n",
                  "paramIsHid() ret=1,no need show!\n", nodes[1], nodes[2], nodes[3]));
}

TEST_F(ValueListTest, VisibilityFollowsTheMask) {
  struct Row {
    uint8_t device_type;
    uint8_t hide;
    bool visible;
  };
  const Row rows[] = {{0, 0, true},     {0x40, 0, false}, {0x41, 0, true}, {0xc0, 0, true},
                      {0x01, 0, true},  {0x80, 0, true},  {0xff, 0, true}, {0, 1, false},
                      {0x01, 1, false}, {0x40, 1, false}};
  for (const Row &row : rows) {
    PropertyFile file = property_file({"A", "B"}, {"one", "two"});
    file.params[0].device_type = row.device_type;
    file.params[0].hide = row.hide;
    store(file);
    Listing listing;
    EXPECT_EQ(list(listing), 0);
    EXPECT_EQ(listing.texts().size(), row.visible ? 2u : 1u) << int{row.device_type};
    PropertyFile object = property_file({"A"}, {"one"});
    object.header.device_type = row.device_type;
    object.header.hide = row.hide;
    store(object);
    Listing of_object;
    EXPECT_EQ(list(of_object), row.visible ? 0 : 1) << int{row.device_type};
    EXPECT_EQ(of_object.untouched(), !row.visible);
  }
}

TEST_F(ValueListTest, AllHiddenGives0AndNull) {
  PropertyFile file = property_file({"A", "B"}, {"one", "two"});
  file.params[0].hide = file.params[1].hide = 1;
  store(file);
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  EXPECT_EQ(listing.head, nullptr);
  EXPECT_EQ(listing.tail, nullptr);
  EXPECT_THAT(value_log(),
              ElementsAre("objUrl =  Gateway.Device.\n", "paramIsHid() ret=1,no need show!\n",
                          "paramIsHid() ret=1,no need show!\n", "Head=0x0 url=Gateway.Device.\n",
                          "Tail=0x0 url=Gateway.Device.\n"));
}

TEST_F(ValueListTest, HiddenObjectGives1) {
  PropertyFile file = property_file({"A"}, {"one"});
  file.header.hide = 1;
  store(file);
  expect_no_list(1);
  EXPECT_THAT(value_log(),
              ElementsAre("objUrl =  Gateway.Device.\n", "objIsHid() no need show!\n"));
}

TEST_F(ValueListTest, ObjectWithoutServedRecordsGives6) {
  for (const size_t count : {0u, 256u, 512u}) {
    store(numbered_file(count, 8));
    expect_no_list(6);
    EXPECT_THAT(value_log(), ElementsAre("objUrl =  Gateway.Device.\n",
                                         "this node has no params,do nothing!!\n"));
  }
}

TEST_F(ValueListTest, HiddenObjectWithoutRecordsGives1) {
  PropertyFile file;
  file.header.hide = 1;
  store(file);
  expect_no_list(1);
}

TEST_F(ValueListTest, FewerLinesThanRecordsGive15AndNoList) {
  for (const char *section : {"one\ntwo\n", "one\ntwo", "one\n", "\n\none\n\n\n", "", "\n"}) {
    store_section(section);
    expect_no_list(15);
    EXPECT_EQ(value_log().back(), "getParamValueList() fail ret=15!\n");
    const std::string place = std::to_string(
        std::count_if(section, section + strlen(section), [](char c) { return c >= 'a'; }) / 3);
    const std::string error = value_log().at(value_log().size() - 2);
    EXPECT_TRUE(std::regex_match(
        error, std::regex("i=" + place + " param=[1-9a-f][0-9a-f]* pValue=0 err!\n")))
        << error;
  }
}

TEST_F(ValueListTest, HiddenParameterNeedsItsLineToo) {
  PropertyFile file = property_file({"A", "B"}, {"", ""});
  file.params[1].hide = 1;
  file.values = "one\n";
  store(file);
  expect_no_list(15);
}

TEST_F(ValueListTest, SurplusLinesAreNoMatter) {
  store_section("one\n\n\ntwo\nthree\nfour\n");
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  EXPECT_THAT(listing.texts(), ElementsAre("Gateway.Device.A=one", "Gateway.Device.B=two",
                                           "Gateway.Device.C=three"));
}

TEST_F(ValueListTest, LineThatBeginsWithACarriageReturnIsEmpty) {
  store_section("\rrest\nb\r\n\r");
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  EXPECT_THAT(listing.texts(),
              ElementsAre("Gateway.Device.A=", "Gateway.Device.B=b\r", "Gateway.Device.C="));
}

TEST_F(ValueListTest, NullUrlGives10WithItsTextAlone) {
  Listing listing;
  EXPECT_EQ(list(listing, nullptr), 10);
  EXPECT_EQ(log_texts(), std::vector<std::string>(1, "Input parameters can't be NULL\n"));
  EXPECT_TRUE(listing.untouched());
}

// The nodes that nobody receives must not be lost; the leak check looks.
TEST_F(ValueListTest, HeadAndTailMayBeNull) {
  store_section("one\ntwo\nthree\n");
  Listing listing;
  EXPECT_EQ(zrcfg_getallparamval(kUrl, nullptr, nullptr, 0), 0);
  EXPECT_EQ(zrcfg_getallparamval(kUrl, &listing.head, nullptr, 0), 0);
  listing.tail = listing.head->next->next;
  EXPECT_EQ(listing.texts().size(), 3u);
  ParamValueListNode *tail = nullptr;
  EXPECT_EQ(zrcfg_getallparamval(kUrl, nullptr, &tail, 0), 0);
}

TEST_F(ValueListTest, TooLongNamesAreCutAt255) {
  const std::string dir = long_path(255, '/');
  const std::string url = long_path(255, '.');
  write_property(dir, property_file({"A", "B"}, {"one", "two"}));
  Listing listing;
  EXPECT_EQ(list(listing, url.c_str()), 0);
  EXPECT_THAT(listing.texts(), ElementsAre(url + "=one", url + "=two"));
  const std::string name(63, 'n');
  const std::string shorter = long_path(200, '.');
  write_property(long_path(200, '/'), property_file({name}, {"one"}));
  Listing cut;
  EXPECT_EQ(list(cut, shorter.c_str()), 0);
  EXPECT_THAT(cut.texts(), ElementsAre(shorter + name.substr(0, 55) + "=one"));
  Listing fits;
  const std::string fitting = long_path(192, '.');
  write_property(long_path(192, '/'), property_file({name}, {"one"}));
  EXPECT_EQ(list(fits, fitting.c_str()), 0);
  EXPECT_THAT(fits.texts(), ElementsAre(fitting + name + "=one"));
}

TEST_F(ValueListTest, NameWithoutTerminatorEndsAtItsWidth) {
  const std::string name(64, 'n');
  store(property_file({name, "B"}, {"one", "two"}));
  Listing listing;
  EXPECT_EQ(list(listing), 0);
  EXPECT_THAT(listing.texts(), ElementsAre(kUrl + name + "=one", "Gateway.Device.B=two"));
}

class ValueListStepTest : public ValuesTest {};

TEST_F(ValueListStepTest, CallersUrlStandsBeforeEachName) {
  store_section("one\ntwo\nthree\n");
  const OpenedImage image;
  for (const std::string url : {"A.B.", "A.B", "", "any text at all "}) {
    clear_log();
    Listing listing;
    EXPECT_EQ(constructParamValueList(url.c_str(), image.get(), &listing.head, &listing.tail), 0);
    EXPECT_THAT(listing.texts(), ElementsAre(url + "A=one", url + "B=two", url + "C=three"));
    EXPECT_THAT(value_log(), ElementsAreArray(list_log(listing, {0, 1, 2}, url)));
  }
  expect_untouched();
}

TEST_F(ValueListStepTest, NullGives10) {
  store_section("one\ntwo\nthree\n");
  const OpenedImage image;
  Listing listing;
  EXPECT_EQ(constructParamValueList(nullptr, image.get(), &listing.head, &listing.tail), 10);
  EXPECT_EQ(constructParamValueList(kUrl, nullptr, &listing.head, &listing.tail), 10);
  EXPECT_EQ(value_log(), std::vector<std::string>(2, "Input parameters can't be NULL\n"));
  EXPECT_TRUE(listing.untouched());
  EXPECT_EQ(constructParamValueList(kUrl, image.get(), nullptr, nullptr), 0);
}

TEST_F(ValueListStepTest, HiddenObjectGives1WithItsOwnText) {
  PropertyFile file = property_file({"A"}, {"one"});
  file.header.device_type = 0x40;
  store(file);
  const OpenedImage image;
  Listing listing;
  EXPECT_EQ(constructParamValueList(kUrl, image.get(), &listing.head, &listing.tail), 1);
  EXPECT_THAT(value_log(), ElementsAre("objIsHid() ret=1,no need show!\n"));
  EXPECT_TRUE(listing.untouched());
}

TEST_F(ValueListStepTest, FileIsReadAfreshAndItsAbsenceGives7) {
  store_section("one\ntwo\nthree\n");
  const OpenedImage image;
  store_section("1\n2\n3\n");
  Listing listing;
  EXPECT_EQ(constructParamValueList("", image.get(), &listing.head, &listing.tail), 0);
  EXPECT_THAT(listing.texts(), ElementsAre("A=1", "B=2", "C=3"));
  ASSERT_EQ(unlink(property_path(kDir).c_str()), 0);
  clear_log();
  Listing none;
  EXPECT_EQ(constructParamValueList("", image.get(), &none.head, &none.tail), 7);
  EXPECT_THAT(value_log(), ElementsAre("unable to open Gateway/Device/property.conf file\n"));
  EXPECT_TRUE(none.untouched());
}

TEST_F(ValueListStepTest, MissingLineIsToldWithTheRecordsAddress) {
  store_section("one\ntwo\n");
  const OpenedImage image;
  Listing listing;
  EXPECT_EQ(constructParamValueList("", image.get(), &listing.head, &listing.tail), 15);
  const void *const record = static_cast<const char *>(image.get()) + 184 + 2 * 124;
  EXPECT_EQ(value_log().back(), "i=2 param=" + pointer_text(record) + " pValue=0 err!\n");
  EXPECT_TRUE(listing.untouched());
}

TEST_F(ValueListStepTest, FileThatGotMalformedGives10) {
  store_section("one\ntwo\nthree\n");
  const OpenedImage image;
  write_property(kDir, std::string(3, '\0'));
  Listing listing;
  EXPECT_EQ(constructParamValueList("", image.get(), &listing.head, &listing.tail), 10);
  EXPECT_TRUE(listing.untouched());
}

}  // namespace
}  // namespace zrcfg_test
