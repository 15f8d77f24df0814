#pragma once

#include <string>
#include <string_view>

namespace conduit {

/// Printable text as text of a page: nothing in it is markup, whether it stands
/// between tags or in a quoted attribute.
std::string PrintableHtml(std::string_view printable);

/// Any bytes as text of a page. What a reader could not see, or what would
/// reorder the text, is written out as on a terminal; paths stay as they are.
std::string HtmlText(std::string_view bytes);

/// <name attributes>contents</name>
/// @param attributes  markup; empty for none
/// @param contents    markup
std::string Element(std::string_view name, std::string_view attributes, std::string_view contents);

}  // namespace conduit
