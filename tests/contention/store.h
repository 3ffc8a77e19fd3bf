// The store that the workers share, and the values that they leave in it.
#ifndef ZRCFG_TESTS_CONTENTION_STORE_H_
#define ZRCFG_TESTS_CONTENTION_STORE_H_

#include <stdint.h>

#include <string>

namespace contention {

inline constexpr char kTop[] = "Top.";
inline constexpr char kTable[] = "Top.Dynamic.";
inline constexpr char kCounter[] = "DynamicNumberOfEntries";
inline constexpr char kOwner[] = "Owner";

// Top. with a table of instances that come and go, and Top.Values.1. and so on with one parameter
// for each worker.
void make_store(unsigned workers);

// URL of an instance, from 0, of the table whose values are written.
std::string value_url(unsigned instance);
// The parameter that only this worker writes.
std::string value_name(unsigned worker);

// A worker's value for a sequence number: its length and its letters follow from the number, so
// that no mixture of two of them and no other worker's passes.
std::string value_text(unsigned worker, unsigned instance, uint64_t sequence);

// The sequence number of such a text; -1 when it is none.
int64_t sequence_of(const std::string &text, unsigned worker, unsigned instance);

}  // namespace contention

#endif  // ZRCFG_TESTS_CONTENTION_STORE_H_
