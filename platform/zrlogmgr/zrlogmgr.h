/* The device's log sink. On a gateway the maker's libzrlogmgr provides it; the host library beside
 * this header stands in for it elsewhere. */
#ifndef ZRLOGMGR_H_
#define ZRLOGMGR_H_

#ifdef __cplusplus
extern "C" {
#endif

/* Logs one message of `module` at `level` (7 is the most detailed), formatted as by printf. */
int zr_mod_log_printf(const char *module, int level, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

#endif /* ZRLOGMGR_H_ */
