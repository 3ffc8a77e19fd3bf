/* Reading UCI configuration files: the part of libuci's public C interface that zrcfg uses.
 *
 * Names, types and calls are those of libuci, so that code written for this header builds and links
 * against a vendor's uci.h and libuci as well. Sizes and the order of members need not be those of
 * any libuci binary.
 *
 * Where the reader differs from libuci: sections of one type and name stay apart, as the file has
 * them, and are not merged; a zero byte in the file is an error; places in error texts count bytes
 * from 1.
 *
 * Strings and elements belong to their package and live until it is unloaded.
 */
#ifndef ZRCFG_PLATFORM_UCI_UCI_H_
#define ZRCFG_PLATFORM_UCI_UCI_H_

#include <stdbool.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Results of the calls that return int. */
enum {
  UCI_OK = 0,
  UCI_ERR_MEM,
  UCI_ERR_INVAL,
  UCI_ERR_NOTFOUND,
  UCI_ERR_IO,
  UCI_ERR_PARSE,
  UCI_ERR_DUPLICATE,
  UCI_ERR_UNKNOWN,
  UCI_ERR_LAST
};

enum uci_type {
  UCI_TYPE_UNSPEC = 0,
  UCI_TYPE_DELTA = 1,
  UCI_TYPE_PACKAGE = 2,
  UCI_TYPE_SECTION = 3,
  UCI_TYPE_OPTION = 4,
  UCI_TYPE_PATH = 5,
  UCI_TYPE_BACKEND = 6,
  UCI_TYPE_ITEM = 7,
  UCI_TYPE_HOOK = 8
};

enum uci_option_type { UCI_TYPE_STRING = 0, UCI_TYPE_LIST = 1 };

/* A ring through its own head; empty when the head points at itself. */
struct uci_list {
  struct uci_list *next;
  struct uci_list *prev;
};

/* What packages, sections, options and list entries have in common. */
struct uci_element {
  struct uci_list list;
  enum uci_type type;
  char *name;
};

struct uci_context {
  struct uci_list root; /* the packages that are loaded */
  char *confdir;        /* where packages given by a bare name are looked up */
  int err;              /* result of the last call */
  /* Of the last UCI_ERR_PARSE; these three are the reader's own. */
  const char *parse_reason;
  int parse_line;
  int parse_byte;
};

struct uci_package {
  struct uci_element e; /* named after the file */
  struct uci_list sections;
  struct uci_context *ctx;
  char *path;
};

struct uci_section {
  struct uci_element e; /* the name is made up when `anonymous` */
  struct uci_list options;
  struct uci_package *package;
  bool anonymous;
  char *type;
};

struct uci_option {
  struct uci_element e;
  struct uci_section *section;
  enum uci_option_type type;
  union {
    struct uci_list list; /* elements of UCI_TYPE_ITEM, named with the entry's text */
    char *string;
  } v;
};

/* A context, or NULL when there is no memory. Contexts share nothing; each is for one thread. */
struct uci_context *uci_alloc_context(void);

/* Unloads the context's packages and frees it. NULL does nothing. */
void uci_free_context(struct uci_context *ctx);

/* Loads a file: `name` is a path that begins with "/" or "./", or else the bare name of a package
 * in the configuration directory, "/etc/config". `*package` is written on success only and may be
 * null. UCI_ERR_NOTFOUND when there is no such regular file, UCI_ERR_PARSE when a line cannot be
 * understood; nothing of the file is kept then. Files over 16 MiB give UCI_ERR_MEM. */
int uci_load(struct uci_context *ctx, const char *name, struct uci_package **package);

/* Frees a package with all that belongs to it. */
int uci_unload(struct uci_context *ctx, struct uci_package *package);

/* Replaces the configuration directory. */
int uci_set_confdir(struct uci_context *ctx, const char *dir);

/* The section's option of that name, or NULL. */
struct uci_option *uci_lookup_option(struct uci_context *ctx, struct uci_section *section,
                                     const char *name);

/* The text of that option; NULL when it is missing or a list. */
const char *uci_lookup_option_string(struct uci_context *ctx, struct uci_section *section,
                                     const char *name);

/* Describes the context's last error, behind "prefix: " unless `prefix` is null. `*dest` receives a
 * text to free(), or null when there is no memory; a null `dest` prints it to standard error. */
void uci_get_errorstr(struct uci_context *ctx, char **dest, const char *prefix);

/* ---- Walking ------------------------------------------------------------------------------- */

#define uci_container_of(ptr, type, member) ((type *)((char *)(ptr)-offsetof(type, member)))

#define list_to_element(ptr) uci_container_of(ptr, struct uci_element, list)

/* Walks the elements of a list in file order; `cur` is a struct uci_element *. */
#define uci_foreach_element(head, cur)                                \
  for ((cur) = list_to_element((head)->next); &(cur)->list != (head); \
       (cur) = list_to_element((cur)->list.next))

#define uci_list_empty(head) ((head)->next == (head))

#define uci_to_package(ptr) uci_container_of(ptr, struct uci_package, e)
#define uci_to_section(ptr) uci_container_of(ptr, struct uci_section, e)
#define uci_to_option(ptr) uci_container_of(ptr, struct uci_option, e)

#ifdef __cplusplus
}
#endif

#endif /* ZRCFG_PLATFORM_UCI_UCI_H_ */
