/* A fresh process that reads one value from the LMDB store. */
#include <lmdb.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
  char key[512];
  MDB_env *env;
  MDB_txn *txn;
  MDB_dbi dbi;
  MDB_val found;
  if (argc != 5) {
    return 2;
  }
  snprintf(key, sizeof key, "%s\x01%s", argv[2], argv[3]);
  MDB_val wanted = {strlen(key), key};
  if (mdb_env_create(&env) != 0 || mdb_env_set_mapsize(env, 64u << 20) != 0 ||
      mdb_env_open(env, argv[1], MDB_NOSYNC, 0644) != 0 ||
      mdb_txn_begin(env, NULL, MDB_RDONLY, &txn) != 0 || mdb_dbi_open(txn, NULL, 0, &dbi) != 0 ||
      mdb_get(txn, dbi, &wanted, &found) != 0) {
    return 2;
  }
  const size_t length = strlen(argv[4]);
  const int result =
      found.mv_size != length + 1 || memcmp((const char *)found.mv_data + 1, argv[4], length) != 0;
  mdb_txn_abort(txn);
  mdb_env_close(env);
  return result;
}
