// SQLite with prepared statements, synchronous=NORMAL, in WAL mode or with a rollback journal.
#include <sqlite3.h>
#include <stdio.h>
#include <string.h>

#include <string>

#include "bench/store.h"

namespace bench {
namespace {

enum Statement {
  kBegin,
  kCommit,
  kRollback,
  kRead,
  kWrite,
  kListValues,
  kEnumerate,
  kNextIndex,
  kTemplate,
  kCopyObjects,
  kCopyParameters,
  kCount,
  kRemoveObjects,
  kRemoveParameters,
  kStatements
};

// Objects and parameters are keyed by their URL, so that an object with all below it is a range:
// from the URL to the URL with its final dot replaced by the next character, "/".
constexpr const char *kText[kStatements] = {
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
    "SELECT value FROM parameter WHERE url = ?1 AND name = ?2",
    "UPDATE parameter SET value = ?3 WHERE url = ?1 AND name = ?2",
    "SELECT name, value FROM parameter WHERE url = ?1",
    "SELECT o.url, o.rw, p.name, p.rw FROM object o LEFT JOIN parameter p ON p.url = o.url "
    "WHERE o.url >= ?1 AND o.url < ?2 AND NOT o.in_template ORDER BY o.url",
    // The lowest number that is free among the table's instances.
    "SELECT min(i.n + 1) FROM (SELECT 0 AS n UNION SELECT number FROM object WHERE parent = ?1) i "
    "WHERE NOT EXISTS (SELECT 1 FROM object WHERE parent = ?1 AND number = i.n + 1)",
    "SELECT counter FROM object WHERE url = ?1",
    "INSERT INTO object SELECT ?3 || substr(url, length(?1) + 1), rw, 0, counter, "
    "CASE WHEN url = ?1 THEN ?4 END, CASE WHEN url = ?1 THEN ?5 END "
    "FROM object WHERE url >= ?1 AND url < ?2",
    "INSERT INTO parameter SELECT ?3 || substr(url, length(?1) + 1), name, value, rw "
    "FROM parameter WHERE url >= ?1 AND url < ?2",
    "UPDATE parameter SET value = value + ?3 WHERE url = ?1 AND name = ?2",
    "DELETE FROM object WHERE url >= ?1 AND url < ?2",
    "DELETE FROM parameter WHERE url >= ?1 AND url < ?2",
};

constexpr char kSchema[] =
    "CREATE TABLE object(url TEXT PRIMARY KEY, rw INT, in_template INT, counter TEXT,"
    " parent TEXT, number INT) WITHOUT ROWID;"
    "CREATE INDEX instance ON object(parent, number) WHERE parent IS NOT NULL;"
    "CREATE TABLE parameter(url TEXT, name TEXT, value TEXT, rw INT, PRIMARY KEY(url, name))"
    " WITHOUT ROWID;";

struct Database {
  std::string path;
  const char *journal;
  sqlite3 *handle = nullptr;
  sqlite3_stmt *statements[kStatements] = {};
};

Database g_wal = {"", "WAL", nullptr, {}};
Database g_rollback = {"", "DELETE", nullptr, {}};

// A statement in use; reset when it is done with.
class Query {
 public:
  Query(Database &database, Statement statement) : stmt_(database.statements[statement]) {}
  ~Query() { sqlite3_reset(stmt_); }
  Query(const Query &) = delete;
  Query &operator=(const Query &) = delete;

  Query &text(int i, const char *value, int length = -1) {
    sqlite3_bind_text(stmt_, i, value, length, SQLITE_STATIC);
    return *this;
  }
  Query &number(int i, int value) {
    sqlite3_bind_int(stmt_, i, value);
    return *this;
  }
  bool row() { return sqlite3_step(stmt_) == SQLITE_ROW; }
  bool run() { return sqlite3_step(stmt_) == SQLITE_DONE; }
  int integer(int i) { return sqlite3_column_int(stmt_, i); }
  const char *column(int i) {
    return reinterpret_cast<const char *>(sqlite3_column_text(stmt_, i));
  }
  size_t size(int i) { return static_cast<size_t>(sqlite3_column_bytes(stmt_, i)); }

 private:
  sqlite3_stmt *stmt_;
};

bool execute(Database &database, const std::string &text) {
  return sqlite3_exec(database.handle, text.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool open_database(Database &database) {
  if (sqlite3_open(database.path.c_str(), &database.handle) != SQLITE_OK) {
    return false;
  }
  sqlite3_busy_timeout(database.handle, 60000);
  return execute(database, std::string("PRAGMA journal_mode=") + database.journal +
                               "; PRAGMA synchronous=NORMAL;");
}

bool open_prepared(Database &database) {
  bool good = open_database(database);
  for (int i = 0; good && i < kStatements; ++i) {
    good = sqlite3_prepare_v3(database.handle, kText[i], -1, SQLITE_PREPARE_PERSISTENT,
                              &database.statements[i], nullptr) == SQLITE_OK;
  }
  return good;
}

void close_database(Database &database) {
  for (sqlite3_stmt *&statement : database.statements) {
    sqlite3_finalize(statement);
    statement = nullptr;
  }
  sqlite3_close(database.handle);
  database.handle = nullptr;
}

// The parent's URL and the number, of an object that is a table's instance.
bool split_instance(const std::string &url, std::string &parent, int &number) {
  const size_t dot = url.rfind('.', url.size() - 2);
  if (dot == std::string::npos || url[dot + 1] < '0' || url[dot + 1] > '9') {
    return false;
  }
  parent = url.substr(0, dot + 1);
  number = std::stoi(url.substr(dot + 1));
  return true;
}

bool insert_object(sqlite3_stmt *statement, const Object &object) {
  std::string parent;
  int number = 0;
  const bool instance = split_instance(object.url, parent, number);
  sqlite3_bind_text(statement, 1, object.url.c_str(), -1, SQLITE_STATIC);
  sqlite3_bind_int(statement, 2, object.rw);
  sqlite3_bind_int(statement, 3, object.in_template);
  sqlite3_bind_text(statement, 4, object.counter.c_str(), -1, SQLITE_STATIC);
  sqlite3_bind_text(statement, 5, instance ? parent.c_str() : nullptr, -1, SQLITE_STATIC);
  sqlite3_bind_int(statement, 6, number);
  const bool good = sqlite3_step(statement) == SQLITE_DONE;
  sqlite3_reset(statement);
  return good;
}

bool insert_parameter(sqlite3_stmt *statement, const Object &object, const Parameter &parameter) {
  sqlite3_bind_text(statement, 1, object.url.c_str(), -1, SQLITE_STATIC);
  sqlite3_bind_text(statement, 2, parameter.name.c_str(), -1, SQLITE_STATIC);
  sqlite3_bind_text(statement, 3, parameter.value.c_str(), -1, SQLITE_STATIC);
  sqlite3_bind_int(statement, 4, parameter.rw);
  const bool good = sqlite3_step(statement) == SQLITE_DONE;
  sqlite3_reset(statement);
  return good;
}

bool create(Database &database, const Tree &tree, const char *dir) {
  database.path = std::string(dir) + "/store.sqlite";
  if (!open_database(database) || !execute(database, kSchema) || !execute(database, "BEGIN")) {
    return false;
  }
  sqlite3_stmt *objects = nullptr;
  sqlite3_stmt *parameters = nullptr;
  sqlite3_prepare_v2(database.handle, "INSERT INTO object VALUES(?1,?2,?3,?4,?5,?6)", -1, &objects,
                     nullptr);
  sqlite3_prepare_v2(database.handle, "INSERT INTO parameter VALUES(?1,?2,?3,?4)", -1, &parameters,
                     nullptr);
  bool good = objects != nullptr && parameters != nullptr;
  for (const Object &object : tree) {
    good = good && insert_object(objects, object);
    for (const Parameter &parameter : object.parameters) {
      good = good && insert_parameter(parameters, object, parameter);
    }
  }
  sqlite3_finalize(objects);
  sqlite3_finalize(parameters);
  good = good && execute(database, "COMMIT; ANALYZE;");
  close_database(database);
  return good;
}

// Runs `work` in a transaction of its own.
template <typename Work>
bool in_transaction(Database &database, Work work) {
  if (!Query(database, kBegin).run()) {
    return false;
  }
  const bool good = work();
  return Query(database, good ? kCommit : kRollback).run() && good;
}

bool read(Database &database, const char *url, const char *name, char *value) {
  Query query(database, kRead);
  if (!query.text(1, url).text(2, name).row()) {
    return false;
  }
  memcpy(value, query.column(0), query.size(0) + 1);
  return true;
}

bool write(Database &database, const char *url, const char *name, const char *value) {
  return Query(database, kWrite).text(1, url).text(2, name).text(3, value).run();
}

bool read_many(Database &database, const char *url, ParamValueEntry *list) {
  bool good = execute(database, "BEGIN");
  for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
    good = read(database, url, node->name, node->value) && good;
  }
  return Query(database, kCommit).run() && good;
}

bool write_many(Database &database, const char *url, ParamValueEntry *list) {
  return in_transaction(database, [&] {
    bool good = true;
    for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
      good = write(database, url, node->name, node->value) && good;
    }
    return good;
  });
}

bool list_values(Database &database, const char *url, Visit visit, void *context) {
  Query query(database, kListValues);
  query.text(1, url);
  char name[ZRCFG_URL_SIZE * 2];
  while (query.row()) {
    snprintf(name, sizeof name, "%s%s", url, query.column(0));
    visit(context, name, 0, query.column(1));
  }
  return true;
}

// What follows the last URL below `url`.
std::string end_of(std::string url) {
  url.back() = '/';
  return url;
}

bool enumerate(Database &database, const char *url, Visit visit, void *context) {
  const std::string end = end_of(url);
  Query query(database, kEnumerate);
  query.text(1, url).text(2, end.c_str());
  std::string object;
  char name[ZRCFG_URL_SIZE * 2];
  while (query.row()) {
    const char *const at = query.column(0);
    if (object != at) {
      object = at;
      visit(context, at, static_cast<unsigned>(query.integer(1)), nullptr);
    }
    if (query.column(2) != nullptr) {
      snprintf(name, sizeof name, "%s%s", at, query.column(2));
      visit(context, name, static_cast<unsigned>(query.integer(3)), nullptr);
    }
  }
  return true;
}

bool count(Database &database, const std::string &table, int step) {
  std::string counter;
  {
    Query query(database, kTemplate);
    if (!query.text(1, table.c_str()).row()) {
      return false;
    }
    counter = query.column(0);
  }
  const std::string parent = table.substr(0, table.rfind('.', table.size() - 2) + 1);
  return Query(database, kCount)
      .text(1, parent.c_str())
      .text(2, counter.c_str())
      .number(3, step)
      .run();
}

bool copy(Database &database, Statement statement, const char *table, int number) {
  const std::string from = std::string(table) + "0.";
  const std::string from_end = end_of(from);
  const std::string to = table + std::to_string(number) + ".";
  Query query(database, statement);
  query.text(1, from.c_str()).text(2, from_end.c_str()).text(3, to.c_str());
  if (statement == kCopyObjects) {
    query.text(4, table).number(5, number);
  }
  return query.run();
}

bool add(Database &database, const char *table, uint32_t *index) {
  return in_transaction(database, [&] {
    int number = 0;
    {
      Query query(database, kNextIndex);
      if (!query.text(1, table).row()) {
        return false;
      }
      number = query.integer(0);
    }
    *index = static_cast<uint32_t>(number);
    return copy(database, kCopyObjects, table, number) &&
           copy(database, kCopyParameters, table, number) && count(database, table, 1);
  });
}

bool remove(Database &database, const char *table, uint32_t index) {
  const std::string from = table + std::to_string(index) + ".";
  const std::string end = end_of(from);
  return in_transaction(database, [&] {
    return Query(database, kRemoveObjects).text(1, from.c_str()).text(2, end.c_str()).run() &&
           Query(database, kRemoveParameters).text(1, from.c_str()).text(2, end.c_str()).run() &&
           count(database, table, -1);
  });
}

// The calls of the interface for one of the two databases.
template <Database &kDatabase>
constexpr Store make_store(const char *name) {
  return {
      name,
      [](const Tree &tree, const char *dir) { return create(kDatabase, tree, dir); },
      [] { return open_prepared(kDatabase); },
      [] { close_database(kDatabase); },
      [](const char *url, const char *param, char *value) {
        return read(kDatabase, url, param, value);
      },
      [](const char *url, const char *param, const char *value) {
        return write(kDatabase, url, param, value);
      },
      [](const char *url, ParamValueEntry *list) { return read_many(kDatabase, url, list); },
      [](const char *url, ParamValueEntry *list) { return write_many(kDatabase, url, list); },
      [](const char *url, Visit visit, void *context) {
        return list_values(kDatabase, url, visit, context);
      },
      [](const char *url, Visit visit, void *context) {
        return enumerate(kDatabase, url, visit, context);
      },
      [](const char *table, uint32_t *index) { return add(kDatabase, table, index); },
      [](const char *table, uint32_t index) { return remove(kDatabase, table, index); },
  };
}

}  // namespace

const Store kSqliteWalStore = make_store<g_wal>("sqlite-wal");
const Store kSqliteJournalStore = make_store<g_rollback>("sqlite-journal");

}  // namespace bench
