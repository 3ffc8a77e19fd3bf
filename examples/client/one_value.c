/* one_value URL NAME VALUE: reads a parameter, then sets it. */
#include <stdio.h>
#include <zrcfg.h>

int main(int argc, char **argv) {
  char value[ZRCFG_VALUE_SIZE] = "(no such parameter)"; /* a missing one leaves it as it is */
  uint8_t changed = 0;
  if (argc != 4) {
    return 2;
  }
  uint32_t result = zrcfg_getsingleparamval(argv[1], argv[2], value, 3000);
  printf("%u %s\n", result, value);
  result = zrcfg_setsingleparamval_ext(argv[1], argv[2], argv[3], 3000, &changed);
  printf("%u %s\n", result, result != ZRCFG_OK ? "not set" : changed ? "changed" : "equal");
  return result != ZRCFG_OK;
}
