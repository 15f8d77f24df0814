#include "virtual_reader/pages/PageMessages.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

namespace conduit {
namespace {

using Json = nlohmann::json;

/// Fields are names and numbers; a codeline is the longest text among them.
constexpr std::uint64_t MostFields = std::uint64_t{1} << 20;

/// An uncompressed page, and as much again for a PNG that does not get smaller.
constexpr std::uint64_t MostBytes = std::uint64_t{1} << 30;

}  // namespace

std::string HeadOf(const Json& fields, std::size_t bytes) {
  const std::vector<std::uint8_t> packed = Json::to_cbor(fields);
  const std::uint64_t lengths[] = {packed.size(), bytes};
  static_assert(sizeof lengths == PageMessageHead);
  std::string head(reinterpret_cast<const char*>(lengths), sizeof lengths);
  return head.append(packed.begin(), packed.end());
}

PageMessageLengths LengthsOf(std::string_view head) {
  std::uint64_t lengths[2] = {};
  std::memcpy(lengths, head.data(), sizeof lengths);
  if (lengths[0] > MostFields || lengths[1] > MostBytes) {
    throw std::runtime_error("a message of impossible length");
  }
  return {static_cast<std::size_t>(lengths[0]), static_cast<std::size_t>(lengths[1])};
}

Json ParseFields(std::string_view text) {
  Json fields = Json::from_cbor(text, true, false);
  if (!fields.is_object()) {
    throw std::runtime_error("a message without fields");
  }
  return fields;
}

Json FieldsOf(const PageRequest& request) {
  return {{"task", static_cast<unsigned>(request.task)},
          {"barcodes", request.barcodes},
          {"codeline", request.codeline},
          {"page", request.page},
          // A file's name may be of any bytes.
          {"file", Json::binary({request.file.begin(), request.file.end()})}};
}

PageRequest RequestOf(PageMessage message) {
  const auto& file = message.fields.at("file").get_binary();
  return {static_cast<PageRequest::Task>(message.fields.at("task").get<std::uint8_t>()),
          message.fields.at("barcodes").get<bool>(),
          message.fields.at("codeline").get<bool>(),
          message.fields.at("page").get<std::uint32_t>(),
          {file.begin(), file.end()},
          std::move(message.bytes)};
}

PageMessage MessageOf(const PageFinding& finding) {
  const PageArea& area = finding.area;
  return {{{"kind", PageAnswer::Barcode},
           {"type", static_cast<std::int32_t>(finding.type)},
           {"area", {area.left, area.top, area.width, area.height}},
           {"failure", finding.failure}},
          finding.data};
}

PageFinding FindingOf(PageMessage message) {
  const auto area = message.fields.at("area").get<std::array<int, 4>>();
  return {static_cast<ReaderDataType>(message.fields.at("type").get<std::int32_t>()),
          std::move(message.bytes),
          {area[0], area[1], area[2], area[3]},
          message.fields.at("failure").get<std::string>()};
}

}  // namespace conduit
