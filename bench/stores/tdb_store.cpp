// TDB: single calls under its own chain locks, several changes in a transaction without sync.
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

extern "C" {
#include <signal.h>
#include <stdbool.h>
#include <sys/types.h>
#include <tdb.h>
}

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "bench/store.h"

namespace bench {
namespace {

constexpr int kHashSize = 4999;  // About one chain a record.
constexpr char kMark = '\x01';   // Between an object's URL and a parameter's name in a key.

// A parameter's record is a byte for the access right, then the value. An object's is the access
// right, then lines: the counter, the names of its parameters behind "=", those of its sub-objects
// behind ".".
std::string g_path;
tdb_context *g_tdb = nullptr;

// A key on the stack.
struct Key {
  char text[ZRCFG_URL_SIZE * 2];
  size_t length;

  Key(const char *url, const char *name) {
    const size_t url_length = strlen(url);
    const size_t name_length = strlen(name);
    memcpy(text, url, url_length);
    text[url_length] = kMark;
    memcpy(text + url_length + 1, name, name_length);
    length = url_length + 1 + name_length;
  }
  TDB_DATA data() { return {reinterpret_cast<unsigned char *>(text), length}; }
};

TDB_DATA data_of(const std::string &text) {
  return {reinterpret_cast<unsigned char *>(const_cast<char *>(text.data())), text.size()};
}

bool put(const std::string &key, const std::string &record) {
  return tdb_store(g_tdb, data_of(key), data_of(record), TDB_REPLACE) == 0;
}

// Runs `take` on a record where it lies, without a copy.
template <typename Take>
bool get(TDB_DATA key, Take take) {
  return tdb_parse_record(
             g_tdb, key,
             [](TDB_DATA, TDB_DATA data, void *context) {
               (*static_cast<Take *>(context))(reinterpret_cast<const char *>(data.dptr),
                                               data.dsize);
               return 0;
             },
             &take) == 0;
}

bool open_store() {
  g_tdb = tdb_open(g_path.c_str(), kHashSize, TDB_NOSYNC, O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  return g_tdb != nullptr;
}

void close_store() {
  tdb_close(g_tdb);
}

template <typename Work>
bool in_transaction(Work work) {
  if (tdb_transaction_start(g_tdb) != 0) {
    return false;
  }
  if (!work()) {
    tdb_transaction_cancel(g_tdb);
    return false;
  }
  return tdb_transaction_commit(g_tdb) == 0;
}

std::string parent_of(const std::string &url) {
  return url.substr(0, url.rfind('.', url.size() - 2) + 1);
}

// An object's record, taken apart.
struct ObjectRecord {
  char rw = '0';
  std::string counter;
  std::vector<std::string> parameters;
  std::vector<std::string> children;

  std::string text() const {
    std::string text = rw + counter + "\n";
    for (const std::string &name : parameters) {
      text += "=" + name + "\n";
    }
    for (const std::string &name : children) {
      text += "." + name + "\n";
    }
    return text;
  }
};

bool get_object(const std::string &url, ObjectRecord &object) {
  return get(data_of(url), [&](const char *text, size_t size) {
    const char *const end = text + size;
    object.rw = *text++;
    for (bool first = true; text < end; first = false) {
      const char *const feed =
          static_cast<const char *>(memchr(text, '\n', static_cast<size_t>(end - text)));
      if (first) {
        object.counter.assign(text, feed);
      } else {
        (*text == '=' ? object.parameters : object.children).emplace_back(text + 1, feed);
      }
      text = feed + 1;
    }
  });
}

bool create(const Tree &tree, const char *dir) {
  g_path = std::string(dir) + "/store.tdb";
  std::map<std::string, ObjectRecord> objects;
  for (const Object &object : tree) {
    ObjectRecord &record = objects[object.url];
    record.rw = static_cast<char>('0' + object.rw);
    record.counter = object.counter;
    for (const Parameter &parameter : object.parameters) {
      record.parameters.push_back(parameter.name);
    }
    const std::string parent = parent_of(object.url);
    if (!parent.empty()) {
      objects[parent].children.push_back(
          object.url.substr(parent.size(), object.url.size() - parent.size() - 1));
    }
  }
  const bool good = open_store() && in_transaction([&] {
                      for (const Object &object : tree) {
                        for (const Parameter &parameter : object.parameters) {
                          if (!put(object.url + kMark + parameter.name,
                                   static_cast<char>('0' + parameter.rw) + parameter.value)) {
                            return false;
                          }
                        }
                        if (!put(object.url, objects[object.url].text())) {
                          return false;
                        }
                      }
                      return true;
                    });
  close_store();
  return good;
}

bool read(const char *url, const char *name, char *value) {
  Key key(url, name);
  return get(key.data(), [&](const char *text, size_t size) {
    memcpy(value, text + 1, size - 1);
    value[size - 1] = '\0';
  });
}

// Replaces a value; an equal one is left alone. The caller keeps others out.
bool replace(const char *url, const char *name, const char *value) {
  Key key(url, name);
  const size_t length = strlen(value);
  char record[ZRCFG_VALUE_SIZE + 1];
  bool same = false;
  if (!get(key.data(), [&](const char *text, size_t size) {
        record[0] = *text;
        same = size == length + 1 && memcmp(text + 1, value, length) == 0;
      })) {
    return false;
  }
  memcpy(record + 1, value, length);
  return same ||
         tdb_store(g_tdb, key.data(), {reinterpret_cast<unsigned char *>(record), length + 1},
                   TDB_MODIFY) == 0;
}

bool write(const char *url, const char *name, const char *value) {
  Key key(url, name);
  if (tdb_chainlock(g_tdb, key.data()) != 0) {
    return false;
  }
  const bool good = replace(url, name, value);
  return tdb_chainunlock(g_tdb, key.data()) == 0 && good;
}

bool read_many(const char *url, ParamValueEntry *list) {
  if (tdb_lockall_read(g_tdb) != 0) {
    return false;
  }
  bool good = true;
  for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
    good = read(url, node->name, node->value) && good;
  }
  return tdb_unlockall_read(g_tdb) == 0 && good;
}

bool write_many(const char *url, ParamValueEntry *list) {
  return in_transaction([&] {
    for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
      if (!replace(url, node->name, node->value)) {
        return false;
      }
    }
    return true;
  });
}

bool list_values(const char *url, Visit visit, void *context) {
  if (tdb_lockall_read(g_tdb) != 0) {
    return false;
  }
  ObjectRecord object;
  bool good = get_object(url, object);
  char value[ZRCFG_VALUE_SIZE];
  for (const std::string &name : object.parameters) {
    good = read(url, name.c_str(), value) && good;
    visit(context, (url + name).c_str(), 0, value);
  }
  return tdb_unlockall_read(g_tdb) == 0 && good;
}

struct Enumeration {
  Visit visit;
  void *context;
};

int visit_record(tdb_context *, TDB_DATA key, TDB_DATA data, void *context) {
  const char *const from = reinterpret_cast<const char *>(key.dptr);
  if (memmem(from, key.dsize, ".0.", 3) != nullptr) {
    return 0;  // A template.
  }
  char name[ZRCFG_URL_SIZE * 2];
  size_t length = 0;
  for (size_t i = 0; i < key.dsize; ++i) {
    if (from[i] != kMark) {
      name[length++] = from[i];
    }
  }
  name[length] = '\0';
  const Enumeration &enumeration = *static_cast<Enumeration *>(context);
  enumeration.visit(enumeration.context, name, static_cast<unsigned>(*data.dptr - '0'), nullptr);
  return 0;
}

// The whole tree is all that is asked for.
bool enumerate(const char *, Visit visit, void *context) {
  Enumeration enumeration = {visit, context};
  return tdb_traverse_read(g_tdb, visit_record, &enumeration) >= 0;
}

bool count(const std::string &table, const std::string &counter, int step) {
  const std::string parent = parent_of(table);
  char value[ZRCFG_VALUE_SIZE];
  return read(parent.c_str(), counter.c_str(), value) &&
         replace(parent.c_str(), counter.c_str(), std::to_string(atoi(value) + step).c_str());
}

bool copy(const std::string &from, const std::string &to) {
  ObjectRecord object;
  if (!get_object(from, object) || !put(to, object.text())) {
    return false;
  }
  for (const std::string &name : object.parameters) {
    std::string record;
    if (!get(data_of(from + kMark + name),
             [&](const char *text, size_t size) { record.assign(text, size); }) ||
        !put(to + kMark + name, record)) {
      return false;
    }
  }
  for (const std::string &name : object.children) {
    if (!copy(from + name + ".", to + name + ".")) {
      return false;
    }
  }
  return true;
}

bool erase(const std::string &url) {
  ObjectRecord object;
  bool good = get_object(url, object);
  for (const std::string &name : object.children) {
    good = erase(url + name + ".") && good;
  }
  for (const std::string &name : object.parameters) {
    good = tdb_delete(g_tdb, data_of(url + kMark + name)) == 0 && good;
  }
  return tdb_delete(g_tdb, data_of(url)) == 0 && good;
}

bool add(const char *table, uint32_t *index) {
  return in_transaction([&] {
    ObjectRecord object;
    if (!get_object(table, object)) {
      return false;
    }
    uint32_t number = 1;
    while (tdb_exists(g_tdb, data_of(table + std::to_string(number) + "."))) {
      ++number;
    }
    *index = number;
    object.children.push_back(std::to_string(number));
    return put(table, object.text()) &&
           copy(std::string(table) + "0.", table + object.children.back() + ".") &&
           count(table, object.counter, 1);
  });
}

bool remove(const char *table, uint32_t index) {
  return in_transaction([&] {
    ObjectRecord object;
    if (!get_object(table, object)) {
      return false;
    }
    const std::string number = std::to_string(index);
    object.children.erase(std::remove(object.children.begin(), object.children.end(), number),
                          object.children.end());
    return put(table, object.text()) && erase(table + number + ".") &&
           count(table, object.counter, -1);
  });
}

}  // namespace

const Store kTdbStore = {"tdb",     create,     open_store,  close_store, read, write,
                         read_many, write_many, list_values, enumerate,   add,  remove};

}  // namespace bench
