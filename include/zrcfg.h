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
#define ZRCFG_LOCK_TEMPLATE 2u  /* exclusive, on the object's template instance "0" */

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

/* Instance numbers of a URL, and the URL with each number replaced by "x". */
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

/* ---- Locks --------------------------------------------------------------------------------- */

/* Takes the lock of object `url`. `*fd` receives the descriptor that holds it (close-on-exec), or
 * -1; with ZRCFG_NO_LOCK an open descriptor without a lock. Release it with zrcfg_releaselock.
 * Results: 0; 1 URL too long; 10 null `url`; -1 any other failure. */
uint32_t zrcfg_lockurl(const char *url, int *fd, int timeout, uint32_t rwType);

/* Tests for a lock on the directory of object `url`: 0 free, 1 locked, not to be opened, or URL too
 * long; 10 null. The locks of this library lie on property files, so this call does not see them. */
uint32_t zrcfg_islock(const char *url);

/* Releases a lock and closes its descriptor; -1 does nothing. Returns 0, or -1 with errno when the
 * descriptor cannot be closed. */
int zrcfg_releaselock(int fd);

#ifdef __cplusplus
}
#endif

#endif /* ZRCFG_H_ */
