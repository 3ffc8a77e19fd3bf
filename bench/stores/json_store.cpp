// A JSON file for each object, read and written whole under flock.
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "bench/store.h"

namespace bench {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

std::string g_root;

std::string dir_of(const std::string &url) {
  return g_root + "/" + dir_path_of(url);
}

std::string file_of(const std::string &dir) {
  return dir + "object.json";
}

// An object's file, open and locked for as long as this lives.
class ObjectFile {
 public:
  ObjectFile(const std::string &dir, bool writing)
      : fd_(::open(file_of(dir).c_str(), (writing ? O_RDWR : O_RDONLY) | O_CLOEXEC)) {
    if (fd_ != -1 && flock(fd_, writing ? LOCK_EX : LOCK_SH) == 0) {
      read_all();
    }
  }
  ~ObjectFile() { ::close(fd_); }
  ObjectFile(const ObjectFile &) = delete;
  ObjectFile &operator=(const ObjectFile &) = delete;

  bool ok() const { return json.is_object(); }
  bool store() const {
    const std::string text = json.dump();
    return pwrite(fd_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
           ftruncate(fd_, static_cast<off_t>(text.size())) == 0;
  }

  ordered_json json;

 private:
  void read_all() {
    struct stat status;
    if (fstat(fd_, &status) != 0) {
      return;
    }
    std::string text(static_cast<size_t>(status.st_size), '\0');
    if (pread(fd_, text.data(), text.size(), 0) == status.st_size) {
      json = ordered_json::parse(text, nullptr, false);
    }
  }

  int fd_;
};

ordered_json to_json(const Object &object) {
  ordered_json parameters = ordered_json::object();
  for (const Parameter &parameter : object.parameters) {
    parameters[parameter.name] = {{"value", parameter.value}, {"rw", parameter.rw}};
  }
  return {{"rw", object.rw}, {"counter", object.counter}, {"parameters", parameters}};
}

bool create(const Tree &tree, const char *dir) {
  g_root = dir;
  for (const Object &object : tree) {
    fs::create_directories(dir_of(object.url));
    FILE *const file = fopen(file_of(dir_of(object.url)).c_str(), "we");
    if (file == nullptr) {
      return false;
    }
    fputs(to_json(object).dump().c_str(), file);
    fclose(file);
  }
  return true;
}

bool open_store() {
  return true;
}

void close_store() {}

// Copies a text out of the document.
bool copy_text(const ordered_json &parameters, const char *name, char *value) {
  const auto found = parameters.find(name);
  if (found == parameters.end()) {
    return false;
  }
  const std::string &text = found->at("value").get_ref<const std::string &>();
  memcpy(value, text.c_str(), text.size() + 1);
  return true;
}

bool read(const char *url, const char *name, char *value) {
  const ObjectFile file(dir_of(url), false);
  return file.ok() && copy_text(file.json["parameters"], name, value);
}

bool write(const char *url, const char *name, const char *value) {
  ObjectFile file(dir_of(url), true);
  if (!file.ok()) {
    return false;
  }
  ordered_json &stored = file.json["parameters"].at(name).at("value");
  if (stored == value) {
    return true;
  }
  stored = value;
  return file.store();
}

bool read_many(const char *url, ParamValueEntry *list) {
  const ObjectFile file(dir_of(url), false);
  bool good = file.ok();
  for (ParamValueEntry *node = list; good && node != nullptr; node = node->next) {
    good = copy_text(file.json["parameters"], node->name, node->value);
  }
  return good;
}

bool write_many(const char *url, ParamValueEntry *list) {
  ObjectFile file(dir_of(url), true);
  if (!file.ok()) {
    return false;
  }
  ordered_json &parameters = file.json["parameters"];
  for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
    parameters.at(node->name).at("value") = node->value;
  }
  return file.store();
}

bool list_values(const char *url, Visit visit, void *context) {
  const ObjectFile file(dir_of(url), false);
  if (!file.ok()) {
    return false;
  }
  for (const auto &[name, parameter] : file.json["parameters"].items()) {
    visit(context, (url + name).c_str(), 0,
          parameter["value"].get_ref<const std::string &>().c_str());
  }
  return true;
}

bool visit_object(const std::string &url, Visit visit, void *context) {
  const std::string dir = dir_of(url);
  {
    const ObjectFile file(dir, false);
    if (!file.ok()) {
      return false;
    }
    visit(context, url.c_str(), file.json["rw"].get<unsigned>(), nullptr);
    for (const auto &[name, parameter] : file.json["parameters"].items()) {
      visit(context, (url + name).c_str(), parameter["rw"].get<unsigned>(), nullptr);
    }
  }
  for (const fs::directory_entry &entry : fs::directory_iterator(dir)) {
    const std::string name = entry.path().filename();
    if (entry.is_directory() && name != "0" && !visit_object(url + name + ".", visit, context)) {
      return false;
    }
  }
  return true;
}

bool enumerate(const char *url, Visit visit, void *context) {
  return visit_object(url, visit, context);
}

bool count(const std::string &table, int step) {
  std::string counter;
  {
    const ObjectFile file(dir_of(table), false);
    if (!file.ok()) {
      return false;
    }
    counter = file.json["counter"].get<std::string>();
  }
  ObjectFile parent(dir_of(table.substr(0, table.rfind('.', table.size() - 2) + 1)), true);
  if (!parent.ok()) {
    return false;
  }
  ordered_json &value = parent.json["parameters"].at(counter).at("value");
  value = std::to_string(std::stoi(value.get<std::string>()) + step);
  return parent.store();
}

bool add(const char *table, uint32_t *index) {
  const std::string dir = dir_of(table);
  {
    const ObjectFile locked(dir, true);
    uint32_t number = 1;
    while (fs::exists(dir + std::to_string(number))) {
      ++number;
    }
    std::error_code error;
    fs::copy(dir + "0", dir + std::to_string(number), fs::copy_options::recursive, error);
    if (error) {
      return false;
    }
    *index = number;
  }
  return count(table, 1);
}

bool remove(const char *table, uint32_t index) {
  const std::string dir = dir_of(table);
  {
    const ObjectFile locked(dir, true);
    std::error_code error;
    fs::remove_all(dir + std::to_string(index), error);
    if (error) {
      return false;
    }
  }
  return count(table, -1);
}

}  // namespace

const Store kJsonStore = {"json-files", create,     open_store,  close_store, read, write,
                          read_many,    write_many, list_values, enumerate,   add,  remove};

}  // namespace bench
