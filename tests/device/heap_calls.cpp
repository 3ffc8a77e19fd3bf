// The calls whose heap is measured, one of each kind, and the store that they work on.
#include "tests/device/heap_calls.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <string>

#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr int kCount = 255;
constexpr int kTimeout = 0;
constexpr char kUrl[] = "Full.";
constexpr char kTable[] = "Full.Table.";

std::string name_of(int i) {
  char name[ZRCFG_NAME_SIZE];
  snprintf(name, sizeof name, "Parameter%03d", i);
  return name;
}

// A value that passes the filter.
std::string value_of(char c) {
  return std::string(255, c);
}

// A property file of `count` parameters, the first of which counts instances.
void write_object(const std::string &dir, int count, char fill, const std::string &pnoe) {
  const unsigned len = 184u + 124u * static_cast<unsigned>(count);
  std::string bytes = {static_cast<char>(len >> 24), static_cast<char>(len >> 16),
                       static_cast<char>(len >> 8), static_cast<char>(len)};
  bytes.resize(4 + 184 + 124 * static_cast<size_t>(count));
  bytes[4 + 5] = 100;
  bytes[4 + 8] = 0x20;
  bytes.replace(4 + 76, pnoe.size(), pnoe);
  for (int i = 0; i < count; ++i) {
    const size_t at = 4 + 184 + 124 * static_cast<size_t>(i);
    const std::string name = name_of(i);
    bytes[at + 4] = 0x40;
    bytes[at + 119] = i == 0 ? 0 : 1;
    bytes.replace(at + 8, name.size(), name);
  }
  for (int i = 0; i < count; ++i) {
    bytes += (i == 0 ? std::string("0") : value_of(fill)) + "\n";
  }
  mkdir(("/var/" + dir).c_str(), 0755);
  std::ofstream file("/var/" + dir + "property.conf", std::ios::binary);
  if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
    abort();
  }
}

// A request of every parameter; its buffers belong to this program, not to the library.
struct Request {
  ParamValueEntry nodes[kCount];
  char values[kCount][ZRCFG_VALUE_SIZE];
  ParamAttr attrs[kCount];
  uint32_t faults[kCount];
};
Request request;

ParamValueEntry *request_values(char fill) {
  for (int i = 0; i < kCount; ++i) {
    ParamValueEntry &node = request.nodes[i];
    const std::string value = i == 0 ? std::string("0") : value_of(fill);
    strcpy(node.name, name_of(i).c_str());
    strcpy(request.values[i], value.c_str());
    node.value = request.values[i];
    node.fault = &request.faults[i];
    node.next = i + 1 < kCount ? &request.nodes[i + 1] : nullptr;
  }
  return request.nodes;
}

MultiAttrNode *request_attrs() {
  MultiAttrNode *const first = request_values('a');
  for (int i = 0; i < kCount; ++i) {
    request.nodes[i].pAttr = &request.attrs[i];
  }
  return first;
}

// What the last call handed out.
ParamValueListNode *values;
ParamAttrNode *attrs[2];
NODE_INFO *nodes;
SubObjName *names;
ZrcfgObject *image;
int lock_fd = -1;

template <typename Node>
void free_list(Node *&head) {
  while (head != nullptr) {
    Node *const next = head->next;
    free(head);
    head = next;
  }
}

const char *long_value(char c) {
  static char text[ZRCFG_VALUE_SIZE];
  memset(text, c, sizeof text - 1);
  return text;
}

char buffer[ZRCFG_VALUE_SIZE];
NODE_INFO *tail;
ParamValueListNode *values_tail;
ParamAttr attr;
ObjAttr object;
const ParamAttrChange kChange = {"", 1, 2, 1, "All"};
uint8_t changed;
char sign;

constexpr HeapCall kCalls[] = {
    {"read one",
     []() -> long long { return zrcfg_getsingleparamval(kUrl, "Parameter254", buffer, 0); }},
    {"set one",
     []() -> long long {
       return zrcfg_setsingleparamval(kUrl, "Parameter254", long_value('b'), 0);
     }},
    {"set one, checked",
     []() -> long long {
       return zrcfg_setsingleparamval_ext_get_old_value_check(kUrl, "Parameter254", long_value('c'),
                                                              kTimeout, &sign, buffer);
     }},
    {"check one",
     []() -> long long {
       return zrcfg_paramvalue_check(kUrl, "Parameter254", long_value('c'), 0);
     }},
    {"read 255",
     []() -> long long { return zrcfg_getmultiparamval(kUrl, request_values('x'), kTimeout); }},
    {"set 255",
     []() -> long long { return zrcfg_setmultiparamval(kUrl, request_values('d'), kTimeout); }},
    {"set 255, checked",
     []() -> long long {
       return zrcfg_setmultiparamval_check(kUrl, request_values('e'), kTimeout);
     }},
    {"roll 255 back",
     []() -> long long {
       for (uint32_t &fault : request.faults) {
         fault = 1;
       }
       return zrcfg_setmultiparamval_ext(kUrl, request.nodes, kTimeout);
     }},
    {"list values",
     []() -> long long { return zrcfg_getallparamval(kUrl, &values, &values_tail, 0); }},
    {"export one",
     []() -> long long {
       return zrcfg_exportsingleparamval(kUrl, "Parameter254", long_value('f'), 0, &changed);
     }},
    {"export 255",
     []() -> long long {
       return zrcfg_exportmultiparamval(kUrl, request_values('g'), kTimeout, 0);
     }},
    {"read attributes of one",
     []() -> long long { return zrcfg_getsingleparamattr(kUrl, "Parameter254", &attr, kTimeout); }},
    {"read attributes of 255",
     []() -> long long { return zrcfg_getmultiparamattr(kUrl, request_attrs(), 16, kTimeout); }},
    {"list attributes",
     []() -> long long { return zrcfg_getallparamattr(kUrl, attrs, 0, kTimeout); }},
    {"set an attribute of one",
     []() -> long long {
       return zrcfg_setsingleparamattr_ext(kUrl, "Parameter254", 3, "1", kTimeout);
     }},
    {"set attributes of 255",
     []() -> long long { return zrcfg_setmultiparamattr(kUrl, request_attrs(), 20, kTimeout); }},
    {"set attributes of all",
     []() -> long long { return zrcfg_setallParamattr(kUrl, &kChange, kTimeout); }},
    {"read object attributes",
     []() -> long long { return zrcfg_getobjattr(kTable, &object, kTimeout); }},
    {"set an object attribute",
     []() -> long long { return zrcfg_setsingleobjattr_ext(kTable, 3, "1", kTimeout); }},
    {"open an object",
     []() -> long long { return createObjByPath(&image, "Full/", &lock_fd, 0, kTimeout); }},
    {"add an instance", []() -> long long { return zrcfg_addobject(kTable, nullptr, kTimeout); }},
    {"delete an instance", []() -> long long { return zrcfg_delobject(kTable, 1, kTimeout); }},
    {"export an instance",
     []() -> long long { return zrcfg_exportaddobject("Full.Table.3.", kTimeout, 0, &changed); }},
    {"list sub-objects", []() -> long long { return zrcfg_getallsubobj(kTable, &names); }},
    {"list sub-objects with rights",
     []() -> long long { return zrcfg_getsubobjinfo(kTable, &nodes, &tail, kTimeout); }},
    {"list parameters with rights",
     []() -> long long { return zrcfg_getallnodeinfo(kUrl, &nodes, &tail, kTimeout); }},
    {"list an object and below it",
     []() -> long long { return zrcfg_allnode_get(kUrl, 0, &nodes, kTimeout); }},
};

}  // namespace

void release_results() {
  free_list(values);
  free_list(attrs[0]);
  free_list(nodes);
  free_list(names);
  if (image != nullptr) {
    (void)destroyObj(image, lock_fd);
    image = nullptr;
    lock_fd = -1;
  }
}

void make_full_store() {
  write_object("Full/", kCount, 'a', "");
  write_object("Full/Table/", 1, 'a', "Full/Parameter000");
  write_object("Full/Table/0/", kCount, 'a', "");
  write_object("Full/Table/7/", kCount, 'a', "");
  std::ofstream("/var/regex_file") << "config filter 'filter1'\n\toption value '^[a-z]{0,255}$'\n";
  request_values('a');
  for (int i = 0; i < kCount; ++i) {
    request.faults[i] = 0;
  }
  // Standard I/O has its buffers from now on.
  (void)zrcfg_isobjectexist(kUrl);
}

const std::vector<HeapCall> &heap_calls() {
  static const std::vector<HeapCall> calls(std::begin(kCalls), std::end(kCalls));
  return calls;
}

}  // namespace zrcfg_test
