#pragma once

#include <functional>
#include <string>
#include <vector>

#include "virtual_reader/barcodes/PageFindings.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Whether this build can search: not where the decoder is missing.
bool CanSearchPages();

/// The barcodes among the host's items that no search finds, for what decodes has no
/// reader for them: Industrial and IATA 2 of 5, or all where CanSearchPages is false.
std::vector<ReaderDataType> BarcodesNotLookedFor();

/// Looks for barcodes at any angle, dark on light or light on dark, and hands each symbol
/// over once, as soon as it is found. Takes up to three bytes for each pixel of a large
/// page, beside the image. Throws std::exception when the search ends early. May be called
/// on several threads at once.
///
/// The decoder's time has no bound: a page of a kilobyte can hold it for hours, and its
/// assertions end the process. So this is called where it can be ended.
void SearchPage(const PageImage& image, const std::function<void(const PageFinding&)>& tell);

/// The same, arranged.
PageFindings SearchPage(const PageImage& image);

}  // namespace conduit
