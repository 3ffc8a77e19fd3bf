/* all_values URL: lists the visible parameters of an object with their values. */
#include <stdio.h>
#include <stdlib.h>
#include <zrcfg.h>

int main(int argc, char **argv) {
  ParamValueListNode *head = NULL;
  ParamValueListNode *tail = NULL;
  if (argc != 2 || zrcfg_getallparamval(argv[1], &head, &tail, 3000) != (int)ZRCFG_OK) {
    return 1;
  }
  while (head != NULL) {
    ParamValueListNode *next = head->next;
    printf("%s=%s\n", head->url, head->value);
    free(head);
    head = next;
  }
  return 0;
}
