"""Holds the schema of the JSON lines against what comes, in both directions.

json_output_test.py FAKE_MODULE SCHEMA CONDUIT...
"""

import base64
import copy
import hashlib
import json
import os
import subprocess
import sys
import tempfile

import fastjsonschema

module, schema_file, *conduit = sys.argv[1:]
schema = json.load(open(schema_file, encoding="utf-8"))

IMAGE = b"\x89PNG\r\n\x1a\n\x00\xff" * 1000
ODD = "ff41"  # no UTF-8
SESSION = f"""event A
begin
item NAME 4 {ODD}
item IMAGEVIS 5 {IMAGE.hex()}
item BARCODE_QRCODE 3 00 0 last
missing IMAGEIR
ask BAD_CHARS
end
error jam
log 0 jam
"""
UNREAD = """reader 2024-05-01T09:30:00.120Z 1 document a.png
reader 2024-05-01T09:30:00.120Z 1 warning a.png: odd
event DOC_ON_WINDOW
error jam
event DOC_REMOVED
reader 2024-05-01T09:30:00.120Z 1 document b.png
begin
end
"""
END = "event DEVICE_DISCONNECTED\nstate Terminated\n"
RUNS = [
    (["--data", "--log", "3", "--on", "A=greet", "--refuse", "BAD_CHARS"], SESSION + END),
    ([], UNREAD + END),
    (["--set", "Level=9"], ""),
    (["no-such-session.json"], ""),
]


def lines(arguments, script):
    with tempfile.NamedTemporaryFile("w", encoding="utf-8") as file:
        file.write(script)
        file.flush()
        run = subprocess.run([*conduit, "run", "--json", "--module", module, *arguments],
                             env={**os.environ, "FAKE_MODULE_SCRIPT": file.name},
                             capture_output=True)
    return [json.loads(line) for line in run.stdout.decode("utf-8").splitlines()]


output = [line for run in RUNS for line in lines(*run)]

# A reader is to pass over what it does not know; this test is not.
strict = copy.deepcopy(schema)
for definition in strict["definitions"].values():
    definition["additionalProperties"] = False
for form in schema, strict:
    validate = fastjsonschema.compile(form)
    for line in output:
        validate(line)

seen = {(line["kind"], field) for line in output for field in line}
described = {(kind, field) for kind, definition in schema["definitions"].items()
             for field in definition.get("properties", {}) if not field.endswith("Hex")}
assert seen >= described, f"described, but never seen: {described - seen}"
assert ("item", "valueHex") in seen
assert not {kind for kind, _ in seen} - set(schema["definitions"]), "a kind is not described"

[image] = [line for line in output if line.get("name") == "IMAGEVIS"]
assert base64.b64decode(image["base64"], validate=True) == IMAGE
assert image["sha256"] == hashlib.sha256(IMAGE).hexdigest()
assert not any("base64" in line for line in lines([], SESSION + END)), "bytes without --data"

for wrong in [{"kind": "item", "name": "A", "itemType": 4, "length": 1, "last": True},
              {**image, "sha256": "00"}, {"kind": "state"}, {"name": "A"}]:
    try:
        fastjsonschema.compile(schema)(wrong)
    except fastjsonschema.JsonSchemaException:
        continue
    sys.exit(f"the schema takes {wrong}")
