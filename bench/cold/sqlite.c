/* A fresh process that reads one value from the SQLite store. */
#include <sqlite3.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
  char path[512];
  sqlite3 *database;
  sqlite3_stmt *statement;
  int result = 2;
  if (argc != 5) {
    return 2;
  }
  snprintf(path, sizeof path, "%s/store.sqlite", argv[1]);
  if (sqlite3_open(path, &database) != SQLITE_OK ||
      sqlite3_prepare_v2(database, "SELECT value FROM parameter WHERE url = ?1 AND name = ?2", -1,
                         &statement, NULL) != SQLITE_OK) {
    return 2;
  }
  sqlite3_bind_text(statement, 1, argv[2], -1, SQLITE_STATIC);
  sqlite3_bind_text(statement, 2, argv[3], -1, SQLITE_STATIC);
  if (sqlite3_step(statement) == SQLITE_ROW) {
    result = strcmp((const char *)sqlite3_column_text(statement, 0), argv[4]) != 0;
  }
  sqlite3_finalize(statement);
  sqlite3_close(database);
  return result;
}
