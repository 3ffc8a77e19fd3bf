// The attribute calls that are put under faults, run on one known store.
#include "tests/faults/attr_operations.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include "attr/attr_requests.h"
#include "attr/attr_update.h"
#include "tests/support/property_builder.h"

namespace zrcfg_test {
namespace {

constexpr char kMark = '\x5a';
constexpr size_t kNotiAt = 5;
constexpr size_t kLevel3At = 4 + 7;

PropertyFile attr_file() {
  PropertyFile file = property_file({"First", "Second", "Third"}, {"one", "two", ""});
  file.header.param_num = 3;
  for (ParamFields &param : file.params) {
    param.noti = 2;
    param.area = "an area";
    param.accesslist = "a list";
  }
  return file;
}

// A list of two nodes, the second of an unknown name between known ones.
struct Nodes {
  MultiAttrNode nodes[3];
  ParamAttr attrs[3];

  explicit Nodes(uint8_t first_byte) {
    memset(static_cast<void *>(nodes), 0, sizeof nodes);
    memset(static_cast<void *>(attrs), kMark, sizeof attrs);
    const char *const names[] = {"Third", "None", "First"};
    for (int i = 0; i < 3; ++i) {
      strcpy(nodes[i].name, names[i]);
      attrs[i].flash_rw = first_byte;
      nodes[i].pAttr = &attrs[i];
      nodes[i].next = i < 2 ? &nodes[i + 1] : nullptr;
    }
  }
};

std::string text_of(const ParamAttr &attr) {
  ParamAttr marks;
  memset(static_cast<void *>(&marks), kMark, sizeof marks);
  if (memcmp(&marks, &attr, sizeof attr) == 0) {
    return "untouched";
  }
  return std::to_string(attr.noti) + attr.area + attr.accesslist;
}

uint32_t get_single(const char *url, ZrcfgObject *, std::string &output) {
  ParamAttr attr;
  memset(static_cast<void *>(&attr), kMark, sizeof attr);
  const uint32_t result = zrcfg_getsingleparamattr(url, "Second", &attr, 0);
  output = text_of(attr);
  return result;
}

std::string output_of(const Nodes &list) {
  const std::string first = text_of(list.attrs[0]);
  EXPECT_EQ(text_of(list.attrs[1]), "untouched");
  EXPECT_EQ(text_of(list.attrs[2]), first) << "all or nothing";
  return first;
}

uint32_t get_multi(const char *url, ZrcfgObject *, std::string &output) {
  Nodes list(kMark);
  const uint32_t result = zrcfg_getmultiparamattr(url, list.nodes, 16, 0);
  output = output_of(list);
  return result;
}

uint32_t get_multi_step(const char *, ZrcfgObject *image, std::string &output) {
  Nodes list(kMark);
  const uint32_t result = outputToMultiParamAttrList(image, list.nodes, 16);
  output = output_of(list);
  return result;
}

template <typename List>
uint32_t listed(std::string &output, List list) {
  ParamAttrNode mark = {};
  ParamAttrNode *ends[2] = {&mark, &mark};
  const uint32_t result = list(ends);
  EXPECT_EQ(ends[0] == &mark, result != 0);
  EXPECT_EQ(ends[1] == &mark, result != 0);
  output = result != 0 ? "untouched" : text_of(ends[0]->attr);
  for (ParamAttrNode *node = result != 0 ? nullptr : ends[0]; node != nullptr;) {
    ParamAttrNode *const next = node->next;
    free(node);
    node = next;
  }
  return result;
}

uint32_t get_all(const char *url, ZrcfgObject *, std::string &output) {
  return listed(output,
                [url](ParamAttrNode **ends) { return zrcfg_getallparamattr(url, ends, 0, 0); });
}

uint32_t get_all_step(const char *url, ZrcfgObject *image, std::string &output) {
  return listed(output, [url, image](ParamAttrNode **ends) {
    return constructParamAttrList(url, image, &ends[0], &ends[1]);
  });
}

uint32_t get_object(const char *url, ZrcfgObject *, std::string &output) {
  ObjAttr attr = {};
  attr.level3 = 77;
  const uint32_t result = zrcfg_getobjattr(url, &attr, 0);
  output = attr.level3 == 77 ? "untouched" : "2an areaa list";
  return result;
}

constexpr uint8_t kNoti = 9;

uint32_t set_single(const char *url, ZrcfgObject *, std::string &) {
  return zrcfg_setsingleparamattr(url, "Second", &kNoti, 20, 0);
}

uint32_t set_single_step(const char *, ZrcfgObject *image, std::string &) {
  return setSingleParamAttrByParamName(image, "Second", &kNoti, 20);
}

uint32_t set_text(const char *url, ZrcfgObject *, std::string &) {
  return zrcfg_setsingleparamattr_ext(url, "Second", 3, "9", 0);
}

uint32_t set_text_step(const char *, ZrcfgObject *image, std::string &) {
  return setSingleParamAttrByParamName_ext(image, "Second", 3, "9");
}

uint32_t set_multi(const char *url, ZrcfgObject *, std::string &) {
  Nodes list(kNoti);
  return zrcfg_setmultiparamattr(url, list.nodes, 20, 0);
}

uint32_t set_multi_step(const char *, ZrcfgObject *image, std::string &) {
  Nodes list(kNoti);
  return modiMultiParamAttr(image, list.nodes, 20, 0);
}

ParamAttrChange change_of_all() {
  ParamAttrChange change = {};
  change.noti_change = 1;
  change.noti = kNoti;
  return change;
}

uint32_t set_all(const char *url, ZrcfgObject *, std::string &) {
  const ParamAttrChange change = change_of_all();
  return zrcfg_setallParamattr(url, &change, 0);
}

uint32_t set_all_step(const char *, ZrcfgObject *image, std::string &) {
  const ParamAttrChange change = change_of_all();
  return setAllParamAttr(image, &change, 0);
}

uint32_t set_object(const char *url, ZrcfgObject *, std::string &) {
  return zrcfg_setsingleobjattr_ext(url, 3, "9", 0);
}

void put_noti(std::string &bytes, size_t record) {
  bytes[4 + kHeadBytes + record * kParamBytes + kNotiAt] = '\x90';
}

std::string unchanged(std::string bytes) {
  return bytes;
}

std::string after_single(std::string bytes) {
  put_noti(bytes, 1);
  return bytes;
}

std::string after_multi(std::string bytes) {
  put_noti(bytes, 0);
  put_noti(bytes, 2);
  return bytes;
}

std::string after_all(std::string bytes) {
  put_noti(bytes, 0);
  put_noti(bytes, 1);
  put_noti(bytes, 2);
  return bytes;
}

std::string after_object(std::string bytes) {
  bytes[kLevel3At] = 9;
  return bytes;
}

}  // namespace

void write_attr_store() {
  write_property("A/", attr_file());
  write_property("A/B/0/", attr_file());
  write_property(kAttrDir, attr_file());
}

std::string attr_file_bytes() {
  return attr_file().bytes();
}

AttrImage::AttrImage() {
  int lock_fd = -1;
  EXPECT_EQ(createObjByPath(&image_, kAttrDir, &lock_fd, 0, ZRCFG_NO_LOCK), 0u);
}

AttrImage::~AttrImage() {
  destroyObj(image_, -1);
}

void PrintTo(const AttrOperation &operation, std::ostream *out) {
  *out << operation.name;
}

const std::vector<AttrOperation> &attr_operations() {
  static const std::vector<AttrOperation> operations = {
      {"GetSingle", false, false, false, get_single, unchanged},
      {"GetMulti", false, false, false, get_multi, unchanged},
      {"GetAll", false, false, true, get_all, unchanged},
      {"GetObject", false, false, false, get_object, unchanged},
      {"GetMultiStep", true, false, false, get_multi_step, unchanged},
      {"GetAllStep", true, false, true, get_all_step, unchanged},
      {"SetSingle", false, true, false, set_single, after_single},
      {"SetText", false, true, false, set_text, after_single},
      {"SetMulti", false, true, false, set_multi, after_multi},
      {"SetAll", false, true, false, set_all, after_all},
      {"SetObject", false, true, false, set_object, after_object},
      {"SetSingleStep", true, true, false, set_single_step, after_single},
      {"SetTextStep", true, true, false, set_text_step, after_single},
      {"SetMultiStep", true, true, false, set_multi_step, after_multi},
      {"SetAllStep", true, true, false, set_all_step, after_all},
  };
  return operations;
}

std::vector<AttrOperation> attr_writers() {
  std::vector<AttrOperation> writers;
  for (const AttrOperation &operation : attr_operations()) {
    if (operation.writes) {
      writers.push_back(operation);
    }
  }
  return writers;
}

}  // namespace zrcfg_test
