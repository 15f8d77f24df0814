"""Runs conduit with less and less memory: it always ends in good order, and exits with 0 only
when everything was told.

memory_limit_test.py CONDUIT
"""

import json
import resource
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

[conduit] = sys.argv[1:]

MEGABYTE = 1 << 20
WIDTH, HEIGHT = 1600, 1400  # a page of 7 MB, of which the host makes lines several times as long


def bitmap():
    size = WIDTH * 3 * HEIGHT
    return (b"BM" + struct.pack("<IHHI", 54 + size, 0, 0, 54) +
            struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 24, 0, size, 11811, 11811, 0, 0) +
            b"\xff" * size)


def run(scans, limit=resource.RLIM_INFINITY):
    ended = subprocess.run([conduit, "run", scans, "--json", "--data"], capture_output=True,
                           preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS,
                                                                 (limit, limit)))
    return ended.returncode, ended.stdout.decode().splitlines(), ended.stderr.decode()


with tempfile.TemporaryDirectory() as scans:
    Path(scans, "a.bmp").write_bytes(bitmap())
    status, everything, _ = run(scans)
    assert status == 0

    ended_by_host = 0
    for limit in range(20, 180, 12):
        status, lines, trouble = run(scans, limit * MEGABYTE)
        what = f"with {limit} MB: status {status}, {len(lines)} lines, {trouble}"
        if status == 0:
            assert sorted(lines) == sorted(everything), what
            continue
        # The system's loader answers 127 when the program itself does not fit.
        assert status in (1, 127) and trouble, what
        if lines:
            stop = json.loads(lines[-1])
            assert stop["kind"] == "stop", what
            ended_by_host += stop.get("message") == "out of memory"
    assert ended_by_host, "the host never ran out of memory"
