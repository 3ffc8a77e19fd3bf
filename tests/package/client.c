/* A C client of the installed package: makes an object, sets a value and reads it back. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <zrcfg.h>

static void make_object(void) {
  unsigned char file[4 + 184 + 124 + 2] = {0, 0, 1, 52}; /* 184 + 124 */
  memcpy(file + 4 + 184 + 8, "Name", 5);
  memcpy(file + 4 + 184 + 124, "a\n", 2);
  mkdir("/var/A", 0755);
  FILE *out = fopen("/var/A/property.conf", "wb");
  if (out == NULL || fwrite(file, sizeof file, 1, out) != 1 || fclose(out) != 0) {
    exit(2);
  }
}

int main(void) {
  make_object();
  char value[ZRCFG_VALUE_SIZE] = "";
  char old_value[ZRCFG_VALUE_SIZE] = "";
  uint8_t changed = 0;
  if (zrcfg_setsingleparamval_ext_get_old_value("A.", "Name", "new", 3000, &changed, old_value) !=
          ZRCFG_OK ||
      changed != 1 || strcmp(old_value, "a") != 0) {
    return 3;
  }
  if (zrcfg_getsingleparamval("A.", "Name", value, 3000) != ZRCFG_OK || strcmp(value, "new") != 0) {
    return 4;
  }
  return CheckObjExist("A.") == ZRCFG_OK && CheckObjExist("B.") == ZRCFG_E_NOT_FOUND ? 0 : 5;
}
