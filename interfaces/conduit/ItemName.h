#pragma once  // self-contained; C++17

#include <cstddef>

namespace conduit {

/// The names of the items that a module makes from the reader's records. ReaderItem.h has
/// the names of the items that it passes on unchanged.
namespace ItemName {

/// The source of a codeline or a swipe: InputSource::Ocr or InputSource::Mag.
inline constexpr char InputSource[] = "INPUT_SOURCE";

inline constexpr char CodelineData[] = "CODELINE_DATA";
inline constexpr char CodelineLine1[] = "CODELINE_LINE_1";
inline constexpr char CodelineLine2[] = "CODELINE_LINE_2";
inline constexpr char CodelineLine3[] = "CODELINE_LINE_3";
inline constexpr char CodelineDateOfBirth[] = "CODELINE_DATE_OF_BIRTH_STR";
inline constexpr char CodelineDateOfBirthFormatted[] = "CODELINE_DATE_OF_BIRTH_STR_FORMATTED";
inline constexpr char CodelineExpiryDate[] = "CODELINE_EXPIRY_DATE_STR";
inline constexpr char CodelineExpiryDateFormatted[] = "CODELINE_EXPIRY_DATE_STR_FORMATTED";
inline constexpr char CodelineDocId[] = "CODELINE_DOC_ID";
inline constexpr char CodelineDocNumber[] = "CODELINE_DOC_NUMBER";
inline constexpr char CodelineDocType[] = "CODELINE_DOC_TYPE";
inline constexpr char CodelineOptionalData1[] = "CODELINE_OPTIONAL_DATA_1";
inline constexpr char CodelineOptionalData2[] = "CODELINE_OPTIONAL_DATA_2";
inline constexpr char CodelineSurname[] = "CODELINE_SURNAME";
inline constexpr char CodelineForename[] = "CODELINE_FORENAME";
inline constexpr char CodelineForenames[] = "CODELINE_FORENAMES";
inline constexpr char CodelineIssuingState[] = "CODELINE_ISSUING_STATE";
inline constexpr char CodelineNationality[] = "CODELINE_NATIONALITY";
inline constexpr char CodelineSecondName[] = "CODELINE_SECOND_NAME";
inline constexpr char CodelineSex[] = "CODELINE_SEX";
inline constexpr char CodelineShortSex[] = "CODELINE_SHORT_SEX";

inline constexpr char LicenceNumber[] = "AAMVA_PARSED_LICENCENUMBER";
inline constexpr char LicenceFullName[] = "AAMVA_PARSED_FULLNAME";
inline constexpr char LicenceSurname[] = "AAMVA_PARSED_SURNAME";
inline constexpr char LicenceForename[] = "AAMVA_PARSED_FORENAME";
inline constexpr char LicenceMiddleName[] = "AAMVA_PARSED_MIDDLENAME";
inline constexpr char LicenceNameSuffix[] = "AAMVA_PARSED_NAMESUFFIX";
inline constexpr char LicenceGivenNames[] = "AAMVA_PARSED_GIVENNAMES";
inline constexpr char LicenceSex[] = "AAMVA_PARSED_SEX";
inline constexpr char LicenceStreet[] = "AAMVA_PARSED_ADDRESS_STREET";
inline constexpr char LicenceCity[] = "AAMVA_PARSED_ADDRESS_CITY";
inline constexpr char LicenceState[] = "AAMVA_PARSED_ADDRESS_STATE";
inline constexpr char LicencePostalCode[] = "AAMVA_PARSED_ADDRESS_POSTALCODE";
inline constexpr char LicenceCountry[] = "AAMVA_PARSED_ADDRESS_COUNTRY";
inline constexpr char LicenceShortSex[] = "AAMVA_PARSED_SHORTSEX";
inline constexpr char LicenceDateOfBirth[] = "AAMVA_PARSED_DATEOFBIRTH";
inline constexpr char LicenceDateOfBirthFormatted[] = "AAMVA_PARSED_DATEOFBIRTH_FORMATTED";
inline constexpr char LicenceIssueDate[] = "AAMVA_PARSED_ISSUEDATE";
inline constexpr char LicenceIssueDateFormatted[] = "AAMVA_PARSED_ISSUEDATE_FORMATTED";
inline constexpr char LicenceExpiryDate[] = "AAMVA_PARSED_EXPIRYDATE";
inline constexpr char LicenceExpiryDateFormatted[] = "AAMVA_PARSED_EXPIRYDATE_FORMATTED";
inline constexpr char LicenceHeight[] = "AAMVA_PARSED_HEIGHT";
inline constexpr char LicenceWeight[] = "AAMVA_PARSED_WEIGHT";
inline constexpr char LicenceHairColor[] = "AAMVA_PARSED_HAIR_COLOR";
inline constexpr char LicenceEyeColor[] = "AAMVA_PARSED_EYE_COLOR";

inline constexpr char SwipeTrack1[] = "SWIPE_MSR_TRACK_1";
inline constexpr char SwipeTrack2[] = "SWIPE_MSR_TRACK_2";
inline constexpr char SwipeTrack3[] = "SWIPE_MSR_TRACK_3";

}  // namespace ItemName

/// The items of a recognised document's codeline, in the order of delivery. Any other
/// document has only the first CodelineTextCount.
inline constexpr const char* CodelineItems[] = {
    ItemName::CodelineData,          ItemName::CodelineLine1,
    ItemName::CodelineLine2,         ItemName::CodelineLine3,
    ItemName::CodelineDateOfBirth,   ItemName::CodelineDateOfBirthFormatted,
    ItemName::CodelineExpiryDate,    ItemName::CodelineExpiryDateFormatted,
    ItemName::CodelineDocId,         ItemName::CodelineDocNumber,
    ItemName::CodelineDocType,       ItemName::CodelineOptionalData1,
    ItemName::CodelineOptionalData2, ItemName::CodelineSurname,
    ItemName::CodelineForename,      ItemName::CodelineForenames,
    ItemName::CodelineIssuingState,  ItemName::CodelineNationality,
    ItemName::CodelineSecondName,    ItemName::CodelineSex,
    ItemName::CodelineShortSex,
};
inline constexpr std::size_t CodelineTextCount = 4;

/// The items of an AAMVA licence or identity card, in the order of delivery.
inline constexpr const char* LicenceItems[] = {
    ItemName::LicenceNumber,      ItemName::LicenceFullName,
    ItemName::LicenceSurname,     ItemName::LicenceForename,
    ItemName::LicenceMiddleName,  ItemName::LicenceNameSuffix,
    ItemName::LicenceGivenNames,  ItemName::LicenceSex,
    ItemName::LicenceStreet,      ItemName::LicenceCity,
    ItemName::LicenceState,       ItemName::LicencePostalCode,
    ItemName::LicenceCountry,     ItemName::LicenceShortSex,
    ItemName::LicenceDateOfBirth, ItemName::LicenceDateOfBirthFormatted,
    ItemName::LicenceIssueDate,   ItemName::LicenceIssueDateFormatted,
    ItemName::LicenceExpiryDate,  ItemName::LicenceExpiryDateFormatted,
    ItemName::LicenceHeight,      ItemName::LicenceWeight,
    ItemName::LicenceHairColor,   ItemName::LicenceEyeColor,
};

/// The values of ItemName::InputSource.
namespace InputSource {

inline constexpr char Ocr[] = "OCR";
inline constexpr char Mag[] = "MAG";

}  // namespace InputSource

/// Items that precede a codeline to signal a fact about it; each carries one blank.
/// The answer StopRecord suppresses the codeline.
namespace Signal {

/// The reader did not identify the document.
inline constexpr char UnknownDocument[] = "UNKNOWN_DOCUMENT";
/// The codeline contains a character of the parameter BadChars.
inline constexpr char BadChars[] = "BAD_CHARS";

}  // namespace Signal

/// The keys of an item's properties.
namespace ItemProperty {

/// Of a barcode: its 0-based position among the barcodes of the same read, in decimal.
inline constexpr char Feature[] = "feature";

}  // namespace ItemProperty

/// The document types of ReaderCodelineData.
namespace DocumentType {

inline constexpr char Visa[] = "VISA";
inline constexpr char ResidenceCard[] = "RESIDENCE CARD";
inline constexpr char Passport[] = "PASSPORT";
inline constexpr char IdentityCard[] = "IDENTITY CARD";
inline constexpr char DrivingLicence[] = "DRIVING LICENCE";
/// Same meaning as the empty text: the reader did not identify the document.
inline constexpr char Unknown[] = "UNKNOWN DOCUMENT";

}  // namespace DocumentType

/// The document types whose fields a module delivers.
inline constexpr const char* RecognisedDocumentTypes[] = {
    DocumentType::Visa,         DocumentType::ResidenceCard,  DocumentType::Passport,
    DocumentType::IdentityCard, DocumentType::DrivingLicence,
};

}  // namespace conduit
