#!/usr/bin/python3
"""Holds docs/session.schema.json against the sample sessions, the examples of
docs/session-format.md, and sessions that it must refuse."""
import json
import pathlib
import re
import sys
import unittest

import fastjsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]


def document(fields):
    return {"steps": [{"document": fields}]}


def examples():
    """Every JSON block of the page, each made a whole session."""
    page = (ROOT / "docs/session-format.md").read_text(encoding="utf-8")
    for block in re.findall(r"```json\n(.*?)```", page, re.DOTALL):
        if not block.startswith("{"):
            yield document(json.loads("{" + block + "}"))
        elif '"steps"' in block:
            yield json.loads(block)
        else:
            yield {"steps": [json.loads(line) for line in block.splitlines()]}


def table(header, name):
    """The texts in a table of the interfaces."""
    source = (ROOT / "interfaces/conduit" / header).read_text(encoding="utf-8")
    rows = re.search(re.escape(name) + r"\[\] = \{(.*?)\};", source, re.DOTALL).group(1)
    return re.findall(r'"(\w[^"]*)"', rows)


def items(kind):
    """The names of the reader's items of a kind."""
    source = (ROOT / "interfaces/conduit/ReaderItem.h").read_text(encoding="utf-8")
    return re.findall(r'"(\w+)",\s+ReaderItemKind::' + kind + "}", source)


class SessionSchema(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.schema = json.loads((ROOT / "docs/session.schema.json").read_text(encoding="utf-8"))
        # Compiled once: each call checks one session.
        cls.check = staticmethod(fastjsonschema.compile(cls.schema))

    def test_admits_the_samples(self):
        for file in (ROOT / "samples").glob("*.json"):
            with self.subTest(file.name):
                self.check(json.loads(file.read_text(encoding="utf-8")))

    def test_admits_the_examples_which_show_every_step_and_field(self):
        shown = {"step": set(), "document": set()}
        for session in examples():
            with self.subTest(json.dumps(session)[:100]):
                self.check(session)
            for step in session["steps"]:
                shown["step"].update(step)
                shown["document"].update(step.get("document", {}))
        for name, fields in shown.items():
            self.assertEqual(fields, set(self.schema["definitions"][name]["properties"]))

    def test_has_the_names_of_the_interfaces(self):
        parts = {name: part["properties"] for name, part in self.schema["definitions"].items()
                 if "properties" in part}
        for given, wanted in [
            (parts["step"]["event"]["enum"], table("ReaderEventCode.h", "ReaderEventNames")),
            (parts["step"]["state"]["enum"], table("ReaderState.h", "ReaderStateNames")),
            (parts["barcode"]["symbology"]["enum"], items("Barcode")),
            (list(parts["document"]["images"]["properties"]), items("Image")),
        ]:
            self.assertEqual(given, wanted)

    def test_refuses(self):
        qr = {"symbology": "BARCODE_QRCODE"}
        for session, place in [
            ({}, "steps"),
            ({"steps": {}}, "steps"),
            ({"steps": [{}]}, "steps[0]"),
            ({"steps": [{"pause": 1, "error": "x"}]}, "steps[0]"),
            ({"steps": [{"puase": 1}]}, "puase"),
            ({"steps": [{"pause": "1"}]}, "pause"),
            ({"steps": [{"pause": 0.5}]}, "pause"),
            ({"steps": [{"event": "DOC_ON_WINDOWS"}]}, "event"),
            ({"steps": [{"swipe": []}]}, "swipe"),
            (document({"codline": []}), "codline"),
            (document({"codeline": "P<UTO"}), "codeline"),
            (document({"codeline": {"lines": [], "fields": {"surnam": ""}}}), "codeline"),
            (document({"images": {"IMAGEVIZ": "x"}}), "IMAGEVIZ"),
            (document({"barcodes": [qr]}), "barcodes[0]"),
            (document({"barcodes": [{**qr, "text": "", "file": "x"}]}), "barcodes[0]"),
            (document({"aamva": {"text": "@"}}), "aamva"),
        ]:
            with self.subTest(json.dumps(session)):
                with self.assertRaises(fastjsonschema.JsonSchemaException) as refusal:
                    self.check(session)
                self.assertIn(place, str(refusal.exception))


if __name__ == "__main__":
    sys.exit(unittest.main())
