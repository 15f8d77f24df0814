#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "virtual_reader/barcodes/PageFindings.h"
#include "virtual_reader/mrz/CodelineFindings.h"
#include "virtual_reader/pages/PageRequest.h"

namespace conduit {

/// An image is decoded, or the pages of a TIFF file are counted.
struct PageDecoded {
  std::int64_t width;   ///< in pixels; 0 when pages were counted
  std::int64_t height;  ///< in pixels; 0 when pages were counted
  std::uint64_t pages;  ///< of a TIFF
};

/// What is delivered in place of a TIFF's page.
struct PagePng {
  std::string bytes;
};

/// The search for barcodes has come to its end.
struct PageSearched {};

/// What is not looked for.
struct PageLimit {
  std::string text;
};

/// The last answer to a request.
struct PageDone {
  std::string error;  ///< empty when all was done
};

using PageAnswer = std::variant<PageDecoded, PagePng, CodelineFindings, PageFinding, PageSearched,
                                PageLimit, PageDone>;

/// What the reader and its page processes send to each other: small fields, and bytes of any
/// number. Both ends are of one build.
struct PageMessage {
  std::string fields;
  std::string bytes;
};

/// The bytes in front of a message: the lengths of its two parts.
inline constexpr std::size_t PageMessageHead = 16;

struct PageMessageLengths {
  std::size_t fields;
  std::size_t bytes;
};

std::string HeadOf(const PageMessageLengths& lengths);
/// Throws std::runtime_error when a head announces more than a message has.
PageMessageLengths LengthsOf(std::string_view head);

/// All of a request but its bytes.
std::string FieldsOf(const PageRequest& request);
/// Throws std::runtime_error for a message that is no request.
PageRequest RequestOf(PageMessage message);

PageMessage MessageOf(PageAnswer answer);
/// Throws std::runtime_error for a message that is no answer.
PageAnswer AnswerOf(PageMessage message);

}  // namespace conduit
