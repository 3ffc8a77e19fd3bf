/* zrcfg: the configuration store of a home gateway, public interface (C11 and C++17).
 *
 * The store keeps a TR-069 parameter tree below /var/: a directory for each object instance, in it
 * one file, property.conf, with the object's header, its parameter records and their values.
 *
 * Conventions, valid for every call below unless it says otherwise:
 *
 *  1. Object URLs are dotted paths that end in a dot ("InternetGatewayDevice.WANDevice.1."), at
 *     most 255 characters. Parameter names are bare names of at most 63 characters.
 *  2. Values are zero-terminated texts of at most 255 characters. A value buffer that a call fills
 *     holds ZRCFG_VALUE_SIZE (256) bytes. Values cannot hold a line feed; a value that begins with
 *     a carriage return reads back as the empty value.
 *  3. Calls return 0 (ZRCFG_OK) or one of the ZRCFG_E codes. The same condition may carry different
 *     codes in different calls; each call lists its own.
 *  4. Ownership: arguments belong to the caller and are not kept. Result lists are allocated by the
 *     library, one malloc block a node, and freed by the caller with free() along `next`.
 *     Outputs are written only where the description says so.
 *  5. Time-outs are milliseconds: ZRCFG_NO_LOCK (-2) takes no lock; ZRCFG_WAIT_FOREVER (-1) waits
 *     without limit; 0 tries once; n tries n/10 times (the fraction is dropped), 10 ms apart, so 1
 *     to 9 fail without a try, and -10 or less retries practically for ever.
 *  6. Locks are advisory locks on property files. All instances below a table share the lock of the
 *     table's template instance "0". Two locks taken by one process exclude each other too: inside
 *     a lock of your own, call with ZRCFG_NO_LOCK.
 *  7. Processes: every call locks, reads the file afresh, works, writes straight back and unlocks.
 *     Nothing is cached between calls. No call syncs to the medium.
 *  8. Threads: the library starts none and keeps no state between calls; threads may call it at the
 *     same time, each with its own arguments.
 *  9. A null pointer where one is needed gives ZRCFG_E_ARGUMENT, never a crash; an optional output
 *     may be null. A failed write puts the old values back and gives ZRCFG_E_FILE.
 * 10. Diagnostics go to the device's log call zr_mod_log_printf, module "ZRCFG", level 7.
 */
#ifndef ZRCFG_H_
#define ZRCFG_H_

#include <stdint.h>
#include <sys/types.h>

#ifdef __cplusplus
#define ZRCFG_STATIC_ASSERT(condition, text) static_assert(condition, text)
extern "C" {
#else
#define ZRCFG_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif

/* The library is built with 64-bit file offsets on every target, its clients must be too:
 * compile with -D_FILE_OFFSET_BITS=64. */
ZRCFG_STATIC_ASSERT(sizeof(off_t) == 8, "compile with -D_FILE_OFFSET_BITS=64");

/* ---- Result codes -------------------------------------------------------------------------- */

#define ZRCFG_OK 0u
#define ZRCFG_E_NOT_FOUND 1u       /* object missing or hidden, URL of 256 characters or more */
#define ZRCFG_E_NOT_DYNAMIC 2u     /* table without template, or of the other kind (static) */
#define ZRCFG_E_LIMIT 4u           /* instance limit reached, or the instance exists already */
#define ZRCFG_E_NO_PARAMETER 5u    /* no parameter of that name (value calls) */
#define ZRCFG_E_NO_VALUES 6u       /* object without parameters (value listing) */
#define ZRCFG_E_FILE 7u            /* property file not readable or writable; value refused */
#define ZRCFG_E_NO_FILE 8u         /* property or lock file missing or not to be opened */
#define ZRCFG_E_LOCK 9u            /* lock not obtained in time, or no lock file */
#define ZRCFG_E_ARGUMENT 10u       /* null pointer; malformed property file; out of memory (read) */
#define ZRCFG_E_LOCK_TYPE 11u      /* lock type not 0, 1 or 2; null object path */
#define ZRCFG_E_NO_ATTRIBUTE 12u   /* no parameter of that name (attribute calls) */
#define ZRCFG_E_EMPTY_PATH 13u     /* empty object path */
#define ZRCFG_E_LIST_TOO_LONG 14u  /* more than ZRCFG_MAX_REQUESTS nodes; the first were served */
#define ZRCFG_E_MEMORY 15u         /* a buffer or a result list could not be built */
#define ZRCFG_E_NO_ATTRIBUTES 16u  /* object without parameters (attribute calls) */
#define ZRCFG_E_COPY 17u           /* copying the template or source instance failed */
#define ZRCFG_E_REMOVE 18u         /* removing the instance failed */
#define ZRCFG_E_FAILED 0xFFFFFFFFu /* -1: plain failure of the calls that say so */

#define ZRCFG_FAULT_INVALID_VALUE 9007u /* stored through ParamValueEntry.fault */

/* ---- Limits, time-outs, lock types --------------------------------------------------------- */

#define ZRCFG_URL_SIZE 256   /* bytes that hold any object URL, terminator included */
#define ZRCFG_NAME_SIZE 64   /* bytes that hold any parameter name */
#define ZRCFG_VALUE_SIZE 256 /* bytes that hold any value */
#define ZRCFG_MAX_REQUESTS 1001 /* nodes of a request list that one call serves */

#define ZRCFG_WAIT_FOREVER (-1)
#define ZRCFG_NO_LOCK (-2)

#define ZRCFG_LOCK_SHARED 0u    /* readers */
#define ZRCFG_LOCK_EXCLUSIVE 1u /* writers */
#define ZRCFG_LOCK_TEMPLATE 2u  /* exclusive; what adding and deleting takes on the template, "X.0." */

/* ---- Exchange records ---------------------------------------------------------------------- */

/* Attributes of one parameter, one byte a field (64 bytes). */
typedef struct ParamAttr {
  uint8_t flash_rw;     /* 0, 1 */
  uint8_t hide;         /* 0, 1 */
  uint8_t rw;           /* 0..3 */
  uint8_t noti;         /* 0..15 */
  uint8_t namechange;   /* 0, 1 */
  uint8_t noti_rw;      /* 0, 1 */
  uint8_t inform_dbus;  /* 0..255 */
  uint8_t key;          /* 0..15 */
  uint8_t encryt;       /* 0..3 */
  uint8_t device_type;  /* mask of device kinds, 0 = all */
  uint8_t type;         /* value type code */
  uint8_t flash_encryt; /* 0, 1 */
  uint8_t reserved;     /* never written by a query */
  uint8_t inform_tr069; /* 0, 1 */
  char accesslist[16];  /* copied byte for byte, not re-terminated */
  char area[28];        /* likewise */
  uint32_t param_check; /* number of the validation filter, 0 = none */
} ParamAttr;

/* Node of a full attribute listing; allocated by the library, freed by the caller. */
typedef struct ParamAttrNode {
  char name[256]; /* the URL as the caller gave it, followed by the parameter name */
  ParamAttr attr;
  struct ParamAttrNode *next;
} ParamAttrNode;

/* Change request for the attributes of one parameter or of all parameters of an object. */
typedef struct ParamAttrChange {
  char name[256];              /* not read */
  uint32_t noti_change;        /* nonzero: set noti */
  uint32_t noti;               /* new level, low 4 bits */
  uint32_t access_list_change; /* nonzero: set accesslist */
  char accesslist[16];
} ParamAttrChange;

/* Node of a caller's request list, for values and for attributes: one record type. The four bytes
 * of the attribute word lie in memory in the same order on every host. */
typedef struct ParamValueEntry {
  char name[ZRCFG_NAME_SIZE];
  union {
    char *value; /* value calls: buffer of 256 bytes to fill, or the new value */
    void *pAttr; /* attribute calls: input or output of the mode */
  };
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  uint8_t noti : 4;
  uint8_t flash_rw : 1;
  uint8_t namechange : 1;
  uint8_t inform_tr069 : 1;
  uint8_t spare_flag : 1;
#else
  uint8_t spare_flag : 1;
  uint8_t inform_tr069 : 1;
  uint8_t namechange : 1;
  uint8_t flash_rw : 1;
  uint8_t noti : 4;
#endif
  uint8_t inform_dbus;
  uint8_t spare[2];
  uint32_t changed;  /* set by a write: 1 replaced, 0 equal */
  uint32_t *fault;   /* optional: receives or marks a fault code */
  char old_value[ZRCFG_VALUE_SIZE]; /* set by a write to the value stored before */
  struct ParamValueEntry *next;
} ParamValueEntry;

typedef ParamValueEntry MultiAttrNode;

/* Attributes of an object, from its header (176 bytes). */
typedef struct ObjAttr {
  uint8_t flag0;
  uint8_t hide;
  uint8_t rw;           /* 0 fixed, nonzero: instances may be added and deleted */
  uint8_t level3;
  uint8_t key;          /* 0..15 */
  uint8_t max_instance; /* highest instance number */
  uint8_t device_type;
  uint8_t level7;
  uint8_t flag8;
  uint8_t flag9;
  uint8_t zero10; /* always 0 */
  uint8_t flag11;
  char pnoe[64]; /* the parent's instance counter, behind the last "/" */
  uint8_t reserved[8];
  char devfunc[64];
  char extra_text[28];
} ObjAttr;

/* Node of a full value listing; allocated by the library, freed by the caller. */
typedef struct ParamValueListNode {
  char url[256]; /* the URL as the caller gave it, followed by the parameter name */
  char value[ZRCFG_VALUE_SIZE];
  struct ParamValueListNode *next;
} ParamValueListNode;

/* Name of a sub-object; allocated by the library, freed by the caller. */
typedef struct SubObjName {
  char name[64];
  struct SubObjName *next;
} SubObjName;

/* An object or a parameter with its access right; allocated by the library. */
typedef struct NODE_INFO {
  char name[256];
  uint8_t rw;
  struct NODE_INFO *next;
} NODE_INFO;

/* Instance numbers of a URL, and the URL with each number replaced by "x". `depth` counts all numbers,
 * `index` holds the first four. */
typedef struct instanceStack {
  uint32_t depth;
  uint32_t index[4];
  char objpathinxml[128];
} instanceStack;

/* A WAN connection: instance of the connection device, of the connection, and its kind. */
typedef struct WanConIndex {
  uint32_t wanIndex;
  uint32_t conIndex;
  uint32_t conType; /* 1 WANIPConnection, 2 WANPPPConnection */
} WanConIndex;

/* The selectors that an encryption mode unpacks into. */
typedef struct CryptoInfo {
  uint32_t workmode;
  uint32_t index_key;
  uint32_t index_iv;
  uint32_t padding;
  uint32_t key_type;
} CryptoInfo;

ZRCFG_STATIC_ASSERT(sizeof(ParamAttr) == 64, "ParamAttr is 64 bytes");
ZRCFG_STATIC_ASSERT(sizeof(ObjAttr) == 176, "ObjAttr is 176 bytes");
ZRCFG_STATIC_ASSERT(sizeof(ParamValueEntry) == 64 + 3 * sizeof(void *) + 4 + 4 + 256,
                    "ParamValueEntry has no padding");

/* An open object: the 184 bytes of its header in file layout, its 124-byte records behind them.
 * On 32-bit targets the address slots are filled; elsewhere they keep what the file holds. */
typedef void ZrcfgObject;

/* ---- Single values ------------------------------------------------------------------------- */

/* Reads the value of parameter `name` of object `url` into `value` (256 bytes).
 * A parameter that does not exist is no error: 0, and `value` keeps what it held; fill it
 * beforehand to tell the cases apart. A stored value over 255 characters is cut.
 * Lock: shared. Results: 0; 1 URL too long; 7 file not readable; 8 no property file; 9 lock not
 * obtained; 10 null argument, malformed file, or fewer values than records. On failure `value` is
 * untouched. */
uint32_t zrcfg_getsingleparamval(const char *url, const char *name, char *value, int timeout);

/* Sets the value of parameter `name` of object `url`. A value equal to the stored one is not
 * written. A value of 256 characters or more is ignored with result 0.
 * Lock: exclusive. Results: 0; 1 URL too long; 5 no such parameter; 7 file not readable or not
 * writable, or a line feed in `value`; 8 no property file; 9 lock not obtained; 10 null argument,
 * malformed file, or a file of more than 255 records; 15 no memory, or the new value section is
 * larger than 256 bytes a record. On failure the stored values are as before. */
uint32_t zrcfg_setsingleparamval(const char *url, const char *name, const char *value, int timeout);

/* The same; `*changed` receives 1 when the value was replaced, 0 when it was equal, and 1 when the
 * work on the opened object failed. It is not written when the object was not opened or the value
 * was ignored. `changed` may be null. */
uint32_t zrcfg_setsingleparamval_ext(const char *url, const char *name, const char *value,
                                     int timeout, uint8_t *changed);

/* The same; `oldValue` (256 bytes, zero-filled by the caller) receives the stored text of at most
 * 255 characters, padded with zero bytes up to 255, as it stands in the file: an empty value
 * arrives as "\r". It is not written when the parameter is not found. `changed` and `oldValue`
 * must not be null (10). */
uint32_t zrcfg_setsingleparamval_ext_get_old_value(const char *url, const char *name,
                                                   const char *value, int timeout, uint8_t *changed,
                                                   char *oldValue);

/* ---- Several values of one object ---------------------------------------------------------- */

/* Lists: the caller owns the nodes and what they point at. A call serves the first
 * ZRCFG_MAX_REQUESTS nodes of a list and gives 14 when there are more. Two nodes may name the same
 * parameter; they are served in list order. */

/* Reads the values named in `list` into each node's `value` (256 bytes). A node whose parameter
 * does not exist keeps its buffer and is no error.
 * Lock: shared. Results: 0; 1 URL too long; 7 file not readable, or no value in it; 8 no property
 * file; 9 lock not obtained; 10 null argument or a null `value` in a node, malformed file; 14 list
 * too long, the first 1001 nodes are filled; 15 no memory. On any other failure no buffer is
 * written. */
int zrcfg_getmultiparamval(const char *url, ParamValueEntry *list, int timeout);

/* Sets the values named in `list` with one write of the file, which is made even when every value
 * is equal. Each node of an existing parameter receives in `old_value` the value before, in
 * `changed` 1 or 0, and the parameter's attributes. Unknown names are skipped silently; a value of
 * 256 characters or more is skipped with a log line.
 * Lock: exclusive. Results: 0; 1 URL too long; 7 file not readable or not writable, no value in
 * it, or a line feed in a value; 8 no property file; 9 lock not obtained; 10 null argument or a
 * null `value` in a node, malformed file, or a file of more than 255 records; 14 list too long; 15
 * no memory. On failure the file is as before, though nodes may already be filled. */
int zrcfg_setmultiparamval(const char *url, ParamValueEntry *list, int timeout);

/* Rolls nodes of an earlier zrcfg_setmultiparamval back: each node whose `fault` points to a
 * nonzero code, and whose `changed` is 1, has its `old_value` put back. The file is not written
 * when there is no such node (0). The nodes are not changed.
 * Lock and results as for zrcfg_setmultiparamval; the line feed rule holds for `old_value`, and
 * only nodes with a fault need a `value`. */
int zrcfg_setmultiparamval_ext(const char *url, ParamValueEntry *list, int timeout);

/* As zrcfg_setmultiparamval, but every node's value is first checked against its parameter's
 * filter; one refused value or unknown name leaves the whole object unchanged.
 * Results as there, and: 5 unknown parameter name; 7 also when a value is refused, 9007 is then
 * stored through that node's `fault` unless it is null. */
int zrcfg_setmultiparamval_check(const char *url, ParamValueEntry *list, int timeout);

/* Lists all visible parameters of the object in file order: `*head` and `*tail` receive the first
 * and the last node, null when every parameter is hidden. `url` stands before each name as it was
 * given; a longer text than 255 characters is cut. `head` and `tail` may be null.
 * Lock: shared. Results: 0; 1 URL too long, or object hidden; 6 object without parameters; 7 file
 * not readable; 8 no property file; 9 lock not obtained; 10 null `url`, malformed file; 15 no
 * memory, or fewer values than parameters. On failure `*head` and `*tail` are untouched and
 * nothing is left to free. */
int zrcfg_getallparamval(const char *url, ParamValueListNode **head, ParamValueListNode **tail,
                         int timeout);

/* ---- Checked values ------------------------------------------------------------------------ */

/* Filters: a parameter whose `param_check` is n > 0 takes the values in which the POSIX extended
 * regular expression of section "filtern", option "value", of the UCI file "/var/regex_file"
 * matches. The file is read afresh for every value. Without the file, and with n = 0, every value
 * is taken; a filter that is missing or does not compile takes none. */

/* Tells whether the value passes filter number `filterId`: 0 it does, or needs no check; -1 it
 * does not, the filter cannot be had, or `value` is null. */
int check_param_value_valid_regex(unsigned filterId, const char *value);

/* Checks a value for parameter `name` of object `url` without writing.
 * Lock: shared. Results: 0 valid, and for a value of 256 characters or more, which is not checked;
 * 1 URL too long; 7 refused, or no such parameter; 8 no property file; 9 lock not obtained; 10
 * null argument, malformed file. */
int zrcfg_paramvalue_check(const char *url, const char *name, const char *value, int timeout);

/* As zrcfg_setsingleparamval_ext_get_old_value, with the value checked against the parameter's
 * filter first. Differing results: 7 also for a value that is refused and for an unknown
 * parameter, `*changed` is then untouched; 5 fewer values than the parameter's place. */
int zrcfg_setsingleparamval_ext_get_old_value_check(const char *url, const char *name,
                                                    const char *value, int timeout, char *changed,
                                                    char *oldValue);

/* ---- Objects ------------------------------------------------------------------------------- */

/* Tells whether the directory of object `url` exists: 0 it does, 1 it does not or the URL is too
 * long, 10 null. Takes no lock; the property file is not looked at. */
uint32_t CheckObjExist(const char *url);

/* Opens the object in directory `dirPath` (relative to /var/, ending in "/"): takes its lock,
 * loads its header and records. `rwType` is a ZRCFG_LOCK_ type. `*lockFd`, set to -1 beforehand,
 * receives the lock's descriptor (close-on-exec), unless the time-out is ZRCFG_NO_LOCK.
 * Results: 0, and the caller hands `*image` and `*lockFd` to destroyObj; 8 no property file; 9 lock
 * not obtained, no lock file, or bad `rwType`; 10 malformed file, no memory, null output; 11 null
 * `dirPath`. On failure `*image` is untouched and no lock is held. */
uint32_t createObjByPath(ZrcfgObject **image, const char *dirPath, int *lockFd, uint32_t rwType,
                         int timeout);

/* Frees the image (null is allowed) and releases the lock (-1 is allowed). Always 0. */
uint32_t destroyObj(ZrcfgObject *image, int lockFd);

/* Tells whether listings leave an object out: 1 hidden, for other devices, or null; 0 visible.
 * `header` is an open object or any 184 bytes of a header. */
int objIsHide(const void *header);

/* The same for a parameter; `record` is the 124 bytes of its record. */
int paramIsHide(const void *record);

/* ---- Instances ----------------------------------------------------------------------------- */

/* A table is an object whose instances are its numbered directories; "0" is the template. The
 * instances of a dynamic table (`rw` not 0) are added and deleted by the calls below and counted in
 * a parameter of the parent object; those of a fixed table (`rw` 0) by the static calls, uncounted.
 * `url` is the table's URL. The counter is changed by one step from its stored value, under the
 * parent's lock, when the table's lock has been released: for a moment it lags behind.
 * Results of all that lock: 1 URL too long; 8 no property file; 9 lock not obtained; 10 null `url`,
 * malformed file; and those named below. */

/* Creates the instance with the lowest free number as a copy of the template and adds one to the
 * counter. `*pIndex` (may be null) receives the number, also when a later step fails.
 * Lock: that of the template, then the parent's, exclusive, never both. Results: 0; 2 fixed table,
 * or no template; 4 no number free up to the table's limit; 17 the template could not be copied, or
 * its paths do not fit. When the counter cannot be updated the instance is removed again and the
 * result is that of the update (5: no such counter). */
uint32_t zrcfg_addobject(const char *url, uint32_t *pIndex, int timeout);

/* The same for a given number; 4 when it is below 1, above the limit, or taken. */
uint32_t zrcfg_addobject_with_index(const char *url, int index, int timeout);

/* Deletes an instance with all below it and takes one from the counter (0 stays 0). Number 0 is the
 * template: without it the table takes no more instances.
 * Locks as for creation. Results: 0; 1 also when there is no such instance; 2 fixed table, or no
 * template; 18 the instance could not be opened. When the counter cannot be updated the result is
 * that of the update, and the instance stays deleted. */
uint32_t zrcfg_delobject(const char *url, int index, int timeout);

/* Creates instance `index` of a fixed table as a copy of instance `source_index`; the table's limit
 * does not matter. Lock: the table's, exclusive. Results: 0; 2 dynamic table, or no such source; 4
 * `index` below 1, taken, or its path too long; 17 the source could not be copied. */
uint32_t zrcfg_addobject_static(const char *url, int index, int source_index, int timeout);

/* Deletes instance `index` of a fixed table. Lock: the table's, exclusive. Results: 0; 1 also when
 * there is no such instance; 2 dynamic table; 18 the instance could not be opened. */
uint32_t zrcfg_delobject_static(const char *url, int index, int timeout);

/* Tells whether the object's directory can be opened: 1 it can; 0 not, or URL too long; 10 null.
 * Takes no lock. */
uint32_t zrcfg_isobjectexist(const char *url);

/* ---- Export -------------------------------------------------------------------------------- */

/* Replaying a configuration. `mode` selects what is written: 1, 2 and 3 only parameters (or tables,
 * for instances) with bit 0, 1 or 2 of their `key` set, any other mode everything. What is held
 * back is no error: `*pWriteFlag` (may be null) receives 1 when the call wrote, else 0. */

/* Sets one value without a lock. A name that no parameter has is skipped (0, flag 0).
 * Results: 0; 1 URL too long; 8 no property file; 10 null `url`, malformed file; -1 any failure of
 * the write, a null name or value, a line feed in the value; the flag is then untouched. */
uint32_t zrcfg_exportsingleparamval(const char *url, const char *name, const char *value, int mode,
                                    uint8_t *pWriteFlag);

/* Sets the values named in `list` with one write of the file, which is made even when all are held
 * back. Values are cut to 255 characters. Each node of an existing parameter receives in `changed`
 * whether it was written, and then the parameter's attributes; `old_value` is not filled.
 * Lock: exclusive. Results as for zrcfg_setmultiparamval. */
uint32_t zrcfg_exportmultiparamval(const char *url, ParamValueEntry *list, int timeout, int mode);

/* Creates the instance that `pUrl` names (with or without a final dot). An instance that exists is
 * deleted first, by a nested zrcfg_delobject with a time-out of 3000 ms: under the lock that this
 * call holds it fails with 9, so replacing needs ZRCFG_NO_LOCK.
 * Lock: that of the template, then the parent's. Results: 0; 1 no instance URL, or too long; 2
 * fixed table, or no template; 4 number above the limit; 8, 9, 10 as for creation; 17 the template
 * could not be copied; 18 the instance that was there could not be removed; those of the counter's
 * update, the new instance is then removed again. An instance that exists above the limit is deleted
 * all the same before 4 is returned. */
uint32_t zrcfg_exportaddobject(const char *pUrl, int timeout, int mode, uint8_t *pWriteFlag);

/* Deletes the instance that `pUrl` names. Results as for zrcfg_exportaddobject, 1 also for a missing
 * instance, 18 when it could not be opened. The instance stays deleted when the counter cannot be
 * updated. */
uint32_t zrcfg_exportdelobject(const char *pUrl, int timeout, int mode, uint8_t *pWriteFlag);

/* ---- Locks --------------------------------------------------------------------------------- */

/* Takes the lock of object `url`. `*fd` receives the descriptor that holds it (close-on-exec), or
 * -1 (not touched for a null `url`); with ZRCFG_NO_LOCK an open descriptor without a lock. Release
 * it with zrcfg_releaselock. Results: 0; 1 URL too long; 10 null `url`; -1 any other failure. */
uint32_t zrcfg_lockurl(const char *url, int *fd, int timeout, uint32_t rwType);

/* Tests for a lock on the directory of object `url`: 0 free, 1 locked, not to be opened, or URL too
 * long; 10 null. The locks of this library lie on property files, so this call does not see them. */
uint32_t zrcfg_islock(const char *url);

/* Releases a lock and closes its descriptor; -1 does nothing. Returns 0, or -1 with errno when the
 * descriptor cannot be closed. */
int zrcfg_releaselock(int fd);

/* ---- Attributes of parameters -------------------------------------------------------------- */

/* What a list call reads or writes for each node (`mode`); `pAttr` points at the type named. A mode
 * that is not one of the call's does nothing to the node (a writing call rewrites its record). */
#define ZRCFG_ATTR_GET_ALL 16        /* ParamAttr, but for its reserved byte */
#define ZRCFG_ATTR_GET_NOTI 17       /* uint8_t */
#define ZRCFG_ATTR_GET_ACCESSLIST 18 /* char[16] */
#define ZRCFG_ATTR_SET_ALL 19        /* ParamAttr; which of its fields, see each call */
#define ZRCFG_ATTR_SET_NOTI 20       /* uint8_t, low 4 bits */
#define ZRCFG_ATTR_SET_ACCESSLIST 21 /* char[16] */
#define ZRCFG_ATTR_SET_CHANGE 22     /* ParamAttrChange */
#define ZRCFG_ATTR_GET_FLAGS 23      /* the node's own flags and inform_dbus; no `pAttr` */

/* Attribute numbers of the calls that take an attribute as text: 0 flash_rw, 1 hide, 2 rw, 3 noti,
 * 4 noti_rw, 5 inform_dbus, 6 key, 7 encryt, 8 device_type, 9 type, 10 accesslist, 11 area,
 * 12 namechange, 13 flash_encryt, 15 inform_tr069, 16 param_check. The text is a decimal number, of
 * which the field's low bits are taken; for 10 and 11 a text of at most 15 and 27 characters, longer
 * ones are cut. Any other number is accepted and changes nothing. */

/* Results of all below: 1 URL too long; 8 no property file; 9 lock not obtained; 10 null argument,
 * malformed file; and those named. Reading takes the shared lock, writing the exclusive one, unless
 * said otherwise. A write that the medium refuses is logged, not reported. */

/* Reads all attributes of parameter `name`; 0, or 5 when there is no such parameter. Hidden
 * parameters are served too. The reserved byte of `*attr` is left as it was. */
uint32_t zrcfg_getsingleparamattr(const char *url, const char *name, ParamAttr *attr, int timeout);

/* The same for a full parameter path; -1 when it cannot be split. */
uint32_t zrcfg_getsingleparamattr_ext(const char *path, ParamAttr *attr, int timeout);

/* Reads attributes of the parameters named in `list`; unknown names are skipped. 0; 10 also for a
 * null `pAttr` that the mode needs, before anything is filled; 14 list too long, the first 1001
 * nodes are filled. Modes 16, 17, 18, 23. */
uint32_t zrcfg_getmultiparamattr(const char *url, MultiAttrNode *list, int mode, int timeout);

/* Lists the attributes of all visible parameters in file order: headTail[0] and headTail[1] receive
 * the first and the last node, null when all are hidden. `url` stands before each name as given.
 * 0; 1 also when the object is hidden; 15 no memory; 16 object without parameters. */
uint32_t zrcfg_getallparamattr(const char *url, ParamAttrNode *headTail[2], int ignored,
                               int timeout);

/* Changes attributes of parameter `name`; 0, or 12 when there is no such parameter. Modes 19 (all
 * fields but device_type and area), 20, 21, 22. */
uint32_t zrcfg_setsingleparamattr(const char *url, const char *name, const void *input, int mode,
                                  int timeout);

/* Changes one attribute, given by number and text; results as above. */
uint32_t zrcfg_setsingleparamattr_ext(const char *url, const char *name, int attrId,
                                      const char *text, int timeout);

/* The same for a full parameter path: 0, or -1 for any failure. */
int zrcfg_singleparamattr_set_ext(const char *path, int attrId, const char *text, int timeout);

/* Changes attributes of the parameters named in `list`; unknown names are skipped. 0; 10 also for a
 * null `pAttr` that the mode needs, before anything is written; 14 list too long, the first 1001
 * nodes are written. Modes 19 (all fields but param_check, which is handed back in the node's
 * ParamAttr), 20, 21. */
uint32_t zrcfg_setmultiparamattr(const char *url, MultiAttrNode *list, int mode, int timeout);

/* Applies one change to all parameters of the object, hidden ones included. 0, or 16 for an object
 * without parameters. Takes the shared lock only: it does not exclude readers. */
uint32_t zrcfg_setallParamattr(const char *url, const ParamAttrChange *change, int timeout);

/* ---- Attributes of objects ----------------------------------------------------------------- */

/* Reads an object's attributes, of hidden objects too. The reserved bytes of `*attr` are left as
 * they were. 0 or the codes above. */
uint32_t zrcfg_getobjattr(const char *url, ObjAttr *attr, int timeout);

/* Changes one attribute of an object: 0 flag0, 1 hide, 2 rw, 3 level3, 4 key, 5 max_instance,
 * 10 level7, 11 flag9, 13 flag8, 14 flag11; the text is a decimal number, of which the field's low
 * bits are taken. Any other number is accepted and changes nothing. 0 or the codes above. */
uint32_t zrcfg_setsingleobjattr_ext(const char *url, int attrId, const char *text, int timeout);

/* ---- The tree ------------------------------------------------------------------------------ */

/* Lists the names of the object's sub-objects: numbers first by value, then names in byte order,
 * without the template "0"; hidden ones are listed too. `*ppList` receives the first node, null when
 * there is none. Takes the shared lock with one try. 0; 1 URL too long, directory not readable; 9
 * lock not obtained, no lock file; 10 null `url`; 15 no memory. */
uint32_t zrcfg_getallsubobj(const char *url, SubObjName **ppList);

/* Lists the visible sub-objects, in the same order, with URL and access right; those without a
 * property file, or locked beyond the time-out, are left out. Each is opened under its own shared
 * lock. 0; 1 URL too long, directory not readable; 10 null `url`. */
int zrcfg_getsubobjinfo(const char *url, NODE_INFO **ppHead, NODE_INFO **ppTail, int timeout);

/* Lists the object and its visible parameters with their access rights. 0; 1 URL too long, object
 * hidden; 8 no property file; 9 lock not obtained; 10 null `url`, malformed file; 15 no memory. */
uint32_t zrcfg_getallnodeinfo(const char *url, NODE_INFO **ppHead, NODE_INFO **ppTail, int timeout);

/* Lists the object, its visible parameters and its visible sub-objects; with `recursive` the whole
 * tree below it, each object followed by its parameters and then its sub-objects. Hidden objects are
 * left out with all below them. No lock is held across the walk, and the sub-objects of an object are
 * looked for with a single try for its lock, whatever the time-out: while another holds that, they
 * are missing. 0, or -1 with nothing stored. Free the list with zrcfg_allnode_free. */
int zrcfg_allnode_get(const char *url, int recursive, NODE_INFO **ppHead, int timeout);

/* Frees a list of NODE_INFO; null is allowed. Always 0. */
uint32_t zrcfg_allnode_free(NODE_INFO *head);

/* Takes the instance numbers out of an object URL: `pIds` (nine words at least) receives their
 * count and then the numbers, eight at most and of seven digits at most. Returns the count; 0 with
 * nothing written for null. */
uint32_t zrcfg_getobjidbyobjpath(const char *objPath, uint32_t *pIds);

/* ---- WAN connections ----------------------------------------------------------------------- */

/* A user index numbers WAN connections from 1: each connection device owns a block of twice the
 * table's limit, first for its IP connections, then for its PPP connections. The calls return 0, or
 * -1 for any failure, limits of 0 and null arguments included. */

/* Replaces the instance numbers of a URL by "x" and collects them. At most ten components count;
 * the text is cut to 127 characters. */
int xmlurl_transform(const char *url, instanceStack *stack);

/* The limits of instances of WANConnectionDevice and of connections below it. 0, or the codes of
 * zrcfg_getobjattr with the output untouched. */
uint32_t zrcfg_GetMaxWanNum(uint32_t *number);
uint32_t zrcfg_GetMaxConNum(uint32_t *number);

/* URL of (or below) a connection, of whatever WAN device, to connection index. `*index` is cleared
 * when the URL has three numbers but is no connection's. */
int zrcfg_getwanconindexfromxmlurl(const char *url, WanConIndex *index);

/* Connection index to user index; `*userIndex` is 0 on failure, and for an unknown `conType`. */
int zrcfg_getusrindexbywanconindex(const WanConIndex *index, uint32_t *userIndex);

/* URL to user index; `*userIndex` is 0 on failure. */
int zrcfg_getusrindexfromxmlurl(const char *url, uint32_t *userIndex);

/* User index to connection index; the limit of connection devices is not looked at. */
int zrcfg_getwanconindexbyusrindex(uint32_t userIndex, WanConIndex *index);

/* ---- File logger --------------------------------------------------------------------------- */

/* Settings, read at every call. The library's own diagnostics do not go here. */
extern char zrcfg_log_file_path[64]; /* "/var/zrcfg.log" */
extern int zrcfg_log_size;           /* KiB beyond which the log is rotated; 2000 */
extern int zrcfg_log_out_mode;       /* 0 standard error, 1 file, 2 both; 1 */

/* Creates the log file and the writers' mutex; 0, or -1 when there can be no mutex. */
int init_zrcfg_logger(void);

/* Writes "<time>,<where>[<line>]: " and the formatted text, which brings its own line feed, when
 * the file "/usr/local/zr/log_switch/zrcfg_log_enable" exists. A log larger than the limit is first
 * moved to "/var/zrcfg.log.bak". `level` is not used. 0 written or switched off; -1 log file not to
 * be opened. The first call initialises; threads that share the logger call init_zrcfg_logger
 * before. */
int zrcfg_logger(int level, const char *where, int line, const char *fmt, ...)
    __attribute__((format(printf, 4, 5)));

/* ---- Settings and codecs ------------------------------------------------------------------- */

/* Reads the option "value" of the section named `key` from the UCI file `filePath` (an absolute
 * path). Bytes of `key` other than letters, digits and "_" count as "_", and 256 of them at most.
 * The text "UCI_NULL" stands for the empty value. At most `outLen` bytes are written to `out`,
 * zero-padded; a value of `outLen` characters or more is cut without a terminator, so clear the
 * buffer and pass one byte less. 0, or -1 with `out` untouched: null argument, file not to be
 * loaded, no such section with a string option "value". */
int zrcfg_uci_get_config(const char *filePath, const char *key, char *out, unsigned outLen);

/* Base64 (RFC 4648) of `inLen` bytes, with padding and terminator: `out` holds
 * 4 * ((inLen + 2) / 3) + 1 bytes. An `inLen` of 0 or less gives "". Always 0; -1 for null. */
int zrcfg_encryp_string(const char *in, char *out, int inLen);

/* Decodes base64 text in groups of four characters, up to its terminator. Writes at most `outSize`
 * bytes and no terminator; returns their number; -1 for null. Characters outside the alphabet are
 * not refused, they decode to bytes without meaning. */
int zrcfg_dencryp_string(const char *in, char *out, int outSize);

/* Writes `len` bytes as 2 * len upper-case hexadecimal digits without terminator; returns `len`;
 * -1 for null. */
int hex_to_ascii(const unsigned char *in, char *out, int len);

/* Reads `len` hexadecimal digits of either case into len / 2 bytes; returns len / 2. -1 when `len`
 * is odd or negative, a pointer is null, or a character is no digit; bytes before it are then
 * written. */
int ascii_to_hex(const char *in, unsigned char *out, int len);

/* The device's encryption mode: setting "cfg_encrypt_mode" of the UCI file
 * "/zrrom/zrconf/status_version_flag", as a decimal number; 2 when it cannot be read. Read once per
 * process, and again at each call as long as it is 0. */
int zrcfg_get_encryptmode(void);

/* Splits an encryption mode into its selectors. A null `info` does nothing. */
void zrcfg_get_crytoinfo_from_encryptmode(int mode, CryptoInfo *info);

/* Marks this process as the TR-069 process; always 0. */
int zrcfg_init_tr069_process_flag(void);

/* 1 when this process was marked, else 0. */
int zrcfg_get_tr069_process_flag(void);

#ifdef __cplusplus
}
#endif

#endif /* ZRCFG_H_ */
