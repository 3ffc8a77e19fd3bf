// Contexts, and loading packages into them.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "export.h"
#include "parser.h"

namespace zrcfg_uci {

namespace {

constexpr const char kDefaultConfdir[] = "/etc/config";

int finish(uci_context *ctx, int result) {
  ctx->err = result;
  return result;
}

// The path of a package's file as a block to free(); null for UCI_ERR_MEM.
char *path_in_confdir(const uci_context *ctx, const char *name) {
  const size_t size = strlen(ctx->confdir) + 1 + strlen(name) + 1;
  char *path = static_cast<char *>(malloc(size));
  if (path != nullptr) {
    (void)snprintf(path, size, "%s/%s", ctx->confdir, name);
  }
  return path;
}

int load_text(uci_context *ctx, Package *package) {
  FileText text = {};
  int result = read_file_text(package->shown.path, &text);
  if (result != UCI_OK) {
    return result;
  }
  package->text = text.bytes;
  ParseError error = {};
  result = parse_text(package, text, &error);
  if (result == UCI_ERR_PARSE) {
    ctx->parse_reason = error.reason;
    ctx->parse_line = error.place.line;
    ctx->parse_byte = error.place.byte;
  }
  return result;
}

int load_path(uci_context *ctx, const char *path, uci_package **shown) {
  const char *slash = strrchr(path, '/');
  Package *package = new_package(ctx, path, static_cast<size_t>(slash + 1 - path));
  if (package == nullptr) {
    return UCI_ERR_MEM;
  }
  const int result = load_text(ctx, package);
  if (result != UCI_OK) {
    free_package(package);
    return result;
  }
  append_to_list(&ctx->root, &package->shown.e.list);
  if (shown != nullptr) {
    *shown = &package->shown;
  }
  return UCI_OK;
}

int load_named(uci_context *ctx, const char *name, uci_package **shown) {
  if (name[0] == '/' || strncmp(name, "./", 2) == 0) {
    return load_path(ctx, name, shown);
  }
  if (!is_name(name, "-")) {
    return UCI_ERR_INVAL;
  }
  char *path = path_in_confdir(ctx, name);
  if (path == nullptr) {
    return UCI_ERR_MEM;
  }
  const int result = load_path(ctx, path, shown);
  free(path);
  return result;
}

}  // namespace

}  // namespace zrcfg_uci

using namespace zrcfg_uci;

ZRCFG_UCI_EXPORT uci_context *uci_alloc_context(void) {
  uci_context *ctx = static_cast<uci_context *>(calloc(1, sizeof(uci_context)));
  if (ctx == nullptr) {
    return nullptr;
  }
  init_list(&ctx->root);
  if (uci_set_confdir(ctx, kDefaultConfdir) != UCI_OK) {
    free(ctx);
    return nullptr;
  }
  return ctx;
}

ZRCFG_UCI_EXPORT void uci_free_context(uci_context *ctx) {
  if (ctx == nullptr) {
    return;
  }
  while (!uci_list_empty(&ctx->root)) {
    (void)uci_unload(ctx, uci_to_package(list_to_element(ctx->root.next)));
  }
  free(ctx->confdir);
  free(ctx);
}

ZRCFG_UCI_EXPORT int uci_set_confdir(uci_context *ctx, const char *dir) {
  if (ctx == nullptr) {
    return UCI_ERR_INVAL;
  }
  if (dir == nullptr) {
    return finish(ctx, UCI_ERR_INVAL);
  }
  char *copy = strdup(dir);
  if (copy == nullptr) {
    return finish(ctx, UCI_ERR_MEM);
  }
  free(ctx->confdir);
  ctx->confdir = copy;
  return finish(ctx, UCI_OK);
}

ZRCFG_UCI_EXPORT int uci_load(uci_context *ctx, const char *name, uci_package **package) {
  if (ctx == nullptr) {
    return UCI_ERR_INVAL;
  }
  return finish(ctx, name != nullptr ? load_named(ctx, name, package) : UCI_ERR_INVAL);
}

ZRCFG_UCI_EXPORT int uci_unload(uci_context *ctx, uci_package *package) {
  if (ctx == nullptr) {
    return UCI_ERR_INVAL;
  }
  if (package == nullptr) {
    return finish(ctx, UCI_ERR_INVAL);
  }
  remove_from_list(&package->e.list);
  free_package(reinterpret_cast<Package *>(package));
  return finish(ctx, UCI_OK);
}
