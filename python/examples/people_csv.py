"""Writes who is on the scans of a folder, a row for each document.

    people_csv.py FOLDER TABLE.csv
"""

import csv
import sys

from conduit_host import ConduitError, Document, Module

HEAD = ["file", "type", "surname", "forenames", "number", "born", "expires", "barcodes", "trouble"]


def row(document: Document) -> list[str]:
    codeline, licence = document.codeline, document.licence
    return [
        document.source,
        codeline.doc_type or ("DRIVING LICENCE" if licence else ""),
        codeline.surname or licence.surname,
        codeline.forenames or licence.given_names,
        codeline.doc_number or licence.number,
        codeline.date_of_birth_formatted or licence.date_of_birth_formatted,
        codeline.expiry_date_formatted or licence.expiry_date_formatted,
        " ".join(barcode.type for barcode in document.barcodes),
        "; ".join(document.errors + document.warnings),
    ]


def main(folder: str, table: str) -> None:
    # A name that is no UTF-8 is written as \xff, and costs no other row.
    with open(table, "w", newline="", encoding="utf-8", errors="backslashreplace") as file:
        writer = csv.writer(file)
        writer.writerow(HEAD)
        with Module() as module:
            for parameter in "DateOfBirthFormat", "ExpiryDateFormat":
                module.parameters[parameter] = "%Y-%m-%d"
            for document in module.run(folder):
                writer.writerow(row(document))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    try:
        main(sys.argv[1], sys.argv[2])
    except (ConduitError, OSError) as problem:
        sys.exit(f"people_csv.py: {problem}")
