#include <gmock/gmock.h>

#include "virtual_reader/barcodes/AztecBits.h"

namespace conduit {
namespace {

using End = AztecMessage::End;

/// Bits as they are written in the tables of ISO/IEC 24778; blanks part them.
AztecMessage Read(const std::string& written) {
  std::string bytes;
  std::size_t count = 0;
  for (const char digit : written) {
    if (digit != ' ') {
      bytes.append(count % 8 == 0 ? 1 : 0, '\0');
      bytes.back() = static_cast<char>(bytes.back() | (digit - '0') << (7 - count % 8));
      ++count;
    }
  }
  return ReadAztecBits(bytes, count);
}

TEST(AztecBits, HoldWhatTheModesSay) {
  const struct {
    const char* bits;
    const char* data;
  } cases[] = {
      {"00010 11011 00001", "AZ "},                                   // upper
      {"11100 00010 11100 00010 00010", "aAa"},                       // lower, an upper shift
      {"11101 10100 11101 00010", "@A"},                              // mixed, upper
      {"11101 11110 00110 00010 11111 00010", "!\r\nA"},              // mixed, punctuation, upper
      {"11110 0010 1011 1100 1111 00010 0010 1110 00010", "09,A0A"},  // digits, an upper shift
      {"00000 00011 00010", ". A"},                                   // a punctuation shift, a pair
      {"11111 00010 01000001 01100010 00011", "AbB"},                 // two bytes
      {"00010 00000 00000 000 00010", "AA"},                          // FLG(0) behind a letter
      {"00010 00010 00000 00000 000 00010",
       "AA\x1D"
       "A"},                                     // FLG(0) behind more
      {"00000 00000 010 0011 0100 00010", "A"},  // FLG(2): ECI 12
  };
  for (const auto& [bits, data] : cases) {
    const AztecMessage message = Read(bits);
    EXPECT_EQ(message.data, data) << bits;
    EXPECT_EQ(message.end, End::Complete) << bits;
  }
}

TEST(AztecBits, HoldNothingBeyondTheirEnd) {
  const std::string longShift = "11111 00000 00000000001 ";  // of 32 bytes
  std::string bytes;
  for (int i = 0; i < 31; ++i) {
    bytes += "00000001 ";
  }
  const struct {
    std::string bits;
    std::string data;
    End end;
  } cases[] = {
      {"00010 1111", "A", End::Complete},  // too few bits for a character
      {"00010 11111 11111 1", "A", End::InPadding},
      {"00010 11111 111", "A", End::InPadding},
      {"00010 11111 00010 01000001 0000000", "A", End::Broken},
      {longShift + bytes + "00000001", std::string(32, '\1'), End::Complete},
      {longShift + bytes + "0000000", "", End::Broken},
      {"00010 00010 11111 00000 0000000001", "AA", End::Broken},
      {"00010 00000 00000 010 0010 001", "A", End::Broken},
      {"00010 00000 00000 001 1111 00010 00010", "A", End::Broken},   // no digit
      {"00010 00000 00000 111 00010 00010 00010", "A", End::Broken},  // reserved
  };
  for (const auto& [bits, data, end] : cases) {
    const AztecMessage message = Read(bits);
    EXPECT_EQ(message.data, data) << bits;
    EXPECT_EQ(message.end, end) << bits;
  }
}

}  // namespace
}  // namespace conduit
