"""What run tells CI systems and a terminal, and what becomes of its processes.

run.py ZOOMREPLAY
"""
import fcntl
import os
import pty
import signal
import subprocess
import sys
import tempfile
import termios
import time
import xml.etree.ElementTree

ZOOMREPLAY = sys.argv[1]
LINE = '{"op": "getZoomOverrideMode"}\n'
RESULT = '{"line": 1, "op": "getZoomOverrideMode", "result": 0}\n'


def write(name, data):
    with open(name, "wb") as file:
        file.write(data if isinstance(data, bytes) else data.encode())


def test_junit():
    """An XML reader takes it whatever the records hold."""
    odd = b'{"op": "<b>&\x01\xff ]]> \xef\xbf\xbf \xc3\xa4"}\n'
    os.makedirs("junit/expected")
    write("junit/differs.jsonl", LINE + LINE)
    write("junit/expected/differs.jsonl", RESULT)
    for name, text in (("<odd>&\x1b\n.jsonl", odd), ("same.jsonl", LINE), ("torn.jsonl", LINE + "{")):
        write("junit/" + name, text)
        write("junit/expected/" + name, RESULT)
    run = subprocess.run([ZOOMREPLAY, "run", "junit", "--compare-to", "junit/expected", "--junit", "j.xml"],
                         capture_output=True, check=False)
    assert run.returncode == 2, run
    suite = xml.etree.ElementTree.parse("j.xml").getroot().find("testsuite")
    assert [suite.get(count) for count in ("tests", "failures", "errors")] == ["4", "1", "1"]
    odd, differs, same, torn = suite
    assert (odd.get("classname"), odd.get("name")) == ("junit", "<odd>&??.jsonl")
    assert odd.find("error").get("type") == "broken"
    assert odd.find("error").get("message").startswith("junit/<odd>&??.jsonl:1: "), odd.find("error").attrib
    assert differs.find("failure").get("message") == (
        "junit/differs.jsonl:2: getZoomOverrideMode: expected no result, got one")
    assert "1 result differs" in differs.find("failure").text
    assert [child.tag for child in same] == ["system-out"]
    assert "torn.jsonl:2: cut off" in torn.find("system-err").text
    assert os.listdir(".").count("j.xml") == 1 and not [name for name in os.listdir(".") if "part" in name]


def start(*arguments, stderr=subprocess.PIPE):
    return subprocess.Popen([ZOOMREPLAY, "run", *arguments], stdout=subprocess.PIPE, stderr=stderr, text=True,
                            env={**os.environ, "TERM": "xterm"})


def open_for_writing(fifo):
    """Once a child waits for what it has to replay."""
    return os.open(fifo, os.O_WRONLY)


def is_read(pipe):
    try:
        os.write(pipe, b"\n")
        return True
    except BrokenPipeError:
        return False


def wait_until_read(pipe, process):
    """Until the process has done what the pipe held, and waits for more."""
    while True:
        unread = fcntl.ioctl(pipe, termios.FIONREAD, b"\0" * 4)
        with open(f"/proc/{process}/stat", encoding="ascii") as stat:
            if unread == b"\0" * 4 and stat.read().rsplit(") ", 1)[1].startswith("S"):
                return
        time.sleep(0.01)


def test_killed_child():
    """It is told, with the line, and the others go on."""
    write("plain.jsonl", LINE)
    run = start("fifo.jsonl", "plain.jsonl", "--jobs", "1")
    pipe = open_for_writing("fifo.jsonl")
    os.write(pipe, (LINE * 3).encode())
    with open(f"/proc/{run.pid}/task/{run.pid}/children", encoding="ascii") as children:
        child = int(children.read())
    wait_until_read(pipe, child)
    os.kill(child, signal.SIGKILL)
    out, err = run.communicate()
    os.close(pipe)
    assert run.returncode == 3
    assert out.splitlines()[1:] == [
        "       0           0          0           0      0            -  killed   fifo.jsonl",
        "       0           0          0           0      0            -  ok       plain.jsonl",
        "2 records: 1 ok, 1 killed"], out
    assert err == "fifo.jsonl:3: the process was killed by signal 9, Killed\n", err


def test_end_from_outside():
    """The children end, too, and nothing is left behind."""
    write("j.xml", "old")
    for end in (signal.SIGINT, signal.SIGTERM, signal.SIGKILL):
        before = sorted(os.listdir("."))
        run = start("fifo.jsonl", "--junit", "j.xml")
        pipe = open_for_writing("fifo.jsonl")
        run.send_signal(end)
        run.communicate()
        assert run.returncode == -end
        deadline = time.monotonic() + 10
        while is_read(pipe) and time.monotonic() < deadline:
            time.sleep(0.01)
        assert not is_read(pipe)
        os.close(pipe)
        assert sorted(os.listdir(".")) == before
        with open("j.xml", encoding="ascii") as file:
            assert file.read() == "old"


def test_progress():
    """On a terminal, and gone when the rows come."""
    ours, theirs = pty.openpty()
    run = start("fifo.jsonl", "plain.jsonl", stderr=theirs)
    os.close(theirs)
    pipe = open_for_writing("fifo.jsonl")
    shown = os.read(ours, 4096)
    assert b"1 of 2 records" in shown, shown
    os.close(pipe)
    run.communicate()
    assert run.returncode == 0
    assert os.read(ours, 4096).endswith(b"\r\x1b[K")


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        os.mkfifo("fifo.jsonl")
        test_junit()
        test_killed_child()
        test_end_from_outside()
        test_progress()
        os.chdir("/")


main()
