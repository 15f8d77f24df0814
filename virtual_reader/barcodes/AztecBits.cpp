#include "virtual_reader/barcodes/AztecBits.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>

namespace conduit {
namespace {

using namespace std::string_view_literals;

/// Bits to fill the last codeword: fewer than the longest codeword has.
constexpr std::size_t MostPadding = 11;

enum class Mode { Upper, Lower, Mixed, Punctuation, Digit, Binary };

/// A code that leads to another mode: for good, or for the next character.
struct ModeChange {
  unsigned code;
  Mode mode;
  bool latch;
};

/// The codes of a mode (ISO/IEC 24778, table 2).
struct ModeCodes {
  std::size_t width;            ///< of a code, in bits
  std::string_view characters;  ///< by code; those of one byte
  std::array<ModeChange, 5> changes;
};

constexpr ModeChange PunctuationShift = {0, Mode::Punctuation, false};
constexpr ModeChange BinaryShift = {31, Mode::Binary, false};
constexpr ModeChange NoChange = {~0U, Mode::Upper, false};

constexpr ModeCodes Codes[] = {
    {5,
     "\0 ABCDEFGHIJKLMNOPQRSTUVWXYZ"sv,
     {PunctuationShift,
      {28, Mode::Lower, true},
      {29, Mode::Mixed, true},
      {30, Mode::Digit, true},
      BinaryShift}},
    {5,
     "\0 abcdefghijklmnopqrstuvwxyz"sv,
     {PunctuationShift,
      {28, Mode::Upper, false},
      {29, Mode::Mixed, true},
      {30, Mode::Digit, true},
      BinaryShift}},
    {5,
     "\0 \1\2\3\4\5\6\7\b\t\n\v\f\r\x1B\x1C\x1D\x1E\x1F@\\^_`|~\x7F"sv,
     {PunctuationShift,
      {28, Mode::Lower, true},
      {29, Mode::Upper, true},
      {30, Mode::Punctuation, true},
      BinaryShift}},
    {5,
     "\0\r\0\0\0\0!\"#$%&'()*+,-./:;<=>?[]{}"sv,
     {{{31, Mode::Upper, true}, NoChange, NoChange, NoChange, NoChange}}},
    {4,
     "\0 0123456789,."sv,
     {{PunctuationShift, {14, Mode::Upper, true}, {15, Mode::Upper, false}, NoChange, NoChange}}},
};

/// The codes 2 to 5 of punctuation stand for two bytes each.
constexpr std::string_view Pairs[] = {"\r\n", ". ", ", ", ": "};
constexpr unsigned FirstPair = 2;

/// FLG(n) in punctuation: n digits of an ECI follow; for 0 it is an FNC1; 7 is reserved.
constexpr unsigned Flag = 0;
constexpr char GroupSeparator = '\x1D';

class BitStream {
 public:
  BitStream(std::string_view bytes, std::size_t count) : bytes(bytes), left(count) {}

  std::size_t Left() const { return left; }

  /// Nothing where fewer are left.
  std::optional<unsigned> Read(std::size_t count) {
    if (count > left) {
      return {};
    }
    unsigned value = 0;
    for (; count > 0; --count, --left, ++next) {
      const auto byte = static_cast<unsigned char>(bytes[next / 8]);
      value = value << 1 | (byte >> (7 - next % 8) & 1U);
    }
    return value;
  }

 private:
  std::string_view bytes;
  std::size_t left;
  std::size_t next = 0;
};

class Reading {
 public:
  Reading(std::string_view bits, std::size_t count) : stream(bits, count) {}

  AztecMessage Read() {
    while (stream.Left() >= CodesOf(mode).width) {
      const std::size_t before = stream.Left();
      if (!ReadCode()) {
        return {data,
                before <= MostPadding ? AztecMessage::End::InPadding : AztecMessage::End::Broken};
      }
    }
    return {data, AztecMessage::End::Complete};
  }

 private:
  static const ModeCodes& CodesOf(Mode mode) { return Codes[static_cast<std::size_t>(mode)]; }

  /// Returns false where the bits end within it.
  bool ReadCode() {
    const ModeCodes& codes = CodesOf(mode);
    const unsigned code = *stream.Read(codes.width);
    for (const ModeChange& change : codes.changes) {
      if (change.code == code) {
        return Enter(change);
      }
    }
    const Mode present = mode;
    mode = latched;
    if (present == Mode::Punctuation && code == Flag) {
      return ReadFlag();
    }
    if (present == Mode::Punctuation && code >= FirstPair && code < FirstPair + std::size(Pairs)) {
      data += Pairs[code - FirstPair];
    } else {
      data += codes.characters[code];
    }
    return true;
  }

  bool Enter(const ModeChange& change) {
    if (change.mode == Mode::Binary) {
      const bool whole = ReadBytes();
      // A shift within a shift ends in the mode that it comes from.
      latched = mode;
      return whole;
    }
    latched = change.latch ? change.mode : mode;
    mode = change.mode;
    return true;
  }

  bool ReadBytes() {
    constexpr unsigned shortest = 31;  // of those whose length takes eleven bits
    std::optional<unsigned> length = stream.Read(5);
    if (length == 0U) {
      length = stream.Read(11);
      length = length ? std::optional(*length + shortest) : std::nullopt;
    }
    if (!length || *length * std::size_t{8} > stream.Left()) {
      return false;
    }
    for (unsigned i = 0; i < *length; ++i) {
      data += static_cast<char>(*stream.Read(8));
    }
    return true;
  }

  bool ReadFlag() {
    constexpr unsigned mostDigits = 6;
    constexpr unsigned digitZero = 2;  // the code of 0, that of 9 is 11
    const std::optional<unsigned> digits = stream.Read(3);
    if (!digits || *digits > mostDigits) {
      return false;
    }
    if (*digits == 0 && (std::exchange(hasFlag, true) || !TellsKind(data))) {
      data += GroupSeparator;
    }
    for (unsigned i = 0; i < *digits; ++i) {
      const std::optional<unsigned> digit = stream.Read(4);
      if (!digit || *digit < digitZero || *digit > digitZero + 9) {
        return false;
      }
    }
    return true;
  }

  /// Whether a first FNC1 behind these data tells their kind.
  static bool TellsKind(std::string_view data) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    return data.empty() || (data.size() == 1 && isLetter(data[0])) ||
           (data.size() == 2 && isDigit(data[0]) && isDigit(data[1]));
  }

  BitStream stream;
  Mode mode = Mode::Upper;
  Mode latched = Mode::Upper;
  bool hasFlag = false;  ///< an FNC1
  std::string data;
};

}  // namespace

AztecMessage ReadAztecBits(std::string_view bits, std::size_t count) {
  return Reading(bits, count).Read();
}

}  // namespace conduit
