// The device's encryption mode and the selectors packed into it.
#include "core/decimal_text.h"
#include "core/export.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr char kFlagFile[] = "/zrrom/zrconf/status_version_flag";
constexpr char kModeKey[] = "cfg_encrypt_mode";
constexpr int kDefaultMode = 2;
constexpr int kModeNotRead = 0;

// Cached for the life of the process. Threads that read it first at the same time store the same.
int s_sys_encrypt_mode = kModeNotRead;

int read_mode() {
  char text[256] = {};
  const int result = zrcfg_uci_get_config(kFlagFile, kModeKey, text, sizeof text - 1);
  if (result != 0) {
    ZRCFG_TRACE("get cfg_encrypt_mode failed, ret = %d, set to default. \n", result);
    return kDefaultMode;
  }
  ZRCFG_TRACE("zrcfg_get_encryptmode: get encrypt_mode = %s .\n", text);
  return decimal_value(text);
}

// Bits `shift` and up of a mode, `width` of them; a negative mode brings its sign in.
uint32_t mode_field(int mode, unsigned shift, unsigned width) {
  return static_cast<uint32_t>(mode >> shift) & ((1u << width) - 1u);
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int zrcfg_get_encryptmode(void) {
  ZRCFG_TRACE("%s Enter. \n", __func__);
  int mode = __atomic_load_n(&s_sys_encrypt_mode, __ATOMIC_RELAXED);
  if (mode == kModeNotRead) {
    mode = read_mode();
    __atomic_store_n(&s_sys_encrypt_mode, mode, __ATOMIC_RELAXED);
  }
  ZRCFG_TRACE("%s Leave: g_sys_encrypt_mode=%d\n", __func__, mode);
  return mode;
}

ZRCFG_EXPORT void zrcfg_get_crytoinfo_from_encryptmode(int mode, CryptoInfo *info) {
  ZRCFG_TRACE("%s Enter: encryptmode = %d . \n", __func__, mode);
  if (info == nullptr) {
    return;
  }
  info->workmode = mode_field(mode, 3, 3);
  info->index_key = mode_field(mode, 16, 5);
  info->index_iv = mode_field(mode, 6, 5);
  info->padding = mode_field(mode, 11, 3);
  info->key_type = mode_field(mode, 14, 2);
  ZRCFG_TRACE(
      "%s Leave: index_iv = %d index_key = %d workmode = % d padding = %d key_type = %d . \n",
      __func__, static_cast<int>(info->index_iv), static_cast<int>(info->index_key),
      static_cast<int>(info->workmode), static_cast<int>(info->padding),
      static_cast<int>(info->key_type));
}

}  // extern "C"
