/* checked_values CHANNEL ENABLE: sets both or neither, with the object locked before and after. */
#include <stdio.h>
#include <zrcfg.h>

int main(int argc, char **argv) {
  const char *url = "InternetGatewayDevice.LANDevice.1.WLANConfiguration.1.";
  ParamValueEntry list[2] = {{.name = "Channel"}, {.name = "Enable"}};
  uint32_t faults[2] = {0, 0};
  int lock = -1;
  if (argc != 3 || zrcfg_lockurl(url, &lock, 3000, ZRCFG_LOCK_EXCLUSIVE) != ZRCFG_OK) {
    return 1;
  }
  for (int i = 0; i < 2; ++i) {
    list[i].value = argv[1 + i];
    list[i].fault = &faults[i];
    list[i].next = i == 0 ? &list[1] : NULL;
  }
  int result =
      zrcfg_setmultiparamval_check(url, list, ZRCFG_NO_LOCK); /* the lock is held already */
  zrcfg_releaselock(lock);
  printf("result %d\n", result);
  for (int i = 0; i < 2; ++i) {
    if (faults[i] != 0) {
      printf("%s: refused, fault %u\n", list[i].name, faults[i]);
    } else if (result == (int)ZRCFG_OK) {
      printf("%s: changed %u, before %s\n", list[i].name, list[i].changed, list[i].old_value);
    }
  }
  return result != (int)ZRCFG_OK;
}
