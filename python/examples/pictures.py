"""Writes a page for the browser with the pictures of a session, beside whose document it is.

    pictures.py SESSION PAGE.html
"""

import base64
import sys
from collections.abc import Iterator
from html import escape

from conduit_host import ConduitError, Document, Module, media_type


def pictures(document: Document) -> Iterator[str]:
    images = dict(document.images)
    if document.chip_photo:
        images["SCDG2_PHOTO"] = document.chip_photo
    for name, data in images.items():
        kind = media_type(data)
        if kind:
            source = f"data:{kind};base64,{base64.b64encode(data).decode()}"
            yield f'<figure><img src="{source}"><figcaption>{escape(name)}</figcaption></figure>'
        else:
            yield f"<p>{escape(name)}: {len(data)} bytes that browsers do not show</p>"


def section(document: Document) -> Iterator[str]:
    name = f"{document.codeline.forenames} {document.codeline.surname}".strip()
    yield f"<h2>{escape(name or document.licence.full_name or document.source or 'Without a name')}</h2>"
    for error in document.errors:
        yield f"<p>{escape(error)}</p>"
    yield from pictures(document)


def main(session: str, page: str) -> None:
    with open(page, "w", encoding="utf-8", errors="backslashreplace") as file, Module() as module:
        print("<!DOCTYPE html>\n<meta charset=utf-8>\n<title>Pictures</title>", file=file)
        print("<style>figure {display: inline-block} img {max-width: 30em}</style>", file=file)
        for document in module.run(session):
            print(*section(document), sep="\n", file=file)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    try:
        main(sys.argv[1], sys.argv[2])
    except (ConduitError, OSError) as problem:
        sys.exit(f"pictures.py: {problem}")
