"""Holds what the host in C prints of a session against what the console host receives.

sample_host_test.py CONDUIT HOST_IN_C MODULE SESSION
"""

import base64
import json
import subprocess
import sys

conduit, host, module, session = sys.argv[1:]


def printed(program, *arguments):
    run = subprocess.run([program, *arguments], capture_output=True, check=True)
    return run.stdout.decode("ascii").splitlines()


def start(data):
    text = "".join(chr(byte) if 0x20 <= byte <= 0x7E and byte != 0x5C else f"\\x{byte:02x}"
                   for byte in data[:40])
    return text + ("..." if len(data) > 40 else "")


def as_the_host_prints(item):
    data = (base64.b64decode(item["base64"]) if "base64" in item
            else bytes.fromhex(item["valueHex"]) if "valueHex" in item
            else item["value"].encode())
    assert len(data) == item["length"]
    feature = f", feature {item['feature']}" if "feature" in item else ""
    more = "" if item["last"] else ", more follow"
    return (f"  {item['name']} (type {item['itemType']}, {item['length']} bytes"
            f"{feature}{more}) {start(data)}")


lines = [json.loads(line) for line in printed(
    conduit, "run", session, "--module", module, "--set", "DateOfBirthFormat=%d.%m.%Y",
    "--json", "--data")]
expected = [as_the_host_prints(line) for line in lines if line["kind"] == "item"]
assert len(expected) > 100 and any("feature 1" in line for line in expected)

output = printed(host, module, session)
items = [line for line in output if line.startswith("  ")]
for mine, theirs in zip(items, expected):
    assert mine == theirs, f"the host in C has\n{mine}\nin place of\n{theirs}"
assert len(items) == len(expected)
assert output[-1] == f"{len(expected)} items"

wrong = subprocess.run([host, module, "no-such-session"], capture_output=True)
assert wrong.returncode == 1 and b"cannot read session no-such-session" in wrong.stderr
