"""What the items of a document or a swipe say."""

from __future__ import annotations

from collections.abc import Iterable, Iterator
from dataclasses import dataclass, field, fields, replace
from functools import cached_property
from typing import Any, TypeVar

from .happenings import Begin, End, Error, Event, Happening, Item, ReaderLine

BARCODE = "BARCODE_"
IMAGE = "IMAGE"
CHIP = "SCDG"
CHIP_CODELINE = "SCDG1_CODELINE"
CHIP_PHOTO = "SCDG2_PHOTO"
#: What the chip says comes under the page's names, between its own first item and what
#: begins a page or a swipe.
PAGE_STARTS = ("INPUT_SOURCE", "CODELINE")


def _from(item: str) -> Any:
    return field(default="", metadata={"item": item})


Record = TypeVar("Record", bound="_Record")


@dataclass(frozen=True)
class _Record:
    """Texts, each from the item of its name; empty when there was none."""

    @classmethod
    def of(cls: type[Record], items: Iterable[Item]) -> Record:
        texts: dict[str, str] = {}
        for item in items:
            texts.setdefault(item.name, item.text)
        values = {one.name: texts.get(one.metadata["item"], "") for one in fields(cls)}
        return cls(**values)

    def __bool__(self) -> bool:
        """Whether there was anything of it."""
        return any(getattr(self, one.name) for one in fields(self))


@dataclass(frozen=True)
class Codeline(_Record):
    """A machine-readable zone: the page's, or the chip's."""

    #: As it was read; of the chip the first data group.
    text: str = _from("CODELINE")
    data: str = _from("CODELINE_DATA")
    line_1: str = _from("CODELINE_LINE_1")
    line_2: str = _from("CODELINE_LINE_2")
    line_3: str = _from("CODELINE_LINE_3")
    date_of_birth: str = _from("CODELINE_DATE_OF_BIRTH_STR")
    date_of_birth_formatted: str = _from("CODELINE_DATE_OF_BIRTH_STR_FORMATTED")
    expiry_date: str = _from("CODELINE_EXPIRY_DATE_STR")
    expiry_date_formatted: str = _from("CODELINE_EXPIRY_DATE_STR_FORMATTED")
    doc_id: str = _from("CODELINE_DOC_ID")
    doc_number: str = _from("CODELINE_DOC_NUMBER")
    doc_type: str = _from("CODELINE_DOC_TYPE")
    optional_data_1: str = _from("CODELINE_OPTIONAL_DATA_1")
    optional_data_2: str = _from("CODELINE_OPTIONAL_DATA_2")
    surname: str = _from("CODELINE_SURNAME")
    forename: str = _from("CODELINE_FORENAME")
    forenames: str = _from("CODELINE_FORENAMES")
    issuing_state: str = _from("CODELINE_ISSUING_STATE")
    nationality: str = _from("CODELINE_NATIONALITY")
    second_name: str = _from("CODELINE_SECOND_NAME")
    sex: str = _from("CODELINE_SEX")
    short_sex: str = _from("CODELINE_SHORT_SEX")


@dataclass(frozen=True)
class Licence(_Record):
    """A driving licence or identity card after AAMVA, from a barcode or a stripe."""

    number: str = _from("AAMVA_PARSED_LICENCENUMBER")
    full_name: str = _from("AAMVA_PARSED_FULLNAME")
    surname: str = _from("AAMVA_PARSED_SURNAME")
    forename: str = _from("AAMVA_PARSED_FORENAME")
    middle_name: str = _from("AAMVA_PARSED_MIDDLENAME")
    name_suffix: str = _from("AAMVA_PARSED_NAMESUFFIX")
    given_names: str = _from("AAMVA_PARSED_GIVENNAMES")
    sex: str = _from("AAMVA_PARSED_SEX")
    street: str = _from("AAMVA_PARSED_ADDRESS_STREET")
    city: str = _from("AAMVA_PARSED_ADDRESS_CITY")
    state: str = _from("AAMVA_PARSED_ADDRESS_STATE")
    postal_code: str = _from("AAMVA_PARSED_ADDRESS_POSTALCODE")
    country: str = _from("AAMVA_PARSED_ADDRESS_COUNTRY")
    short_sex: str = _from("AAMVA_PARSED_SHORTSEX")
    date_of_birth: str = _from("AAMVA_PARSED_DATEOFBIRTH")
    date_of_birth_formatted: str = _from("AAMVA_PARSED_DATEOFBIRTH_FORMATTED")
    issue_date: str = _from("AAMVA_PARSED_ISSUEDATE")
    issue_date_formatted: str = _from("AAMVA_PARSED_ISSUEDATE_FORMATTED")
    expiry_date: str = _from("AAMVA_PARSED_EXPIRYDATE")
    expiry_date_formatted: str = _from("AAMVA_PARSED_EXPIRYDATE_FORMATTED")
    height: str = _from("AAMVA_PARSED_HEIGHT")
    weight: str = _from("AAMVA_PARSED_WEIGHT")
    hair_color: str = _from("AAMVA_PARSED_HAIR_COLOR")
    eye_color: str = _from("AAMVA_PARSED_EYE_COLOR")


@dataclass(frozen=True)
class Swipe(_Record):
    """The tracks of a card."""

    track_1: str = _from("SWIPE_MSR_TRACK_1")
    track_2: str = _from("SWIPE_MSR_TRACK_2")
    track_3: str = _from("SWIPE_MSR_TRACK_3")


@dataclass(frozen=True, slots=True)
class Barcode:
    #: The symbology, "PDF417" or "1D_128".
    type: str
    data: bytes
    #: Its position among the barcodes of its read, as the module says it.
    feature: str | None
    text: str


@dataclass(frozen=True)
class Document:
    """One document or swipe, or an error outside of any, which has no items."""

    #: What the virtual reader made it from, "05-passport.png"; empty with a real reader.
    source: str = ""
    #: In the order in which they came.
    items: list[Item] = field(default_factory=list)
    #: What the reader reported of it.
    errors: list[str] = field(default_factory=list)
    #: What the virtual reader doubts: a wrong check digit.
    warnings: list[str] = field(default_factory=list)

    @cached_property
    def codeline(self) -> Codeline:
        """The page's; false when there was none."""
        return Codeline.of(item for item, chip in self._by_part if not chip)

    @cached_property
    def chip_codeline(self) -> Codeline:
        codeline = Codeline.of(item for item, chip in self._by_part if chip)
        text = next((item.text for item in self.items if item.name == CHIP_CODELINE), "")
        return replace(codeline, text=text)

    @property
    def chip_photo(self) -> bytes | None:
        """The holder's picture, often JPEG 2000."""
        return next((item.data for item in self.items if item.name == CHIP_PHOTO), None)

    @cached_property
    def licence(self) -> Licence:
        return Licence.of(self.items)

    @cached_property
    def swipe(self) -> Swipe:
        return Swipe.of(self.items)

    @cached_property
    def barcodes(self) -> list[Barcode]:
        return [
            Barcode(item.name.removeprefix(BARCODE), item.data or b"", item.feature, item.text)
            for item in self.items
            if item.name.startswith(BARCODE)
        ]

    @cached_property
    def images(self) -> dict[str, bytes]:
        """The page's pictures by name, "IMAGEVIS": the last of each."""
        return {
            item.name: item.data
            for item in self.items
            if item.name.startswith(IMAGE) and item.data is not None
        }

    @property
    def input_source(self) -> str:
        """"OCR" or "MAG"; empty when neither a codeline nor a swipe was read."""
        return next((item.text for item in self.items if item.name == "INPUT_SOURCE"), "")

    @property
    def unknown_document(self) -> bool:
        """The reader did not find out what document it is."""
        return any(item.name == "UNKNOWN_DOCUMENT" for item in self.items)

    @property
    def bad_chars(self) -> bool:
        """The codeline has one of the parameter BadChars."""
        return any(item.name == "BAD_CHARS" for item in self.items)

    @cached_property
    def _by_part(self) -> list[tuple[Item, bool]]:
        """Each item, and whether it is the chip's."""
        parts = []
        chip = False
        for item in self.items:
            chip = item.name.startswith(CHIP) or (chip and item.name not in PAGE_STARTS)
            parts.append((item, chip))
        return parts


class DocumentBuilder:
    """Makes documents of what happens."""

    def __init__(self) -> None:
        self._next = Document()
        self._within = False

    def take(self, happening: Happening) -> Iterator[Document]:
        match happening:
            case Item():
                self._next.items.append(happening)
            case Error(text) if text:
                self._next.errors.append(text)
            case ReaderLine(document=document, warning=warning):
                if document:
                    yield from self._give()
                    self._next = Document(document)
                elif warning:
                    self._next.warnings.append(warning)
            case Begin():
                self._within = True
            case End():
                self._within = False
                yield self._next
                self._next = Document(self._next.source)
            case Event("DOC_REMOVED") if not self._within:
                yield from self._give()
                self._next = Document()
            case _:
                pass

    def finish(self) -> Iterator[Document]:
        """What is left when the reader has ended."""
        yield from self._give()

    def _give(self) -> Iterator[Document]:
        """What belongs to no document but must not be lost."""
        if self._next.items or self._next.errors:
            yield self._next
            self._next = Document(self._next.source)
