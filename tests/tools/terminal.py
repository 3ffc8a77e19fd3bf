"""Types at a program on a terminal of its own.

Usage: terminal.py PROGRAM [ARGUMENT...], with steps on standard input, one a line:
  > TEXT      type a Python string literal's content
  < TEXT      wait until this has been shown behind what was waited for before
  ! TEXT      check that this has not been shown since the last step that typed
  end         wait for the end of the program
Prints its exit code, or what went wrong with all that was shown.
"""
import ast
import os
import pty
import select
import sys
import time

PATIENCE = 20  # Seconds; emulation is slow.


class Session:
    def __init__(self, argv):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.execvp(argv[0], argv)
        self.shown = b""
        self.seen = 0
        self.typed = 0

    def read(self):
        """Whether there was something more to read."""
        ready, _, _ = select.select([self.terminal], [], [], 0.1)
        if not ready:
            return True
        try:
            data = os.read(self.terminal, 65536)
        except OSError:
            data = b""
        self.shown += data
        return data != b""

    def wait(self, text):
        deadline = time.monotonic() + PATIENCE
        while True:
            at = self.shown.find(text, self.seen)
            if at >= 0:
                self.seen = at + len(text)
                return
            if time.monotonic() > deadline or not self.read():
                raise AssertionError("not shown: %r" % text)

    def type(self, text):
        self.typed = len(self.shown)
        os.write(self.terminal, text)

    def end(self):
        deadline = time.monotonic() + PATIENCE
        while self.read():
            if time.monotonic() > deadline:
                raise AssertionError("does not end")
        _, status = os.waitpid(self.process, 0)
        return os.waitstatus_to_exitcode(status)


def main():
    session = Session(sys.argv[1:])
    for line in sys.stdin:
        kind, _, rest = line.rstrip("\n").partition(" ")
        text = ast.literal_eval("b" + rest) if rest else b""
        try:
            if kind == ">":
                session.type(text)
            elif kind == "<":
                session.wait(text)
            elif kind == "!":
                if text in session.shown[session.typed:]:
                    raise AssertionError("shown: %r" % text)
            elif kind == "end":
                print(session.end())
                return
        except AssertionError as error:
            print("%s, in %r" % (error, session.shown))
            return


main()
