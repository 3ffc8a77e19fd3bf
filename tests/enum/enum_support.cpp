// What the tests of the enumeration share: lists taken into containers, the log, a sealed store.
#include "tests/enum/enum_support.h"

#include <string.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

NODE_INFO mark;  // What an output holds that a call is not to write.
SubObjName name_mark;

const char *const kBeginnings[] = {
    "Input parameters can't be NULL",
    "objUrl",
    "pObjUrl ",
    "obj_path=",
    "path=",
    "input param is null",
    "tempLen=0",
    "error,find no dot",
    "getReadLock fail",
    "getObjList() fail",
    "unable to get ",
    "objInfo is NULL",
    "malloc NODE_INFO fail",
    "objIsHid() ",
    "ptr is NULL",
    "createObjByPath() fail",
    "getParamValueList() fail",
};

NodeList taken(uint32_t result, NODE_INFO *head, const NODE_INFO *tail) {
  NodeList list = {result, head != &mark, {}, false};
  if (!list.written) {
    EXPECT_EQ(tail, &mark) << "only the tail was written";
    return list;
  }
  list.tail_is_last = tail == last_of(head);
  list.nodes = take_nodes(head);
  return list;
}

}  // namespace

std::vector<std::string> take_names(SubObjName *head) {
  std::vector<std::string> names;
  while (head != nullptr) {
    EXPECT_LT(strnlen(head->name, sizeof head->name), sizeof head->name) << "no terminator";
    names.emplace_back(head->name, strnlen(head->name, sizeof head->name));
    SubObjName *const next = head->next;
    free(head);
    head = next;
  }
  return names;
}

std::vector<Node> take_nodes(NODE_INFO *head) {
  std::vector<Node> nodes;
  for (const NODE_INFO *node = head; node != nullptr; node = node->next) {
    EXPECT_LT(strnlen(node->name, sizeof node->name), sizeof node->name) << "no terminator";
    nodes.emplace_back(std::string(node->name, strnlen(node->name, sizeof node->name)), node->rw);
  }
  EXPECT_EQ(zrcfg_allnode_free(head), 0u);
  return nodes;
}

const NODE_INFO *last_of(const NODE_INFO *head) {
  while (head != nullptr && head->next != nullptr) {
    head = head->next;
  }
  return head;
}

std::vector<std::string> names_of(const std::vector<Node> &nodes) {
  std::vector<std::string> names;
  for (const Node &node : nodes) {
    names.push_back(node.first);
  }
  return names;
}

PropertyFile object_file(uint8_t rw, const std::vector<Param> &params) {
  PropertyFile file;
  file.header.rw = rw;
  for (const Param &param : params) {
    ParamFields &fields = file.add(param.name, "value of " + param.name);
    fields.rw = param.rw;
    fields.hide = param.hide;
    fields.device_type = param.device_type;
  }
  return file;
}

PropertyFile hidden_file() {
  PropertyFile file = object_file(1, {{"Hidden"}});
  file.header.hide = 1;
  return file;
}

std::vector<std::string> enum_log() {
  std::vector<std::string> lines;
  for (const std::string &line : log_texts()) {
    if (std::any_of(std::begin(kBeginnings), std::end(kBeginnings), [&](const char *beginning) {
          return line.compare(0, strlen(beginning), beginning) == 0;
        })) {
      lines.push_back(line);
    }
  }
  return lines;
}

std::map<std::string, std::string> store_state() {
  std::map<std::string, std::string> state;
  const auto options = fs::directory_options::skip_permission_denied;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator("/var", options)) {
    struct stat status = {};
    EXPECT_EQ(lstat(entry.path().c_str(), &status), 0) << entry.path();
    std::string text = std::to_string(status.st_mode) + " " +
                       std::to_string(status.st_mtim.tv_sec) + "." +
                       std::to_string(status.st_mtim.tv_nsec) + " ";
    if (S_ISREG(status.st_mode) && (status.st_mode & S_IROTH) != 0) {
      text += read_store_file(entry.path().string().substr(sizeof "/var/" - 1));
    }
    state[entry.path().string()] = text;
  }
  return state;
}

std::string deep_url(size_t length) {
  std::string url;
  while (url.size() + 3 < length) {
    url += "n.";
  }
  return url + std::string(length - url.size() - 1, 'n') + ".";
}

std::string dir_of(const std::string &url) {
  std::string dir = url;
  std::replace(dir.begin(), dir.end(), '.', '/');
  return dir;
}

NameList list_names(const std::string &url) {
  SubObjName *head = &name_mark;
  const uint32_t result = zrcfg_getallsubobj(url.c_str(), &head);
  if (head == &name_mark) {
    return {result, false, {}};
  }
  return {result, true, take_names(head)};
}

NodeList list_children(const std::string &url, int timeout) {
  NODE_INFO *head = &mark;
  NODE_INFO *tail = &mark;
  const int result = zrcfg_getsubobjinfo(url.c_str(), &head, &tail, timeout);
  return taken(static_cast<uint32_t>(result), head, tail);
}

NodeList list_object(const std::string &url, int timeout) {
  NODE_INFO *head = &mark;
  NODE_INFO *tail = &mark;
  const uint32_t result = zrcfg_getallnodeinfo(url.c_str(), &head, &tail, timeout);
  return taken(result, head, tail);
}

NodeList list_all(const std::string &url, int recursive, int timeout) {
  NODE_INFO *head = &mark;
  const int result = zrcfg_allnode_get(url.c_str(), recursive, &head, timeout);
  NodeList list = {static_cast<uint32_t>(result), head != &mark, {}, true};
  if (list.written) {
    list.nodes = take_nodes(head);
  }
  return list;
}

void EnumTest::SetUp() {
  StoreTest::SetUp();
  sealed_ = false;
}

void EnumTest::TearDown() {
  for (const LogLine &line : log_lines()) {
    EXPECT_EQ(line.module, "ZRCFG") << line.text;
    EXPECT_EQ(line.level, 7) << line.text;
  }
  if (sealed_) {
    EXPECT_EQ(store_state(), state_) << "the store was changed";
  }
  StoreTest::TearDown();
}

void EnumTest::seal() {
  state_ = store_state();
  sealed_ = true;
  clear_log();
}

}  // namespace zrcfg_test
