// Reading one setting from a UCI file.
#ifndef ZRCFG_CONFIG_UCI_OPTION_H_
#define ZRCFG_CONFIG_UCI_OPTION_H_

struct uci_context;
struct uci_package;

extern "C" {
// Replaces every byte that no UCI name may hold by "_", in place. Always 0.
int uci_char_transform(char *text);

// Unloads the package and frees the context.
void unload_ucifile(struct uci_context *ctx, struct uci_package *pkg);
}

#endif  // ZRCFG_CONFIG_UCI_OPTION_H_
