"""Renders the page of a run in a browser: pictures load, texts stay texts.

report_test.py FAKE_MODULE CHROMIUM IMAGE FOLDER CONDUIT...
"""

import html.parser
import os
import pathlib
import re
import shutil
import subprocess
import sys

module, chromium, image, folder, *conduit = sys.argv[1:]
folder = pathlib.Path(folder)
shutil.rmtree(folder, ignore_errors=True)
folder.mkdir(parents=True)

# Each would leave a mark if it were taken for markup: an element or a script.
ATTACKS = [
    "<script>document.title='injected'</script>",
    "</td></table></style></title><b id=injected>",
    "\"><img src=x onerror=\"document.title='injected'\">",
    "' onload='x' &lt;i id=injected&gt;",
    "<!-- <plaintext> ]]> \x1b[31m\x00\x7f \u202etxt",
]
png = pathlib.Path(image).read_bytes().hex()

script = []
for attack in ATTACKS:
    line = attack.replace("\n", " ").replace("\x00", "")
    script += [f"event {line}", f"error {line}", f"state {line}", f"log 0 {line}", "begin",
               f"item {line.replace(' ', '_')} 4 {attack.encode().hex()}",
               f"item BARCODE_QRCODE 0 {attack.encode().hex()} 0{line.replace(' ', '_')} last",
               f"item IMAGE{line.replace(' ', '_')} 5 {png}", "end"]
script += ["item BYTES 4 41ff3c62203e", f"item SCDG2_PHOTO 5 ff4fff51{png}", "missing IMAGEIR",
           "event DEVICE_DISCONNECTED", "state Terminated", ""]

page = folder / "run.html"
(folder / "script.txt").write_text("\n".join(script), encoding="utf-8")
subprocess.run([*conduit, "run", "--module", module, "--report", page, "--on", "A=<b id=injected>"],
               env={**os.environ, "FAKE_MODULE_SCRIPT": folder / "script.txt"},
               check=True, capture_output=True)
text = page.read_text(encoding="utf-8")
policy = re.search(r'<meta http-equiv="Content-Security-Policy"[^>]*>', text)
assert policy and "default-src 'none'" in policy[0], "the page has no policy"

# A copy that may run one script of ours, and would so run an injected one.
probe = folder / "probe.html"
probe.write_text(text.replace(policy[0], "").replace("</body>", """<script>
  addEventListener('load', () => {
    const pictures = [...document.images].map(one => one.naturalWidth > 0);
    document.body.innerHTML = '<pre id="probe">' + [
      'loaded ' + pictures.filter(Boolean).length + ' of ' + pictures.length,
      'scripts ' + document.scripts.length,
      'injected ' + document.querySelectorAll('#injected, [onerror], [onload], plaintext').length,
      'title ' + document.title,
      'wider ' + (document.documentElement.scrollWidth > innerWidth),
    ].join('|') + '</pre>';
  });
</script></body>"""), encoding="utf-8")


def rendered(file, width):
    home = folder / f"browser-{width}-{file.stem}"
    return subprocess.run(
        [chromium, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         f"--user-data-dir={home}", f"--window-size={width},2000", "--dump-dom", file.as_uri()],
        check=True, capture_output=True, text=True, encoding="utf-8", timeout=90).stdout


count = len(ATTACKS)
expected = f"loaded {count} of {count}|scripts 1|injected 0|title Run of {pathlib.Path(module).name}|wider false"
for width in 1280, 500:
    found = re.search(r'<pre id="probe">(.*?)</pre>', rendered(probe, width))
    assert found and found[1] == expected, f"{width} wide: {found and found[1]}, not {expected}"


class Texts(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.seen = ""

    def handle_data(self, data):
        self.seen += data


# What the browser shows of the page itself, under its policy.
texts = Texts()
texts.feed(rendered(page, 1280))
shown = [attack.translate({0: r"\x00", 0x1b: r"\x1b", 0x7f: r"\x7f", 0x202e: r"\u{202e}"})
         for attack in ATTACKS]
for line in [*shown, r"A\xff<b >", "Browsers do not show this format.", "12 bytes announced"]:
    assert line in texts.seen, f"not on the page: {line}"
print(expected)
