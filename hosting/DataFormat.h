#pragma once

#include <string_view>

#include <conduit/ItemType.h>

namespace conduit {

/// The format that the data's first bytes tell, "PNG"; empty for any other.
std::string_view DataFormat(std::string_view data);

/// What a file of the data is to end in, ".png"; ".bin" for an unknown format.
std::string_view FileExtension(std::string_view data);

/// The media type, "image/png", of a picture that browsers show; empty for any
/// other data.
std::string_view BrowserMediaType(std::string_view data);

/// Whether an item's data is to be shown as text. Text and image items say so
/// themselves; the other types only name the format of a barcode, and their
/// bytes decide.
bool ReadsAsText(ItemType type, std::string_view data);

}  // namespace conduit
