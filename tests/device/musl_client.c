/* A client on a small C library: what differs between C libraries (regular expressions, directory
 * order, splitting, number and text functions, the logger's time) gives the library's results. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "zrcfg.h"

static int failures;

static void expect(const char *what, int holds) {
  if (!holds) {
    printf("FAILED %s\n", what);
    ++failures;
  }
}

/* A file with one parameter, checked by filter 1. */
static void make_object(const char *dir, const char *value, unsigned char max_instance,
                        const char *pnoe) {
  unsigned char file[4 + 184 + 124] = {0, 0, 1, 52}; /* 184 + 124 */
  char path[128];
  snprintf(path, sizeof path, "/var/%s", dir);
  mkdir(path, 0755);
  snprintf(path, sizeof path, "/var/%s/property.conf", dir);
  file[4 + 5] = max_instance;
  file[4 + 8] = 0x20; /* rw 2 */
  memcpy(file + 4 + 76, pnoe, strlen(pnoe));
  memcpy(file + 4 + 184 + 8, "Value", 6);
  file[4 + 184 + 119] = 1;
  FILE *out = fopen(path, "wb");
  if (out == NULL || fwrite(file, sizeof file, 1, out) != 1 ||
      fprintf(out, "%s\n", *value != '\0' ? value : "\r") < 0 || fclose(out) != 0) {
    exit(2);
  }
}

static void write_text(const char *path, const char *text) {
  FILE *out = fopen(path, "wb");
  if (out == NULL || fputs(text, out) < 0 || fclose(out) != 0) {
    exit(2);
  }
}

static void test_values(void) {
  char value[ZRCFG_VALUE_SIZE] = "";
  make_object("A", "5", 0, "");
  expect("get", zrcfg_getsingleparamval("A.", "Value", value, 3000) == 0);
  expect("value", strcmp(value, "5") == 0);
  expect("set", zrcfg_setsingleparamval("A.", "Value", "seven", 3000) == 0);
  expect("get again", zrcfg_getsingleparamval("A.", "Value", value, 3000) == 0);
  expect("value again", strcmp(value, "seven") == 0);
}

/* Bounded repetitions up to the limit that POSIX promises, ranges, brackets, anchors. */
static void test_filters(void) {
  write_text("/var/regex_file",
             "config filter 'filter1'\n\toption value '^([0-9]|[1-9][0-9]{1,2})$'\n"
             "config filter 'filter2'\n\toption value '^.{0,255}$'\n"
             "config filter 'filter3'\n\toption value '^(a|b|[[:alpha:]]{2}|x{2,255})$'\n"
             "config filter 'filter4'\n\toption value '('\n"
             "config filter 'filter5'\n\toption value 'b'\n");
  char longest[256];
  memset(longest, 'x', 255);
  longest[255] = '\0';
  expect("number", check_param_value_valid_regex(1, "250") == 0);
  expect("no number", check_param_value_valid_regex(1, "2500") == -1);
  expect("255 characters", check_param_value_valid_regex(2, longest) == 0);
  expect("255 times x", check_param_value_valid_regex(3, longest) == 0);
  expect("a class", check_param_value_valid_regex(3, "zz") == 0);
  expect("no member", check_param_value_valid_regex(3, "1") == -1);
  expect("not an expression", check_param_value_valid_regex(4, "(") == -1);
  expect("a part", check_param_value_valid_regex(5, "abc") == 0);
  expect("no filter", check_param_value_valid_regex(6, "abc") == -1);
  expect("check", zrcfg_paramvalue_check("A.", "Value", "12", 3000) == 0);
  expect("refused", zrcfg_paramvalue_check("A.", "Value", "twelve", 3000) == 7);
}

/* Directory order, whatever the C library's own: numbers by value, then names. */
static void test_order(void) {
  static const char *const wanted[] = {"1", "2", "3", "10", "21", "B", "a", "b2"};
  static const char *const dirs[] = {"b2", "21", "3", "a", "10", "B", "2", "1", "0"};
  make_object("T", "", 50, "Value");
  for (size_t i = 0; i < sizeof dirs / sizeof *dirs; ++i) {
    char dir[32];
    snprintf(dir, sizeof dir, "T/%s", dirs[i]);
    make_object(dir, "", 0, "");
  }
  SubObjName *head = NULL;
  expect("sub-objects", zrcfg_getallsubobj("T.", &head) == 0);
  size_t count = 0;
  while (head != NULL) {
    expect("order",
           count < sizeof wanted / sizeof *wanted && strcmp(head->name, wanted[count]) == 0);
    ++count;
    SubObjName *const next = head->next;
    free(head);
    head = next;
  }
  expect("all of them", count == sizeof wanted / sizeof *wanted);
}

static void test_instances(void) {
  uint32_t index = 0;
  char value[ZRCFG_VALUE_SIZE] = "";
  make_object("P", "2", 0, "");
  make_object("P/T", "", 9, "P/Value");
  make_object("P/T/0", "new", 0, "");
  expect("add", zrcfg_addobject("P.T.", &index, 3000) == 0);
  expect("index", index == 1);
  expect("counter", zrcfg_getsingleparamval("P.", "Value", value, 3000) == 0);
  expect("counted", strcmp(value, "3") == 0);
  expect("del", zrcfg_delobject("P.T.", 1, 3000) == 0);
  expect("gone", zrcfg_isobjectexist("P.T.1.") == 0);
}

static void test_texts(void) {
  instanceStack stack;
  expect("template", xmlurl_transform("A..1.B.22.", &stack) == 0);
  expect("empty parts", strcmp(stack.objpathinxml, "A.x.B.x.") == 0 && stack.depth == 2);
  char out[64] = "";
  expect("setting", zrcfg_uci_get_config("/var/regex_file", "filter5", out, 63) == 0);
  expect("its value", strcmp(out, "b") == 0);
}

static void test_logger(void) {
  char line[256] = "";
  mkdir("/usr/local/zr/log_switch", 0755);
  write_text("/usr/local/zr/log_switch/zrcfg_log_enable", "");
  expect("log", zrcfg_logger(7, "client", 12, "text %d\n", 5) == 0);
  FILE *log = fopen("/var/zrcfg.log", "rb");
  expect("log file", log != NULL && fgets(line, sizeof line, log) != NULL);
  expect("log line", strstr(line, ",client[12]: text 5\n") != NULL);
  if (log != NULL) {
    fclose(log);
  }
}

int main(void) {
  test_values();
  test_filters();
  test_order();
  test_instances();
  test_texts();
  test_logger();
  printf("client on this C library: %d failures\n", failures);
  return failures != 0;
}
