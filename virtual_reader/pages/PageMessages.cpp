#include "virtual_reader/pages/PageMessages.h"

#include <cstring>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace conduit {
namespace {

/// Fields are names and numbers; a codeline is the longest text among them.
constexpr std::uint64_t MostFields = std::uint64_t{1} << 20;

/// An uncompressed page, and as much again for a PNG that does not get smaller.
constexpr std::uint64_t MostBytes = std::uint64_t{1} << 30;

template <typename Value>
concept Number = std::is_arithmetic_v<Value> || std::is_enum_v<Value>;

/// Appends fields to a message.
class Packing {
 public:
  template <typename... Values>
  void Fields(Values&... values) {
    (Put(values), ...);
  }
  void Bytes(std::string& bytes) { message.bytes = std::move(bytes); }

  PageMessage message;

 private:
  template <Number Value>
  void Put(Value value) {
    message.fields.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  void Put(const std::string& text) {
    Put(text.size());
    message.fields.append(text);
  }
  void Put(const std::vector<std::string>& texts) {
    Put(texts.size());
    for (const std::string& text : texts) {
      Put(text);
    }
  }
};

/// Takes fields out of a message, in the order in which they were packed.
class Unpacking {
 public:
  explicit Unpacking(PageMessage received) : message(std::move(received)), rest(message.fields) {}
  Unpacking(const Unpacking&) = delete;
  Unpacking& operator=(const Unpacking&) = delete;

  template <typename... Values>
  void Fields(Values&... values) {
    (Take(&values), ...);
  }
  void Bytes(std::string& bytes) { bytes = std::move(message.bytes); }

 private:
  std::string_view Next(std::size_t size) {
    if (size > rest.size()) {
      throw std::runtime_error("a message that ends within a field");
    }
    const std::string_view next = rest.substr(0, size);
    rest.remove_prefix(size);
    return next;
  }

  template <Number Value>
  void Take(Value* value) {
    std::memcpy(value, Next(sizeof *value).data(), sizeof *value);
  }
  void Take(std::string* text) {
    std::size_t size = 0;
    Take(&size);
    *text = Next(size);
  }
  void Take(std::vector<std::string>* texts) {
    std::size_t count = 0;
    Take(&count);
    for (; count > 0; --count) {
      Take(&texts->emplace_back());
    }
  }

  PageMessage message;
  std::string_view rest;
};

// What each message consists of, for both directions.

template <typename Direction, typename Request>
void PassRequest(Direction& direction, Request& request) {
  direction.Fields(request.task, request.barcodes, request.codeline, request.page, request.file);
}

template <typename Direction>
void Pass(Direction& direction, PageDecoded& decoded) {
  direction.Fields(decoded.width, decoded.height, decoded.pages);
}

template <typename Direction>
void Pass(Direction& direction, PagePng& png) {
  direction.Bytes(png.bytes);
}

template <typename Direction>
void Pass(Direction& direction, CodelineFindings& found) {
  direction.Fields(found.lines, found.failures);
}

template <typename Direction>
void Pass(Direction& direction, PageFinding& finding) {
  Rectangle& area = finding.area;
  direction.Fields(finding.type, area.left, area.top, area.width, area.height, finding.failure);
  direction.Bytes(finding.data);
}

template <typename Direction>
void Pass(Direction& /*direction*/, PageSearched& /*searched*/) {}

template <typename Direction>
void Pass(Direction& direction, PageLimit& limit) {
  direction.Fields(limit.text);
}

template <typename Direction>
void Pass(Direction& direction, PageDone& done) {
  direction.Fields(done.error);
}

template <std::size_t Kind = 0>
PageAnswer UnpackAnswer(std::size_t kind, Unpacking& message) {
  if constexpr (Kind < std::variant_size_v<PageAnswer>) {
    if (kind != Kind) {
      return UnpackAnswer<Kind + 1>(kind, message);
    }
    std::variant_alternative_t<Kind, PageAnswer> answer{};
    Pass(message, answer);
    return answer;
  } else {
    throw std::runtime_error("a message of an unknown kind");
  }
}

}  // namespace

std::string HeadOf(const PageMessageLengths& lengths) {
  const std::uint64_t head[] = {lengths.fields, lengths.bytes};
  static_assert(sizeof head == PageMessageHead);
  return {reinterpret_cast<const char*>(head), sizeof head};
}

PageMessageLengths LengthsOf(std::string_view head) {
  std::uint64_t lengths[2] = {};
  std::memcpy(lengths, head.data(), sizeof lengths);
  if (lengths[0] > MostFields || lengths[1] > MostBytes) {
    throw std::runtime_error("a message of impossible length");
  }
  return {static_cast<std::size_t>(lengths[0]), static_cast<std::size_t>(lengths[1])};
}

std::string FieldsOf(const PageRequest& request) {
  Packing packing;
  PassRequest(packing, request);
  return std::move(packing.message.fields);
}

PageRequest RequestOf(PageMessage message) {
  PageRequest request;
  Unpacking unpacking(std::move(message));
  PassRequest(unpacking, request);
  unpacking.Bytes(request.bytes);
  return request;
}

PageMessage MessageOf(PageAnswer answer) {
  Packing packing;
  std::size_t kind = answer.index();
  packing.Fields(kind);
  std::visit([&packing](auto& alternative) { Pass(packing, alternative); }, answer);
  return std::move(packing.message);
}

PageAnswer AnswerOf(PageMessage message) {
  Unpacking unpacking(std::move(message));
  std::size_t kind = 0;
  unpacking.Fields(kind);
  PageAnswer answer = UnpackAnswer(kind, unpacking);
  if (const auto* const finding = std::get_if<PageFinding>(&answer);
      finding != nullptr && FindReaderItem(finding->type) == nullptr) {
    throw std::runtime_error("a barcode of an unknown type");
  }
  return answer;
}

}  // namespace conduit
