// A fresh process that reads one value through the store that COLD_STORE names, and compares it.
// usage: PROGRAM DIR URL NAME EXPECTED
#include <string.h>

#include "bench/store.h"

int main(int argc, char **argv) {
  char value[ZRCFG_VALUE_SIZE] = "";
  if (argc != 5 || !bench::COLD_STORE.read(argv[2], argv[3], value)) {
    return 2;
  }
  return strcmp(value, argv[4]) == 0 ? 0 : 1;
}
