"""What run tells CI systems and a terminal, and what becomes of its processes.

run.py ZOOMREPLAY
"""
import fcntl
import os
import pty
import re
import signal
import subprocess
import sys
import tempfile
import termios
import time
import xml.etree.ElementTree

from pseudoterminal import read_all

ZOOMREPLAY = sys.argv[1]
LINE = '{"op": "getZoomOverrideMode"}\n'
RESULT = '{"line": 1, "op": "getZoomOverrideMode", "result": 0}\n'


def write(name, data):
    with open(name, "wb") as file:
        file.write(data if isinstance(data, bytes) else data.encode())


SENSOR = '{"op": "sensor", "id": 0, "modes": {"1": {"size": [2304, 1296], "window": [0, 0, 4608, 2592]}}}\n'
# The crop of request 1 fits; request 2 lacks its sensor, which is an exception.
SETTING = '"setting": {"overrideValid": true, "requestNo": 9, "zoomRatio": 2, "previewAaCrops": {"0": [0, 0, 8, 8]}}'
TWO = SENSOR + """{"op": "initialize", "mode": "ByRequest"}
{"op": "storeOverrideSetting", "requestNo": 1, %s}
{"op": "setRunTimeCropNeedData", "requestNo": 1, "sensorModes": {"0": 1}}
{"op": "getP2CropSetting", "requestNo": 1, "zoomRatio": 1}
{"op": "setRunTimeCropNeedData", "requestNo": 2}
{"op": "getP2CropSetting", "requestNo": 2, "zoomRatio": 1}
""" % SETTING


def write_junit_records():
    os.makedirs("junit/sub")
    os.makedirs("junit/expected/sub")
    records = {"<odd>&\x1b\n.jsonl": b'{"op": "<b>&\x01\xff ]]> \xef\xbf\xbf \xc3\xa4"}\n', "differs.jsonl": LINE + LINE,
               "same.jsonl": LINE, "torn.jsonl": LINE + "{",
               "sub/fatal.jsonl": '{"op": "getHistoryCropNeedData", "requestNo": 9}\n', "sub/two.jsonl": TWO}
    for name, text in records.items():
        write("junit/" + name, text)
        write("junit/expected/" + name, RESULT)
    write("plain.jsonl", LINE)
    write("junit/expected/plain.jsonl", RESULT)
    for name in ("sub/fatal.jsonl", "sub/two.jsonl"):
        subprocess.run([ZOOMREPLAY, "junit/" + name, "-o", "junit/expected/" + name], check=False, stderr=subprocess.DEVNULL)


def junit_case(folder, name, counts, *trouble, said=""):
    """A test of the XML: elements as tags, attributes, texts."""
    texts = [("system-out", {}, "%d requests, %d overridden, %d corrected, %d exceptions, %d fatal, %d differences" % counts)]
    if said:
        texts.append(("system-err", {}, said))
    return [("testcase", {"classname": folder, "name": name}, ""), *trouble, *texts]


def trouble(tag, kind, message, text):
    return (tag, {"type": kind, "message": message}, text)


def test_junit():
    """An XML reader takes it whatever the records hold; rows, messages and tests tell the same."""
    write_junit_records()
    run = subprocess.run([ZOOMREPLAY, "run", "junit", "plain.jsonl", "junit/same.jsonl", "--compare-to", "junit/expected",
                          "--junit", "j.xml"], capture_output=True, check=False, text=True)
    assert run.returncode == 3, run
    odd = ("junit/<odd>&??.jsonl:1: column 13: invalid string: control character U+0001 (SOH) must be escaped to "
           "\\u0001")
    differs = "junit/differs.jsonl:2: getZoomOverrideMode: expected no result, got one"
    fatal = "junit/sub/fatal.jsonl:1: getHistoryCropNeedData: the library stopped the process"
    torn = "junit/torn.jsonl:2: cut off; the record ends with the line before"
    library = "\n".join(line for line in run.stderr.splitlines() if "feature/" in line)
    assert "req(9) not exist" in library
    assert run.stderr.splitlines() == [odd, differs, "1 result differs, in 0 requests", *library.splitlines(), fatal, torn]
    assert run.stdout == """\
requests  overridden  corrected  exceptions  fatal  differences  result   record
       0           0          0           0      0            0  broken   junit/<odd>&??.jsonl
       0           0          0           0      0            1  differs  junit/differs.jsonl
       0           0          0           0      0            0  ok       junit/same.jsonl
       0           0          0           0      1            0  fatal    junit/sub/fatal.jsonl
       2           1          0           1      0            0  ok       junit/sub/two.jsonl
       0           0          0           0      0            0  ok       junit/torn.jsonl
       0           0          0           0      0            0  ok       plain.jsonl
7 records: 4 ok, 1 differs, 1 broken, 1 fatal
""", run.stdout
    root = xml.etree.ElementTree.parse("j.xml").getroot()
    times = [node.attrib.pop("time") for node in root.iter() if node.tag in ("testsuite", "testcase")]
    assert all(re.fullmatch(r"\d+\.\d{3}", time) for time in times), times
    whole, *each = map(float, times)
    assert abs(whole - sum(each)) < 0.01, times
    told = [(node.tag, node.attrib, (node.text or "").strip()) for node in root.iter()]
    assert told == [
        ("testsuites", {}, ""),
        ("testsuite", {"name": "zoomreplay", "tests": "7", "failures": "1", "errors": "2"}, ""),
        *junit_case("junit", "<odd>&??.jsonl", (0, 0, 0, 0, 0, 0), trouble("error", "broken", odd, odd)),
        *junit_case("junit", "differs.jsonl", (0, 0, 0, 0, 0, 1),
                    trouble("failure", "differs", differs, differs + "\n1 result differs, in 0 requests")),
        *junit_case("junit", "same.jsonl", (0, 0, 0, 0, 0, 0)),
        *junit_case("junit/sub", "fatal.jsonl", (0, 0, 0, 0, 1, 0), trouble("error", "fatal", fatal, library + "\n" + fatal)),
        *junit_case("junit/sub", "two.jsonl", (2, 1, 0, 1, 0, 0)),
        *junit_case("junit", "torn.jsonl", (0, 0, 0, 0, 0, 0), said=torn),
        *junit_case(".", "plain.jsonl", (0, 0, 0, 0, 0, 0)),
    ], told
    readable, writable = os.pipe()
    os.close(readable)  # as that of head does
    subprocess.run([ZOOMREPLAY, "run", "plain.jsonl", "--junit", "k.xml"], check=True, stdout=writable)
    assert os.path.exists("k.xml")
    assert os.listdir(".").count("j.xml") == 1 and not [name for name in os.listdir(".") if "part" in name]


def start(*arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE, term="xterm"):
    return subprocess.Popen([ZOOMREPLAY, "run", *arguments], stdout=stdout, stderr=stderr, text=True,
                            env={**os.environ, "TERM": term})


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
    run = start("fifo.jsonl", "plain.jsonl", "--jobs", "2")
    pipe = open_for_writing("fifo.jsonl")
    os.write(pipe, (LINE * 3).encode())
    with open(f"/proc/{run.pid}/task/{run.pid}/children", encoding="ascii") as children:
        child = int(children.read().split()[0])
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


def read_until(terminal, part):
    """A terminal gives what it got in pieces."""
    shown = b""
    while part not in shown:
        shown += os.read(terminal, 4096)
    return shown


def test_terminal():
    """The progress goes when the rows come, and what is not well is red. A dumb terminal gets none of it."""
    dumb, theirs = pty.openpty()
    dumb_run = start("dumb.jsonl", "plain.jsonl", "--jobs", "1", stderr=theirs, term="dumb")
    os.close(theirs)
    dumb_pipe = open_for_writing("dumb.jsonl")
    ours, theirs = pty.openpty()
    run = start("fifo.jsonl", "./junit/sub/fatal.jsonl", "plain.jsonl", "--jobs", "1", "--junit", "j.xml", stderr=theirs)
    os.close(theirs)
    pipe = open_for_writing("fifo.jsonl")
    assert b"\r 62 %  1 of 3 records\x1b[K" in read_until(ours, b"1 of 3 records\x1b[K")
    os.close(dumb_pipe)  # more than a second after it began, and another record follows
    assert read_all(dumb) == ""
    dumb_run.communicate()
    os.close(pipe)
    assert "\r\x1b[K" in read_all(ours)
    out = run.communicate()[0]
    assert "\x1b" not in out and run.returncode == 3
    root = xml.etree.ElementTree.parse("j.xml").getroot()
    timed = [node.get("time") for node in root.iter() if node.get("time")]
    whole, fatal, waiting, *others = map(float, timed)
    assert whole >= waiting >= 1 and waiting > max(fatal, *others), timed
    counts = [node.text for node in root.iter("system-out")]
    assert counts[1] == "0 requests, 0 overridden, 0 corrected, 0 exceptions, 0 fatal", counts

    ours, theirs = pty.openpty()
    run = start("junit/sub/fatal.jsonl", "plain.jsonl", stdout=theirs)
    os.close(theirs)
    shown = read_all(ours)
    run.communicate()
    assert shown.replace("\r", "").splitlines()[1:] == [
        "       0           0          0           0      1            -  \x1b[31mfatal    \x1b[0mjunit/sub/fatal.jsonl",
        "       0           0          0           0      0            -  ok       plain.jsonl",
        "2 records: 1 ok, 1 fatal"]


def main():
    signal.signal(signal.SIGINT, signal.default_int_handler)  # who starts the tests may ignore it
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        os.mkfifo("fifo.jsonl")
        os.mkfifo("dumb.jsonl")
        test_junit()
        test_killed_child()
        test_end_from_outside()
        test_terminal()
        os.chdir("/")


main()
