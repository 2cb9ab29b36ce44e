"""How the table looks on a terminal, and what becomes of a reader that goes away. And the progress.

terminal.py ZOOMREPLAY SCENARIO: the scenario has crops for several ports.
"""
import fcntl
import os
import pathlib
import pty
import re
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unicodedata

from pseudoterminal import read_all


def show(command, columns, **environment):
    """What the command writes to a terminal of that width."""
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
    clean = {name: value for name, value in os.environ.items() if name not in ("NO_COLOR", "TERM")}
    process = subprocess.Popen(command, stdout=theirs, env={**clean, "TERM": "xterm", **environment})
    os.close(theirs)
    text = read_all(ours)
    assert process.wait() == 0
    return text


def show_progress(zoomreplay):
    """What stands on a terminal while a scenario comes slowly and the results go elsewhere."""
    ours, theirs = pty.openpty()
    process = subprocess.Popen([zoomreplay, "-", "-o", os.devnull], stdin=subprocess.PIPE, stdout=theirs, stderr=theirs,
                               env={**os.environ, "TERM": "xterm"})
    os.close(theirs)
    line = b'{"op": "getZoomOverrideMode"}\n'
    process.stdin.write(line * 255)
    process.stdin.flush()
    while fcntl.ioctl(process.stdin, termios.FIONREAD, b"\0" * 4) != b"\0" * 4:
        time.sleep(0.01)
    time.sleep(1.1)  # from when it reads; nobody wants to know before
    process.stdin.write(line)
    process.stdin.close()
    assert process.wait() == 0
    return read_all(ours)


def show_part(zoomreplay):
    """What stands there while nobody takes the results of a file of two chunks."""
    ours, theirs = pty.openpty()
    with tempfile.NamedTemporaryFile() as scenario:
        scenario.write(b'{"op": "getZoomOverrideMode"}\n' * 4096)
        scenario.flush()
        process = subprocess.Popen([zoomreplay, scenario.name, "-o", "-"], stdout=subprocess.PIPE, stderr=theirs,
                                   env={**os.environ, "TERM": "xterm"})
        os.close(theirs)
        process.stdout.read(1)
        time.sleep(1.1)
        process.communicate()
    assert process.returncode == 0
    return read_all(ours)


def pieces(zoomreplay):
    """What a pipe gets at a time: each piece keeps to itself."""
    readable, writable = os.pipe2(os.O_DIRECT)
    process = subprocess.Popen([zoomreplay, "-", "-o", "-"], stdin=subprocess.PIPE, stdout=writable)
    os.close(writable)
    process.stdin.write(b'{"op": "getZoomOverrideMode"}\n' * 200)
    process.stdin.close()
    while piece := os.read(readable, 1 << 16):
        yield piece
    os.close(readable)
    assert process.wait() == 0


def check_answers(zoomreplay):
    """A pipeline may wait for an answer before it sends its next line."""
    with subprocess.Popen([zoomreplay, "-", "-o", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
        for line in (b"1", b"2"):
            process.stdin.write(b'{"op": "getZoomOverrideMode"}\n')
            process.stdin.flush()
            assert process.stdout.readline().startswith(b'{"line": ' + line)
    assert process.returncode == 0


def show_name(zoomreplay, name):
    return subprocess.run([zoomreplay, name], capture_output=True, text=True).stderr.rsplit(": cannot open: ")[0]


def main():
    command = sys.argv[1:]
    narrow, wide = show(command, 80, NO_COLOR="1"), show(command, 200, NO_COLOR="1")
    assert max(map(len, narrow.splitlines())) <= 80, narrow
    assert show(command, 40, NO_COLOR="1") == narrow
    untold, file = show(command, 0, NO_COLOR="1"), subprocess.run(command, capture_output=True, text=True).stdout
    assert untold.replace("\r\n", "\n") == file, untold
    expected = pathlib.Path(command[1]).with_suffix(".wide").read_text()
    assert show(command, 150, NO_COLOR="1").replace("\r\n", "\n") == expected
    assert len(wide.splitlines()) < len(narrow.splitlines()), wide
    assert "\x1b[" not in narrow + show(command, 100, TERM="dumb")
    coloured = show(command, 100)
    for word in ("\x1b[32moverride \x1b[0m", "\x1b[2mno       \x1b[0m", "\x1b[31mgetP2CropSetting: exception"):
        assert word in coloured, coloured

    progress = show_progress(command[0])
    assert re.fullmatch(r"\r256 lines  \d+ lines/s\x1b\[K\r\x1b\[K", progress), repr(progress)

    part = show_part(command[0])
    assert re.match(r"\r( 53|100) %  \d+ lines/s\x1b\[K\r", part), repr(part)

    assert all(piece.endswith(b"\n") for piece in pieces(command[0]))
    check_answers(command[0])

    # Characters that steer, hide or turn around what stands beside them, and their neighbours that do not.
    steering = [code for code in range(1, 0x110000) if unicodedata.category(chr(code)) in ("Cc", "Cf", "Zl", "Zp")]
    assert show_name(command[0], "".join(map(chr, steering))) == "?" * len(steering)
    beside = "".join(chr(code) for code in sorted({code + by for code in steering for by in (-1, 1)} - {0, *steering})
                     if unicodedata.category(chr(code)) not in ("Cn", "Cs"))
    assert show_name(command[0], beside) == beside

    why = show([command[0], "why", command[1], "1"], 90)
    assert 80 < max(map(len, why.splitlines())) <= 90, why

    readable, writable = os.pipe()
    os.close(readable)
    closed = subprocess.run(command, stdout=writable, stderr=subprocess.PIPE)
    assert (closed.returncode, closed.stderr) == (0, b""), closed


main()
