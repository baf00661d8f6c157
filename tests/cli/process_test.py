#!/usr/bin/env python3
"""The program as a process: memory, pipes and full disks. Usage: process_test.py CLI MORE_KIB
MORE_KIB: what a huge input may take besides the libraries"""
import os
import resource
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

CLI, MORE_KIB = sys.argv[1], int(sys.argv[2])
LINES = ["convertir", "-t", "3310", "--lineas"]
MELODY = b"x:d=4,o=5,b=9:c\n"


def run_on(file, *arguments):
    """Exit code and peak memory in KiB."""
    with open(file, "rb") as data:
        process = subprocess.Popen([CLI, *arguments], stdin=data, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
    return os.waitstatus_to_exitcode(status), usage.ru_maxrss


def check_memory(home):
    with open(home / "huge", "wb") as huge:
        huge.truncate(100_000_000)  # NULs, and no line end
    (home / "many").write_bytes(MELODY * 100_000)
    _, libraries = run_on("/dev/null", "--version")
    for file, arguments, code in (("huge", LINES[:-1], 1), ("huge", LINES, 0), ("many", LINES, 0)):
        ended, peak = run_on(home / file, *arguments)
        assert ended == code and peak < libraries + MORE_KIB, (file, arguments, ended, peak, libraries)


def check_pipes():
    """A line is answered while the input stays open; the program ends when its reader leaves."""
    with subprocess.Popen([CLI, *LINES], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
        process.stdin.write(MELODY)
        process.stdin.flush()
        assert b"4c2" in process.stdout.readline()
    many = f"yes x:d=4,o=5,b=9:c | timeout 60 {CLI} convertir -t 3310 --lineas"
    for command, codes in ((many + " | head -n 1; exit ${PIPESTATUS[1]}", (3, 141)),  # 141: the signal
                           (many + " > /dev/full; exit ${PIPESTATUS[1]}", (3,)), (CLI + " modelos > /dev/full", (3,))):
        done = subprocess.run(["bash", "-c", command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        assert done.returncode in codes, (command, done)


def fill_disk():
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0))


def check_old_file(home):
    """It stays if the new one cannot be written or made."""
    (home / "m").write_text("x:d=4,o=5,b=100:c")
    for disk, arguments, code in ((fill_disk, ["convertir", "-t", "3310"], 3), (fill_disk, ["convertir", "-m", " KWS"], 3),
                                  (fill_disk, ["midi"], 3), (None, ["convertir", "-m", "no such model"], 1)):
        (home / "old").write_text("old")
        done = subprocess.run([CLI, *arguments, "-o", home / "old", home / "m"], preexec_fn=disk,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        assert (done.returncode, (home / "old").read_text()) == (code, "old"), (arguments, done)
    assert len(list(home.iterdir())) == 2, "a temporary file is left"


for check in (check_memory, check_old_file):
    with tempfile.TemporaryDirectory() as home:
        check(Path(home))
check_pipes()
