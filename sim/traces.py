"""What a run of the agent leaves behind, taken apart: the debugger output on Wine's stderr, and the trace log."""

import re
from dataclasses import dataclass

# Wine raises an exception for each text, narrow or wide, and tells of each once in this form.
_DEBUG_LINE = re.compile(r'warn:seh:dispatch_exception ("(?:[^"\\]|\\.)*")')
_ESCAPES = {"n": "\n", "r": "\r", "t": "\t"}
_CRASHES = ("Unhandled exception", "Unhandled page fault", "unimplemented function", "STATUS_STACK_BUFFER_OVERRUN")


@dataclass(frozen=True)
class TraceLine:
    """One line of the trace log."""

    stamp: str
    ticks: str
    thread: str
    module: str
    line: int
    severity: int
    message: str

    @property
    def text(self) -> str:
        """Severity and message: "3 not valid IO. bye~"."""
        return "%d %s" % (self.severity, self.message)


def parse_log(text: str) -> list[TraceLine]:
    """The lines of a trace log. A message of several lines keeps its line ends."""
    lines = []
    for raw in text.split("\r\n"):
        if not raw:
            continue
        stamp, ticks, thread, source, severity, message = raw.split("\t", 5)
        module, number = source.rsplit(",", 1)
        lines.append(TraceLine(stamp, ticks, thread, module, int(number), int(severity), message))
    return lines


def parse_debugger_output(stderr: str) -> list[str]:
    """The texts that the program wrote to the debugger, in order. Wine cuts each at about 290 characters."""
    return [_unescape(match[1]) for match in _DEBUG_LINE.finditer(stderr)]


def find_crash(stderr: str) -> str | None:
    """The line by which Wine tells of a crash, if there is one."""
    return next((line for line in stderr.splitlines() if any(sign in line for sign in _CRASHES)), None)


def _unescape(quoted: str) -> str:
    def replace(match: re.Match) -> str:
        return chr(int(match[1], 16)) if match[1] else _ESCAPES.get(match[2], match[2])

    return re.sub(r"\\(?:x([0-9a-f]{2})|(.))", replace, quoted[1:-1])
