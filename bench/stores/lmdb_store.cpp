// LMDB: one environment, read transactions renewed, no sync of its own (the library has none).
#include <lmdb.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <vector>

#include "bench/store.h"

namespace bench {
namespace {

constexpr size_t kMapSize = 64u << 20;
constexpr char kMark = '\x01';  // Between an object's URL and a parameter's name in a key.

// Keys are sorted: an object, its parameters, the objects below it. A record is a byte for the
// access right, then a text: the value, or the counter of a table.
std::string g_dir;
MDB_env *g_env = nullptr;
MDB_dbi g_dbi = 0;
MDB_txn *g_reader = nullptr;

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
  MDB_val val() { return {length, text}; }
};

MDB_val val_of(const std::string &text) {
  return {text.size(), const_cast<char *>(text.data())};
}

std::string text_of(const MDB_val &val) {
  return {static_cast<const char *>(val.mv_data), val.mv_size};
}

bool put(MDB_txn *txn, const std::string &key, const std::string &record) {
  MDB_val key_val = val_of(key);
  MDB_val data = val_of(record);
  return mdb_put(txn, g_dbi, &key_val, &data, 0) == 0;
}

bool open_env() {
  return mdb_env_create(&g_env) == 0 && mdb_env_set_mapsize(g_env, kMapSize) == 0 &&
         mdb_env_open(g_env, g_dir.c_str(), MDB_NOSYNC, 0644) == 0;
}

// Runs `work` in a write transaction.
template <typename Work>
bool in_transaction(Work work) {
  MDB_txn *txn = nullptr;
  if (mdb_txn_begin(g_env, nullptr, 0, &txn) != 0) {
    return false;
  }
  if (!work(txn)) {
    mdb_txn_abort(txn);
    return false;
  }
  return mdb_txn_commit(txn) == 0;
}

bool open_store() {
  return open_env() &&
         in_transaction([](MDB_txn *txn) { return mdb_dbi_open(txn, nullptr, 0, &g_dbi) == 0; }) &&
         mdb_txn_begin(g_env, nullptr, MDB_RDONLY, &g_reader) == 0 &&
         (mdb_txn_reset(g_reader), true);
}

void close_store() {
  mdb_txn_abort(g_reader);
  mdb_env_close(g_env);
}

std::string record_of(unsigned rw, const std::string &text) {
  return static_cast<char>('0' + rw) + text;
}

bool create(const Tree &tree, const char *dir) {
  g_dir = dir;
  const bool good = open_store() && in_transaction([&](MDB_txn *txn) {
                      for (const Object &object : tree) {
                        if (!put(txn, object.url, record_of(object.rw, object.counter))) {
                          return false;
                        }
                        for (const Parameter &parameter : object.parameters) {
                          if (!put(txn, object.url + kMark + parameter.name,
                                   record_of(parameter.rw, parameter.value))) {
                            return false;
                          }
                        }
                      }
                      return true;
                    });
  close_store();
  return good;
}

template <typename Work>
bool reading(Work work) {
  if (mdb_txn_renew(g_reader) != 0) {
    return false;
  }
  const bool good = work(g_reader);
  mdb_txn_reset(g_reader);
  return good;
}

bool get_value(MDB_txn *txn, const char *url, const char *name, char *value) {
  Key key(url, name);
  MDB_val key_val = key.val();
  MDB_val data;
  if (mdb_get(txn, g_dbi, &key_val, &data) != 0) {
    return false;
  }
  memcpy(value, static_cast<const char *>(data.mv_data) + 1, data.mv_size - 1);
  value[data.mv_size - 1] = '\0';
  return true;
}

// Replaces a value; an equal one is left alone, and `changed` as it is.
bool put_value(MDB_txn *txn, const char *url, const char *name, const char *value, bool &changed) {
  Key key(url, name);
  MDB_val key_val = key.val();
  MDB_val old;
  if (mdb_get(txn, g_dbi, &key_val, &old) != 0) {
    return false;
  }
  const size_t length = strlen(value);
  if (old.mv_size == length + 1 &&
      memcmp(static_cast<const char *>(old.mv_data) + 1, value, length) == 0) {
    return true;
  }
  char record[ZRCFG_VALUE_SIZE + 1];
  record[0] = *static_cast<const char *>(old.mv_data);
  memcpy(record + 1, value, length);
  MDB_val data = {length + 1, record};
  changed = true;
  return mdb_put(txn, g_dbi, &key_val, &data, 0) == 0;
}

bool read(const char *url, const char *name, char *value) {
  return reading([&](MDB_txn *txn) { return get_value(txn, url, name, value); });
}

bool write(const char *url, const char *name, const char *value) {
  return in_transaction([&](MDB_txn *txn) {
    bool changed = false;
    return put_value(txn, url, name, value, changed);
  });
}

bool read_many(const char *url, ParamValueEntry *list) {
  return reading([&](MDB_txn *txn) {
    for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
      if (!get_value(txn, url, node->name, node->value)) {
        return false;
      }
    }
    return true;
  });
}

bool write_many(const char *url, ParamValueEntry *list) {
  return in_transaction([&](MDB_txn *txn) {
    bool changed = false;
    for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
      if (!put_value(txn, url, node->name, node->value, changed)) {
        return false;
      }
    }
    return true;
  });
}

// Calls `visit` for each record whose key begins with `prefix`.
template <typename VisitRecord>
bool for_each_below(MDB_txn *txn, const std::string &prefix, VisitRecord visit) {
  MDB_cursor *cursor = nullptr;
  if (mdb_cursor_open(txn, g_dbi, &cursor) != 0) {
    return false;
  }
  MDB_val key = val_of(prefix);
  MDB_val data;
  int result = mdb_cursor_get(cursor, &key, &data, MDB_SET_RANGE);
  while (result == 0 && key.mv_size >= prefix.size() &&
         memcmp(key.mv_data, prefix.data(), prefix.size()) == 0) {
    visit(key, data);
    result = mdb_cursor_get(cursor, &key, &data, MDB_NEXT);
  }
  mdb_cursor_close(cursor);
  return result == 0 || result == MDB_NOTFOUND;
}

bool list_values(const char *url, Visit visit, void *context) {
  const std::string prefix = std::string(url) + kMark;
  return reading([&](MDB_txn *txn) {
    return for_each_below(txn, prefix, [&](const MDB_val &key, const MDB_val &data) {
      const std::string name = url + text_of(key).substr(prefix.size());
      visit(context, name.c_str(), 0, text_of(data).c_str() + 1);
    });
  });
}

bool enumerate(const char *url, Visit visit, void *context) {
  char name[ZRCFG_URL_SIZE * 2];
  return reading([&](MDB_txn *txn) {
    return for_each_below(txn, url, [&](const MDB_val &key, const MDB_val &data) {
      const char *const from = static_cast<const char *>(key.mv_data);
      if (memmem(from, key.mv_size, ".0.", 3) != nullptr) {
        return;  // A template.
      }
      const char *const mark = static_cast<const char *>(memchr(from, kMark, key.mv_size));
      const size_t head = mark != nullptr ? static_cast<size_t>(mark - from) : key.mv_size;
      const size_t tail = mark != nullptr ? key.mv_size - head - 1 : 0;
      memcpy(name, from, head);
      memcpy(name + head, from + head + 1, tail);
      name[head + tail] = '\0';
      visit(context, name, static_cast<unsigned>(*static_cast<const char *>(data.mv_data) - '0'),
            nullptr);
    });
  });
}

bool count(MDB_txn *txn, const std::string &table, int step) {
  MDB_val key = val_of(table);
  MDB_val data;
  if (mdb_get(txn, g_dbi, &key, &data) != 0) {
    return false;
  }
  const std::string counter = text_of(data).substr(1);
  const std::string parent = table.substr(0, table.rfind('.', table.size() - 2) + 1);
  char value[ZRCFG_VALUE_SIZE];
  bool changed = false;
  return get_value(txn, parent.c_str(), counter.c_str(), value) &&
         put_value(txn, parent.c_str(), counter.c_str(), std::to_string(atoi(value) + step).c_str(),
                   changed);
}

bool exists(MDB_txn *txn, const std::string &url) {
  MDB_val key = val_of(url);
  MDB_val data;
  return mdb_get(txn, g_dbi, &key, &data) == 0;
}

// All records of an object and what is below it, keys without the object's own URL.
using Records = std::vector<std::pair<std::string, std::string>>;

bool collect(MDB_txn *txn, const std::string &url, Records &records) {
  return for_each_below(txn, url, [&](const MDB_val &key, const MDB_val &data) {
    records.emplace_back(text_of(key).substr(url.size()), text_of(data));
  });
}

bool add(const char *table, uint32_t *index) {
  return in_transaction([&](MDB_txn *txn) {
    uint32_t number = 1;
    while (exists(txn, table + std::to_string(number) + ".")) {
      ++number;
    }
    *index = number;
    Records records;
    if (!collect(txn, std::string(table) + "0.", records)) {
      return false;
    }
    const std::string to = table + std::to_string(number) + ".";
    for (const auto &[key, record] : records) {
      if (!put(txn, to + key, record)) {
        return false;
      }
    }
    return count(txn, table, 1);
  });
}

bool remove(const char *table, uint32_t index) {
  const std::string url = table + std::to_string(index) + ".";
  return in_transaction([&](MDB_txn *txn) {
    Records records;
    if (!collect(txn, url, records)) {
      return false;
    }
    for (const auto &record : records) {
      const std::string text = url + record.first;
      MDB_val key = val_of(text);
      if (mdb_del(txn, g_dbi, &key, nullptr) != 0) {
        return false;
      }
    }
    return count(txn, table, -1);
  });
}

}  // namespace

const Store kLmdbStore = {"lmdb",    create,     open_store,  close_store, read, write,
                          read_many, write_many, list_values, enumerate,   add,  remove};

}  // namespace bench
