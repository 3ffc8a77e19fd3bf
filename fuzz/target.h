// What a target provides: the two functions that libFuzzer, and the program that replays, call.
#ifndef ZRCFG_FUZZ_TARGET_H_
#define ZRCFG_FUZZ_TARGET_H_

#include <stddef.h>
#include <stdint.h>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

#endif  // ZRCFG_FUZZ_TARGET_H_
