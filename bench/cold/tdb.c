/* A fresh process that reads one value from the TDB store. */
#include <fcntl.h>
#include <signal.h>
#include <stdbool.h>
#include <stdio.h>
#include <string.h>
#include <sys/types.h>

#include <tdb.h>

int main(int argc, char **argv) {
  char path[512];
  char key[512];
  if (argc != 5) {
    return 2;
  }
  snprintf(path, sizeof path, "%s/store.tdb", argv[1]);
  snprintf(key, sizeof key, "%s\x01%s", argv[2], argv[3]);
  struct tdb_context *tdb = tdb_open(path, 0, TDB_NOSYNC, O_RDWR, 0);
  if (tdb == NULL) {
    return 2;
  }
  const TDB_DATA wanted = {(unsigned char *)key, strlen(key)};
  const TDB_DATA found = tdb_fetch(tdb, wanted);
  const size_t length = strlen(argv[4]);
  const int result = found.dptr == NULL || found.dsize != length + 1 ||
                     memcmp(found.dptr + 1, argv[4], length) != 0;
  tdb_close(tdb);
  return result;
}
