#pragma once

#include <string>
#include <string_view>

namespace conduit {

/// What the data bits of an Aztec Code say.
struct AztecMessage {
  enum class End {
    Complete,   ///< the bits end with a character, or with too few for one
    InPadding,  ///< the ones that fill the last codeword read as the begin of a shift
    Broken,     ///< a character needs more bits than there are, or is none
  };

  std::string data;  ///< of the characters that the bits hold whole
  End end;
};

/// Reads the data bits of an Aztec Code (ISO/IEC 24778, clause 7), after correction and
/// without stuffed bits.
/// FNC1 is a group separator, but for the first: that tells the kind of the data, and stands
/// in front of them, behind a letter or behind two digits.
/// @param bits   the first is the highest of the first byte
/// @param count  at most eight for each byte
AztecMessage ReadAztecBits(std::string_view bits, std::size_t count);

}  // namespace conduit
