// Target: the input is a URL or path, on further lines a parameter name and a value.
#include <string.h>

#include <string>

#include "core/object_path.h"
#include "enum/sub_objects.h"
#include "enum/url_split.h"
#include "fuzz/any_object.h"
#include "fuzz/check.h"
#include "fuzz/request.h"
#include "fuzz/result_lists.h"
#include "fuzz/small_store.h"
#include "fuzz/store_file.h"
#include "fuzz/target.h"
#include "lifecycle/dir_tree.h"
#include "lifecycle/entry_counter.h"
#include "lifecycle/instance_url.h"
#include "lock/object_lock.h"
#include "zrcfg.h"

namespace {

using zrcfg_fuzz::Buffer;
using zrcfg_fuzz::is_terminated;
using zrcfg_fuzz::require;

constexpr int kTry = 0;
constexpr size_t kFilePathSize = zrcfg::kFilePathSize;

// Takes the text up to the next line feed; what is behind a zero byte is not seen by anybody.
std::string take_line(std::string &text) {
  const size_t end = text.find('\n');
  const std::string line = text.substr(0, end);
  text = end == std::string::npos ? "" : text.substr(end + 1);
  return line.c_str();
}

// What only takes the text apart.
void split(const char *text) {
  zrcfg_fuzz::set_under_way("splitting");
  const Buffer url(ZRCFG_URL_SIZE);
  const Buffer name(ZRCFG_NAME_SIZE);
  if (get_obj_and_param_from_url(text, url, name) == 0) {
    require(std::string(url) + std::string(name) == text, "the parts are not the whole");
  }
  int index = 0;
  const Buffer table(ZRCFG_URL_SIZE);
  if (exportGetObjUrlAndIndex(text, table, &index) == 0) {
    require(index > 0 && is_terminated(table, ZRCFG_URL_SIZE), "no instance");
    require(strncmp(text, table, strlen(table)) == 0, "another table");
  }
  uint32_t numbers[9] = {};
  require(zrcfg_getobjidbyobjpath(text, numbers) <= 8, "more numbers than there are places");
  instanceStack stack = {};
  (void)xmlurl_transform(text, &stack);  // Any of its results will do.
  require(is_terminated(stack.objpathinxml, sizeof stack.objpathinxml), "a path has no end");
  require(stack.depth <= 9, "more numbers than components that count");
  WanConIndex wan = {};
  uint32_t user = 0;
  (void)zrcfg_getwanconindexfromxmlurl(text, &wan);
  (void)zrcfg_getusrindexfromxmlurl(text, &user);
  std::string copy = text;
  ChangeUrlWithDirFormat(copy.data());
  require(copy.find('.') == std::string::npos && copy.size() == strlen(text), "a dot is left");
  require(is_digit(text) == (strspn(text, "0123456789") == strlen(text) ? 1 : 0), "no digits");
}

// What looks a directory path up, and changes nothing.
void look_up(const std::string &dir) {
  zrcfg_fuzz::set_under_way("looking a path up");
  const Buffer file(kFilePathSize);
  if (dir.size() < ZRCFG_URL_SIZE) {
    (void)getPropertyFile(dir.c_str(), file);
    (void)getLockPath(dir.c_str(), file);
    (void)getLockFile(dir.c_str(), file);
  }
  (void)isDirExist(dir.c_str());
  (void)isDir(dir.c_str());
  (void)isLocked(dir.c_str());
  int fd = -1;
  if (getLock(dir.c_str(), &fd, kTry, ZRCFG_LOCK_SHARED) == 0) {
    require(releaseLock(fd) == 0, "a lock cannot be released");
  }
  ZrcfgObject *image = nullptr;
  int lock = -1;
  if (createObjByPath(&image, dir.c_str(), &lock, ZRCFG_LOCK_TEMPLATE, kTry) == ZRCFG_OK) {
    (void)destroyObj(image, lock);  // Always 0.
  }
  SubObjName *list = nullptr;
  (void)constructObjList(dir.c_str(), &list);
  zrcfg_fuzz::look_at_and_free(list);
}

void read_and_write(const char *url, const char *name, const char *value) {
  zrcfg_fuzz::set_under_way("values and attributes at any URL");
  const Buffer buffer(ZRCFG_VALUE_SIZE);
  uint8_t changed = 0;
  (void)zrcfg_getsingleparamval(url, name, buffer, kTry);
  (void)zrcfg_paramvalue_check(url, name, value, kTry);
  if (zrcfg_setsingleparamval_ext(url, name, value, kTry, &changed) == ZRCFG_OK && changed == 1) {
    // A value of 256 characters is ignored, and then `changed` is not written.
    const Buffer now(ZRCFG_VALUE_SIZE);
    require(zrcfg_getsingleparamval(url, name, now, kTry) == ZRCFG_OK, "a value is not read back");
    require(strcmp(now, value[0] == '\r' ? "" : value) == 0, "another value is read back");
  }
  ParamAttr attr = {};
  ObjAttr object = {};
  const std::string path = std::string(url) + name;
  (void)zrcfg_getsingleparamattr(url, name, &attr, kTry);
  (void)zrcfg_getsingleparamattr_ext(path.c_str(), &attr, kTry);
  (void)zrcfg_singleparamattr_set_ext(path.c_str(), 3, value, kTry);
  (void)zrcfg_setsingleparamattr_ext(url, name, 10, value, kTry);
  (void)zrcfg_getobjattr(url, &object, kTry);
  (void)zrcfg_exportsingleparamval(url, name, value, 0, &changed);
}

void list_at(const char *url) {
  zrcfg_fuzz::set_under_way("listings at any URL");
  ParamValueListNode *values = nullptr;
  ParamValueListNode *values_tail = nullptr;
  ParamAttrNode *attrs[2] = {};
  NODE_INFO *nodes = nullptr;
  SubObjName *names = nullptr;
  (void)zrcfg_getallparamval(url, &values, &values_tail, kTry);
  (void)zrcfg_getallparamattr(url, attrs, 0, kTry);
  (void)zrcfg_allnode_get(url, 1, &nodes, kTry);
  (void)zrcfg_getallsubobj(url, &names);
  zrcfg_fuzz::look_at_and_free(values);
  zrcfg_fuzz::look_at_and_free(attrs[0]);
  zrcfg_fuzz::look_at_and_free(nodes);
  zrcfg_fuzz::look_at_and_free(names);
}

// What makes and removes directories. Those that take any path stay inside the store: the text has
// no "..".
void change_tree(const std::string &text) {
  zrcfg_fuzz::set_under_way("instances at any URL");
  const char *const url = text.c_str();
  uint32_t number = 0;
  uint8_t flag = 0;
  (void)zrcfg_addobject(url, &number, kTry);
  (void)zrcfg_addobject_static(url, 2, 1, kTry);
  (void)zrcfg_exportaddobject(url, ZRCFG_NO_LOCK, 0, &flag);
  (void)zrcfg_exportdelobject(url, kTry, 0, &flag);
  (void)zrcfg_delobject(url, 1, kTry);
  (void)modifyParentNodeNumOfEntry(url, url, 0, kTry);
  if (text.find("..") == std::string::npos) {
    const std::string made = "Made/" + text;
    (void)createDir(made.c_str());
    (void)fileCopy("Top/property.conf", (made + "property.conf").c_str());
    (void)dirCopy("Made", "Copy");
    (void)dirDel("Made");
    (void)dirDel("Copy");
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  zrcfg_fuzz::require_private_store();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string text(reinterpret_cast<const char *>(data), size);
  const std::string url = take_line(text);
  const std::string name = take_line(text);
  const std::string value = take_line(text);
  zrcfg_fuzz::reset_small_store();
  const int descriptor = zrcfg_fuzz::lowest_free_descriptor();
  split(url.c_str());
  look_up(url);
  std::string dir = url;
  ChangeUrlWithDirFormat(dir.data());
  look_up(dir);
  read_and_write(url.c_str(), name.c_str(), value.c_str());
  list_at(url.c_str());
  change_tree(url);
  require(zrcfg_fuzz::lowest_free_descriptor() == descriptor, "a descriptor is left open");
  return 0;
}
