// Replay commands on values: single, bulk, checked, rolled back, listed, exported.
#include <stdlib.h>
#include <string.h>

#include "tests/device/replay/replay.h"

namespace zrcfg_test {
namespace {

// get URL NAME
void get(const Line &line) {
  char value[ZRCFG_VALUE_SIZE] = "(as before)";
  print_result(zrcfg_getsingleparamval(line.text(0), line.text(1), value, line.timeout));
  print_text("value", field_text(value));
  end_line();
}

// set URL NAME VALUE
void set(const Line &line) {
  print_result(zrcfg_setsingleparamval(line.text(0), line.text(1), line.text(2), line.timeout));
  end_line();
}

// set-changed URL NAME VALUE
void set_changed(const Line &line) {
  uint8_t changed = 7;
  print_result(zrcfg_setsingleparamval_ext(line.text(0), line.text(1), line.text(2), line.timeout,
                                           &changed));
  print_number("changed", changed);
  end_line();
}

// set-old URL NAME VALUE
void set_old(const Line &line) {
  uint8_t changed = 7;
  char old_value[ZRCFG_VALUE_SIZE] = "";
  print_result(zrcfg_setsingleparamval_ext_get_old_value(line.text(0), line.text(1), line.text(2),
                                                         line.timeout, &changed, old_value));
  print_number("changed", changed);
  print_text("old", field_text(old_value));
  end_line();
}

// set-checked URL NAME VALUE
void set_checked(const Line &line) {
  char changed = 7;
  char old_value[ZRCFG_VALUE_SIZE] = "";
  print_result(zrcfg_setsingleparamval_ext_get_old_value_check(
      line.text(0), line.text(1), line.text(2), line.timeout, &changed, old_value));
  print_number("changed", static_cast<unsigned char>(changed));
  print_text("old", field_text(old_value));
  end_line();
}

// check URL NAME VALUE
void check(const Line &line) {
  print_result(zrcfg_paramvalue_check(line.text(0), line.text(1), line.text(2), line.timeout));
  end_line();
}

// filter NUMBER VALUE
void filter(const Line &line) {
  print_result(check_param_value_valid_regex(static_cast<unsigned>(line.number(0)), line.text(1)));
  end_line();
}

// Calls that take a URL, a list and a time-out: COMMAND URL NAME[=VALUE]...
template <int (*kCall)(const char *, ParamValueEntry *, int)>
void bulk(const Line &line) {
  RequestList list(line.rest(1));
  print_result(kCall(line.text(0), list.first(), line.timeout));
  end_line();
  list.print();
}

// roll-back URL [!]NAME=VALUE...: a bulk write, then a roll-back of the nodes with a mark.
void roll_back(const Line &line) {
  RequestList list(line.rest(1));
  print_result(zrcfg_setmultiparamval(line.text(0), list.first(), line.timeout));
  list.mark_faults();
  print_result(zrcfg_setmultiparamval_ext(line.text(0), list.first(), line.timeout));
  end_line();
  list.print();
}

// list URL
void list(const Line &line) {
  ParamValueListNode *head = nullptr;
  ParamValueListNode *tail = nullptr;
  print_result(zrcfg_getallparamval(line.text(0), &head, &tail, line.timeout));
  end_line();
  while (head != nullptr) {
    print_text("  url", field_text(head->url));
    print_text("value", field_text(head->value));
    print_number("last", head == tail);
    end_line();
    ParamValueListNode *const next = head->next;
    free(head);
    head = next;
  }
}

// export URL NAME VALUE MODE
void export_value(const Line &line) {
  uint8_t written = 7;
  print_result(zrcfg_exportsingleparamval(line.text(0), line.text(1), line.text(2),
                                          static_cast<int>(line.number(3)), &written));
  print_number("written", written);
  end_line();
}

// export-bulk URL MODE NAME=VALUE...
void export_bulk(const Line &line) {
  RequestList list(line.rest(2));
  print_result(zrcfg_exportmultiparamval(line.text(0), list.first(), line.timeout,
                                         static_cast<int>(line.number(1))));
  end_line();
  list.print();
}

}  // namespace

void add_value_commands(CommandTable &table) {
  table.insert({{"get", get},
                {"set", set},
                {"set-changed", set_changed},
                {"set-old", set_old},
                {"set-checked", set_checked},
                {"check", check},
                {"filter", filter},
                {"get-bulk", bulk<zrcfg_getmultiparamval>},
                {"set-bulk", bulk<zrcfg_setmultiparamval>},
                {"set-bulk-checked", bulk<zrcfg_setmultiparamval_check>},
                {"roll-back", roll_back},
                {"list", list},
                {"export", export_value},
                {"export-bulk", export_bulk}});
}

}  // namespace zrcfg_test
