// wan URL|INDEX: a WAN connection by its URL or its user index.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/number.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr uint32_t kIpConnection = 1;

void print_connection(uint32_t user_index, const WanConIndex &index) {
  printf("index=%" PRIu32 "\ndevice=%" PRIu32 "\nconnection=%" PRIu32 "\ntype=%s\n", user_index,
         index.wanIndex, index.conIndex,
         index.conType == kIpConnection ? "WANIPConnection" : "WANPPPConnection");
}

int show_index(uint32_t user_index) {
  WanConIndex index;
  if (zrcfg_getwanconindexbyusrindex(user_index, &index) != 0) {
    complain("wan %" PRIu32 ": no user index, or the store has no limit of WAN connections",
             user_index);
    return kExitRefused;
  }
  print_connection(user_index, index);
  return kExitOk;
}

int show_url(const char *text) {
  ObjectUrl url;
  if (!parse_object_url(text, url)) {
    return kExitUsage;
  }
  WanConIndex index;
  if (zrcfg_getwanconindexfromxmlurl(url.text, &index) != 0) {
    complain("wan %s: not the URL of a WAN IP or PPP connection", text);
    return kExitRefused;
  }
  uint32_t user_index;
  if (zrcfg_getusrindexbywanconindex(&index, &user_index) != 0) {
    complain("wan %s: beyond the store's limits of WAN connections", text);
    return kExitRefused;
  }
  print_connection(user_index, index);
  return kExitOk;
}

}  // namespace

int run_wan(const Options &, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("wan takes one URL or one user index");
    return kExitUsage;
  }
  const char *const text = arguments.values[0];
  int number;
  return parse_number(text, strlen(text), number) ? show_index(static_cast<uint32_t>(number))
                                                  : show_url(text);
}

}  // namespace zrcfg_tool
