// The events that watch prints, one a line, each written out at once.
#ifndef ZRCFG_TOOLS_ZRCFG_WATCH_EVENT_PRINTER_H_
#define ZRCFG_TOOLS_ZRCFG_WATCH_EVENT_PRINTER_H_

#include <stddef.h>

#include "tools/zrcfg/snapshot/difference.h"
#include "tools/zrcfg/watch/stop_signals.h"

namespace zrcfg_tool {

// Each call returns false when the watch is to end: a signal came, also while the reader of the
// output is slow, or standard output cannot be written.
class EventPrinter {
 public:
  EventPrinter(const StopSignals &signals, bool json) : signals_(signals), json_(json) {}

  // All that happens from now on is told.
  bool watching(size_t objects);
  bool difference(const Difference &difference);
  bool damaged(const char *url, const char *reason);
  // The kernel dropped events; what they told is found by reading everything again.
  bool overflow();

  // The same as a sink; what it gets is told by difference().
  DifferenceSink sink();

 private:
  bool begin() const;
  bool end() const;

  const StopSignals &signals_;
  bool json_;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_WATCH_EVENT_PRINTER_H_
