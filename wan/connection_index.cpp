// WAN connections by URL, by connection index and by user index.
#include <string.h>

#include "core/export.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr char kIpTemplate[] =
    "InternetGatewayDevice.WANDevice.x.WANConnectionDevice.x.WANIPConnection.x.";
constexpr char kPppTemplate[] =
    "InternetGatewayDevice.WANDevice.x.WANConnectionDevice.x.WANPPPConnection.x.";
constexpr char kDevicesUrl[] = "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.";
constexpr char kTemplateDeviceUrl[] = "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.0.";
constexpr char kTemplateConnectionsUrl[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.0.WANIPConnection.";
constexpr char kFirstConnectionsUrl[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.";

constexpr int kLimitTimeout = 5000;
constexpr uint32_t kConnectionDepth = 3;
constexpr uint32_t kIpConnection = 1;
constexpr uint32_t kPppConnection = 2;

uint32_t read_limit(const char *url, uint32_t *number) {
  if (number == nullptr) {
    return ZRCFG_E_FAILED;
  }
  ObjAttr attr = {};
  const uint32_t result = zrcfg_getobjattr(url, &attr, kLimitTimeout);
  if (result == ZRCFG_OK) {
    *number = attr.max_instance;
  }
  return result;
}

template <size_t kSize>
bool begins_with(const char *text, const char (&beginning)[kSize]) {
  return strncmp(text, beginning, kSize - 1) == 0;
}

// The kind of connection that a URL without its numbers names; 0 for none.
uint32_t connection_kind(const char *url_template) {
  if (begins_with(url_template, kIpTemplate)) {
    return kIpConnection;
  }
  return begins_with(url_template, kPppTemplate) ? kPppConnection : 0;
}

bool connection_limit(uint32_t &limit) {
  if (zrcfg_GetMaxConNum(&limit) == ZRCFG_OK) {
    return true;
  }
  ZRCFG_TRACE("max_con_index get failed!\n");
  return false;
}

bool in_range(uint32_t number, uint32_t limit) {
  return number >= 1 && number <= limit;
}

// Each connection device owns 2 * `limit` user indexes.
uint32_t user_index(const WanConIndex &index, uint32_t limit) {
  const uint32_t block = (index.wanIndex - 1) * 2 * limit;
  switch (index.conType) {
    case kIpConnection:
      return block + index.conIndex;
    case kPppConnection:
      return block + limit + index.conIndex;
    default:
      return 0;
  }
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t zrcfg_GetMaxWanNum(uint32_t *number) {
  return read_limit(kDevicesUrl, number);
}

ZRCFG_EXPORT uint32_t zrcfg_GetMaxConNum(uint32_t *number) {
  const bool has_template = zrcfg_isobjectexist(kTemplateDeviceUrl) == 1;
  return read_limit(has_template ? kTemplateConnectionsUrl : kFirstConnectionsUrl, number);
}

ZRCFG_EXPORT int zrcfg_getwanconindexfromxmlurl(const char *url, WanConIndex *index) {
  instanceStack stack;
  if (index == nullptr || xmlurl_transform(url, &stack) != 0 || stack.depth != kConnectionDepth) {
    ZRCFG_TRACE("xmlurl_transform failed!\n");
    return -1;
  }
  ZRCFG_TRACE("instanceStack.objpathinxml=%s\n", stack.objpathinxml);
  memset(index, 0, sizeof *index);
  const uint32_t kind = connection_kind(stack.objpathinxml);
  if (kind == 0) {
    ZRCFG_TRACE("t_wanindex get failed!\n");
    return -1;
  }
  *index = {stack.index[1], stack.index[2], kind};
  return 0;
}

ZRCFG_EXPORT int zrcfg_getusrindexbywanconindex(const WanConIndex *index, uint32_t *userIndex) {
  if (userIndex == nullptr) {
    return -1;
  }
  *userIndex = 0;
  if (index == nullptr) {
    ZRCFG_TRACE("wanCCIndex is NULL!\n");
    return -1;
  }
  uint32_t wan_limit = 0;
  uint32_t limit = 0;
  if (zrcfg_GetMaxWanNum(&wan_limit) != ZRCFG_OK) {
    ZRCFG_TRACE("max_wan_index get failed!\n");
    return -1;
  }
  if (!connection_limit(limit)) {
    return -1;
  }
  if (!in_range(index->wanIndex, wan_limit)) {
    ZRCFG_TRACE("wanIndex(%d) exeed!\n", static_cast<int>(index->wanIndex));
    return -1;
  }
  if (!in_range(index->conIndex, limit)) {
    ZRCFG_TRACE("conIndex(%d) exeed!\n", static_cast<int>(index->conIndex));
    return -1;
  }
  *userIndex = user_index(*index, limit);
  return 0;
}

ZRCFG_EXPORT int zrcfg_getusrindexfromxmlurl(const char *url, uint32_t *userIndex) {
  if (userIndex == nullptr) {
    return -1;
  }
  *userIndex = 0;
  WanConIndex index;
  if (zrcfg_getwanconindexfromxmlurl(url, &index) != 0) {
    return -1;
  }
  return zrcfg_getusrindexbywanconindex(&index, userIndex) == 0 ? 0 : -1;
}

ZRCFG_EXPORT int zrcfg_getwanconindexbyusrindex(uint32_t userIndex, WanConIndex *index) {
  uint32_t limit = 0;
  if (userIndex == 0 || index == nullptr || !connection_limit(limit) || limit == 0) {
    return -1;
  }
  const uint32_t block = 2 * limit;
  const uint32_t place = userIndex % block;  // 0 is the block's last place.
  index->wanIndex = (userIndex - 1) / block + 1;
  if (in_range(place, limit)) {
    index->conType = kIpConnection;
    index->conIndex = place;
  } else {
    index->conType = kPppConnection;
    index->conIndex = (limit + place) % block;
  }
  return 0;
}

}  // extern "C"
