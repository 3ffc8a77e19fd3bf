// wan URL|INDEX: a WAN connection by its URL or its user index.
#include <inttypes.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/number.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/output.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr uint32_t kIpConnection = 1;

void print_connection(Form form, uint32_t user_index, const WanConIndex &index) {
  RecordPrinter printer(form);
  printer.print(Field::of("index", user_index));
  printer.print(Field::of("device", index.wanIndex));
  printer.print(Field::of("connection", index.conIndex));
  printer.print(
      Field::of("type", index.conType == kIpConnection ? "WANIPConnection" : "WANPPPConnection"));
}

int show_index(Form form, uint32_t user_index) {
  WanConIndex index;
  if (zrcfg_getwanconindexbyusrindex(user_index, &index) != 0) {
    complain("%" PRIu32 ": no user index, or the store has no limit of WAN connections",
             user_index);
    return kExitRefused;
  }
  print_connection(form, user_index, index);
  return kExitOk;
}

int show_url(Form form, const char *text) {
  ObjectUrl url;
  if (!parse_object_url(text, url)) {
    return kExitUsage;
  }
  WanConIndex index;
  if (zrcfg_getwanconindexfromxmlurl(url.text, &index) != 0) {
    complain("%s: not the URL of a WAN IP or PPP connection", text);
    return kExitRefused;
  }
  uint32_t user_index;
  if (zrcfg_getusrindexbywanconindex(&index, &user_index) != 0) {
    complain("%s: beyond the store's limits of WAN connections", text);
    return kExitRefused;
  }
  print_connection(form, user_index, index);
  return kExitOk;
}

}  // namespace

int run_wan(const Options &options, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("takes one URL or one user index");
    return kExitUsage;
  }
  const char *const text = arguments.values[0];
  Form form;
  if (!choose_form(options, form)) {
    return kExitUsage;
  }
  int number;
  return parse_number(text, strlen(text), number) ? show_index(form, static_cast<uint32_t>(number))
                                                  : show_url(form, text);
}

}  // namespace zrcfg_tool
