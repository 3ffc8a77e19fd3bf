// The events that watch prints, one a line, each written out at once.
#include "tools/zrcfg/watch/event_printer.h"

#include <stdio.h>
#include <unistd.h>

#include "tools/zrcfg/output.h"

namespace zrcfg_tool {

// An event fits what a pipe takes without waiting.
bool EventPrinter::begin() const {
  return signals_.wait_for(STDOUT_FILENO, POLLOUT, -1);
}

bool EventPrinter::end() const {
  return fflush(stdout) == 0;  // main reports the failure.
}

bool EventPrinter::watching(size_t objects) {
  if (!begin()) {
    return false;
  }
  if (json_) {
    RecordPrinter printer(Form::kJson);
    printer.print(Field::of("event", "watching"));
    printer.print(Field::of("objects", static_cast<uint32_t>(objects)));
  } else {
    printf("watching %zu objects\n", objects);
  }
  return end();
}

bool EventPrinter::difference(const Difference &difference) {
  if (!begin()) {
    return false;
  }
  print_difference(difference, json_);
  return end();
}

bool EventPrinter::damaged(const char *url, const char *reason) {
  if (!begin()) {
    return false;
  }
  if (json_) {
    RecordPrinter printer(Form::kJson);
    printer.print(Field::of("event", "damaged"));
    printer.print(Field::of("path", url));
    printer.print(Field::of("reason", reason));
  } else {
    printf("damaged %s \"%s\"\n", url, reason);
  }
  return end();
}

bool EventPrinter::overflow() {
  if (!begin()) {
    return false;
  }
  if (json_) {
    RecordPrinter printer(Form::kJson);
    printer.print(Field::of("event", "overflow"));
  } else {
    puts("overflow");
  }
  return end();
}

DifferenceSink EventPrinter::sink() {
  return {[](const Difference &difference, void *context) {
            return static_cast<EventPrinter *>(context)->difference(difference);
          },
          this};
}

}  // namespace zrcfg_tool
