// Reads the filters of a store as the device does: sections by name, options, libc's matcher.
#ifndef ZRCFG_TESTS_MKSTORE_FILTER_READER_H_
#define ZRCFG_TESTS_MKSTORE_FILTER_READER_H_

#include <cstdint>
#include <string>
#include <vector>

// The expressions of the file, filter 1 first. Adds a test failure for every line that is neither
// empty, the section of the next number, nor its one option in single quotes.
std::vector<std::string> read_filters(const std::string &path);

// Whether libc compiles the expression and finds it in the value.
bool filter_matches(const std::string &expression, const std::string &value);

#endif  // ZRCFG_TESTS_MKSTORE_FILTER_READER_H_
