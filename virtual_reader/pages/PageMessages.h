#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "virtual_reader/barcodes/PageFindings.h"
#include "virtual_reader/pages/PageRequest.h"

namespace conduit {

/// What the reader and its page processes say to each other: small fields, and bytes of any
/// number, both behind their lengths. Both ends are of one build.
// NOLINTNEXTLINE(bugprone-exception-escape): moving JSON throws nothing but its assertions
struct PageMessage {
  nlohmann::json fields;
  std::string bytes;
};

/// The kinds of answers, in the field "kind".
namespace PageAnswer {
inline constexpr char Decoded[] = "decoded";    ///< "width", "height"; "pages" of a TIFF
inline constexpr char Png[] = "png";            ///< the bytes that are delivered for a TIFF page
inline constexpr char Codeline[] = "codeline";  ///< "lines", "failures"
inline constexpr char Barcode[] = "barcode";    ///< see FindingOf
inline constexpr char Searched[] = "searched";  ///< behind the last barcode
inline constexpr char Limit[] = "limit";        ///< "text"
inline constexpr char Done[] = "done";          ///< "error": empty when all was done
}  // namespace PageAnswer

/// The bytes in front of a message: the lengths of its two parts.
inline constexpr std::size_t PageMessageHead = 16;

/// What is sent of a message before its bytes.
std::string HeadOf(const nlohmann::json& fields, std::size_t bytes);

struct PageMessageLengths {
  std::size_t fields;
  std::size_t bytes;
};

/// Throws std::runtime_error when a head announces more than a message has.
PageMessageLengths LengthsOf(std::string_view head);

/// Throws std::runtime_error when the text holds no fields.
nlohmann::json ParseFields(std::string_view text);

/// All of a request but its bytes.
nlohmann::json FieldsOf(const PageRequest& request);
/// Throws std::exception for a message that is no request.
PageRequest RequestOf(PageMessage message);

PageMessage MessageOf(const PageFinding& finding);
/// Throws std::exception for a message that is no finding.
PageFinding FindingOf(PageMessage message);

}  // namespace conduit
