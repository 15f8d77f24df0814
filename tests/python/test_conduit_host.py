"""The Python package as it is installed from its wheel.

In the environment: ROOT, of the repository; CONDUIT, the console host; FAKE_MODULE, which plays
the script in the file FAKE_MODULE_SCRIPT.
"""

import base64
import csv
import gc
import json
import os
import re
import signal
import subprocess
import sys
import threading
import time
from dataclasses import fields
from pathlib import Path

import pytest

import conduit_host
from conduit_host import Codeline, Event, Item, Licence, Module, Script, State, Swipe

ROOT = Path(os.environ["ROOT"])
SESSION = ROOT / "samples" / "session.json"
SCANS = ROOT / "samples" / "scans"
END = "event DEVICE_DISCONNECTED\nstate Terminated\n"


@pytest.fixture
def fake(monkeypatch, tmp_path):
    """Loads the fake module with a script."""
    modules = []

    def load(script=END):
        file = tmp_path / f"script{len(modules)}.txt"
        file.write_text(script)
        monkeypatch.setenv("FAKE_MODULE_SCRIPT", str(file))
        modules.append(Module(os.environ["FAKE_MODULE"]))
        return modules[-1]

    yield load
    for module in modules:
        module.close()


def run(program, *arguments, **options):
    return subprocess.run([sys.executable, program, *arguments], capture_output=True, text=True,
                          timeout=60, **options)


def test_gives_the_items_that_the_console_host_receives():
    lines = subprocess.run(
        [os.environ["CONDUIT"], "run", SESSION, "--json", "--data"], capture_output=True, check=True
    ).stdout.splitlines()
    expected = [line for line in map(json.loads, lines) if line["kind"] in ("item", "event")]
    with Module("FullPageInputModule.so") as module:
        got = [one for one in module.stream(SESSION) if isinstance(one, (Item, Event))]
    assert [one.name for one in got] == [line["name"] for line in expected]
    for item, line in zip(got, expected):
        if isinstance(item, Item):
            data = base64.b64decode(line["base64"]) if "base64" in line else line["value"].encode()
            assert item == Item(line["name"], line["itemType"], line["length"], data,
                                line.get("feature"), line["last"])


def test_makes_documents_of_a_folder_of_scans():
    with Module() as module:
        documents = list(module.run(SCANS))
    assert [document.source for document in documents[:5]] == [
        "01-licence.png", "02-member-card.jpg", "03-letter.tif page 1", "03-letter.tif page 2",
        "04-damaged.png"]
    assert documents[0].licence.surname == "MUSTER" and not documents[0].codeline
    assert [barcode.type for barcode in documents[0].barcodes] == ["PDF417"]
    assert documents[0].barcodes[0].data.startswith(b"@\n\x1e\rANSI ")
    assert documents[4].errors == ["04-damaged.png: the file ends early"]
    assert not documents[4].items
    assert documents[5].codeline.surname == "ERIKSSON"
    assert conduit_host.media_type(documents[5].images["IMAGEVIS"]) == "image/png"


def test_takes_no_file_name_for_a_word_of_the_reader(tmp_path):
    names = ["document 1.png", "line\n.png", "warning: 1.png"]
    for name in names:
        (tmp_path / name).write_bytes((SCANS / "05-passport.png").read_bytes())
    with Module() as module:
        for _ in range(2):  # the second with the log of the first
            documents = list(module.run(tmp_path))
            assert [document.source for document in documents] == names
            assert not any(document.warnings for document in documents)


def test_tells_the_parts_of_a_session_apart():
    with Module() as module:
        module.parameters["DateOfBirthFormat"] = "%d.%m.%Y"
        documents = list(module.run(SESSION))
    passport, licence, _, card, staff, identity, lamp = documents
    assert passport.codeline.date_of_birth_formatted == "12.08.1974"
    assert passport.chip_codeline.text.startswith("P<UTO")
    assert passport.chip_photo == passport.images["IMAGEPHOTO"]
    assert [barcode.feature for barcode in licence.barcodes] == ["0", "1"]
    assert (card.input_source, card.source) == ("MAG", "")
    assert card.swipe.track_2.startswith(";4111")
    assert staff.unknown_document and staff.codeline.text == "STAFF CARD 0042"
    assert identity.bad_chars and "check digit" in identity.warnings[0]
    assert (lamp.errors, lamp.items) == (["The lamp does not light up"], [])


def test_knows_every_item_by_its_name():
    header = (ROOT / "interfaces/conduit/ItemName.h").read_text()
    known = {one.metadata["item"] for record in (Codeline, Licence, Swipe) for one in fields(record)}
    declared = set(re.findall(r'"((?:CODELINE|AAMVA|SWIPE)_[A-Z0-9_]+)"', header))
    assert known == declared | {"CODELINE"}


def test_errors_outside_of_data_are_documents_without_items(fake):
    script = ("error before\nbegin\nitem A 4 41\nerror within\nend\nerror behind\n"
              "event DOC_REMOVED\nitem LOOSE 4 42\n")
    documents = list(fake(script + END).run())
    assert [(one.errors, [item.name for item in one.items]) for one in documents] == [
        (["before", "within"], ["A"]), (["behind"], []), ([], ["LOOSE"])]


def test_takes_bytes_that_are_no_utf8_and_gives_them_back(fake):
    module = fake("item A 4 41FF00\nmissing B\n" + END)
    a, b = [one for one in module.stream() if isinstance(one, Item)]
    assert a.text == "A\udcff\0" and a.text.encode("utf-8", "surrogateescape") == a.data
    assert (b.data, b.length, b.text) == (None, 12, "")
    with pytest.raises(ValueError, match="a NUL within"):
        module.parameters["Format"] = "a\0b"
    with pytest.raises(UnicodeEncodeError):
        module.parameters["Format"] = "\ud800"


def test_refusals_are_exceptions_with_their_reason(fake, tmp_path):
    module = fake("refuse\nerror no device is there\n")
    with pytest.raises(conduit_host.RefusedError, match="Level is too high") as refused:
        module.parameters["Level"] = "9"
    assert refused.value.result == 6
    for use in (lambda: module.parameters["Lvel"],
                lambda: module.parameters.__setitem__("Lvel", "")):
        with pytest.raises(conduit_host.UnknownParameterError, match="Lvel"):
            use()
    with pytest.raises(conduit_host.RefusedError, match="NO_SUCH_EVENT"):
        module.add_condition("ReceiveEvent", "NO_SUCH_EVENT")
    with pytest.raises(conduit_host.StartError, match="no device is there"):
        next(module.run())
    with pytest.raises(conduit_host.SessionError, match="no-such-session"):
        next(module.run("no-such-session"))
    with pytest.raises(conduit_host.LoadError, match="it is a folder"):
        Module(tmp_path)
    module.close()
    module.close()
    with pytest.raises(conduit_host.ClosedError):
        module.parameters["Level"] = "1"


def test_runs_once_at_a_time_and_again(fake):
    module = fake("event A\n" + END)
    first = module.stream()
    assert next(first) == State("Enabled")
    for use in (lambda: next(module.stream()),
                lambda: module.parameters.__setitem__("Format", "x")):
        with pytest.raises(conduit_host.OrderError, match="the reader runs"):
            use()
    first.close()
    assert Event("A") in list(module.stream())


STORM = "begin\n" + "storm\n" * 3 + "end\n"


def test_a_consumer_that_leaves_stops_a_reader_that_waits_for_it(fake):
    module = fake(STORM + END)
    taken = []
    for one in module.stream(on_item=taken.append):
        if isinstance(one, Item):
            break
    assert len(taken) > 800, "the reader was not let go"
    taken.clear()
    happenings = module.stream(on_item=taken.append)
    next(happenings)
    time.sleep(0.3)
    assert len(taken) <= Module.QUEUE_LIMIT + 4, "more is held than the limit"
    assert len([one for one in happenings if isinstance(one, Item)]) == 2400


def test_what_a_callback_raises_comes_out_and_stops_the_reader(fake):
    module = fake("ask BAD_CHARS\nevent A\n" + STORM + END)
    module.on("A", "greet")

    def fail(_):
        raise LookupError("no such shelf")

    with pytest.raises(LookupError, match="no such shelf"):
        list(module.stream(on_item=fail))
    with pytest.raises(LookupError, match="no such shelf"):
        list(module.run(on_script=fail))
    got = list(module.stream(on_item=lambda item: item.name == "BAD_CHARS"))
    assert State("answered 1") in got and Script("greet") in got


def test_refuses_calls_from_within_a_callback(fake):
    module = fake("begin\nitem A 4 41\nend\n" + END)
    for call in (module.close, lambda: module.parameters["Format"], lambda: next(module.run()),
                 lambda: Module(os.environ["FAKE_MODULE"])):
        with pytest.raises(conduit_host.OrderError):
            list(module.stream(on_item=lambda _, call=call: call()))
    assert len(list(module.run())) == 1


def test_a_generator_may_go_within_a_callback(fake):
    module = fake("item A 4 41\n" + END)
    going = threading.Event()
    left = [module.stream(on_item=lambda _: (going.wait(10), left.clear()))]
    next(left[0])
    going.set()
    while left:
        time.sleep(0.01)
    gc.collect()
    assert Event("DEVICE_DISCONNECTED") in list(module.stream())


def test_closing_wakes_a_consumer_that_waits(fake):
    module = fake("begin\n")
    closer = threading.Timer(0.2, module.close)
    closer.start()
    with pytest.raises(conduit_host.ClosedError):
        list(module.run())
    closer.join()


def test_a_module_that_is_dropped_leaves_nothing_open(tmp_path, monkeypatch):
    script = tmp_path / "script.txt"
    script.write_text("item A 4 41\n" + END)
    monkeypatch.setenv("FAKE_MODULE_SCRIPT", str(script))

    def count():
        gc.collect()
        return len(os.listdir("/proc/self/fd"))

    def drop_loaded():
        Module(os.environ["FAKE_MODULE"])

    def drop_after_a_run():
        list(Module(os.environ["FAKE_MODULE"]).run())

    def drop_within_a_run():
        next(Module(os.environ["FAKE_MODULE"]).stream())

    def drop_within_a_callback():
        going, gone = threading.Event(), threading.Event()
        held = [Module(os.environ["FAKE_MODULE"])]
        running = held[0].stream(on_item=lambda _: (going.wait(10), held.clear(), gone.set()))
        held.append(running)
        next(running)
        del running
        going.set()
        assert gone.wait(10)

    for drop in (drop_loaded, drop_after_a_run, drop_within_a_run, drop_within_a_callback):
        drop()  # what the first use opens for good
        before = count()
        for _ in range(10):
            drop()
        deadline = time.monotonic() + 10
        while count() > before and time.monotonic() < deadline:
            time.sleep(0.01)
        assert count() <= before, drop.__name__


def test_a_program_may_end_with_its_reader_running(tmp_path):
    script = tmp_path / "script.txt"
    script.write_text(STORM)
    ending = run("-c", "import conduit_host, os\n"
                 "module = conduit_host.Module(os.environ['FAKE_MODULE'])\n"
                 "running = module.stream(on_item=lambda item: None)\n"
                 "next(running)\n", env={**os.environ, "FAKE_MODULE_SCRIPT": str(script)})
    assert (ending.returncode, ending.stderr) == (0, "")


def test_ctrl_c_comes_out_of_the_loop(tmp_path):
    with subprocess.Popen(
            [sys.executable, "-u", "-c", "import conduit_host, sys\n"
             "with conduit_host.Module() as module:\n"
             "    for one in module.stream(sys.argv[1], watch=True): print(one)\n", tmp_path],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as waiting:
        waiting.stdout.readline()
        waiting.send_signal(signal.SIGINT)
        _, trouble = waiting.communicate(timeout=60)
    assert waiting.returncode == -signal.SIGINT and "KeyboardInterrupt" in trouble


def test_the_module_logs_to_logging(fake, caplog):
    list(fake("log 0 lens is dirty\n" + END).run())
    assert ("conduit_host", 40, "Fake::Play: lens is dirty") in caplog.record_tuples


def test_the_examples_work(tmp_path):
    table = tmp_path / "people.csv"
    example = run(ROOT / "python/examples/people_csv.py", SCANS, table)
    assert example.returncode == 0, example.stderr
    rows = list(csv.DictReader(table.open(encoding="utf-8")))
    assert [row["surname"] for row in rows] == ["MUSTER", "", "", "", ""] + ["ERIKSSON"] * 3
    page = tmp_path / "pictures.html"
    assert run(ROOT / "python/examples/pictures.py", SESSION, page).returncode == 0
    sources = re.findall(r'src="data:image/png;base64,([^"]+)"', page.read_text())
    pictures = [base64.b64decode(source) for source in sources]
    assert (SESSION.parent / "images/portrait.png").read_bytes() in pictures
    wrong = run(ROOT / "python/examples/people_csv.py", "no-such-folder", table)
    assert wrong.returncode == 1 and "no-such-folder" in wrong.stderr
