// What must hold for any input; a program that finds it broken says so and aborts.
#ifndef ZRCFG_FUZZ_CHECK_H_
#define ZRCFG_FUZZ_CHECK_H_

#include <stddef.h>

namespace zrcfg_fuzz {

// Aborts with the text and the call that was under way when the condition does not hold.
void require(bool condition, const char *text);

// Names what is under way, for the message; the text has to live on.
void set_under_way(const char *name);

// Whether a terminator stands within the field.
bool is_terminated(const char *field, size_t size);

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_CHECK_H_
