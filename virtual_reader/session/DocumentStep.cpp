#include "virtual_reader/session/DocumentStep.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace conduit {
namespace {

void AddParts(Step* step, const Document& document, std::span<DocumentImage> images) {
  for (const DocumentPart& part : document.parts) {
    if (const auto* const actions = std::get_if<Step>(&part); actions != nullptr) {
      step->insert(step->end(), actions->begin(), actions->end());
    } else {
      const std::size_t count = std::get<std::vector<ImageFile>>(part).size();
      AddImages(step, images.first(count), document.wanted);
      images = images.subspan(count);
    }
  }
}

}  // namespace

Step MakeStep(const Document& document, std::vector<DocumentImage> images) {
  Step step;
  if (document.name.empty()) {
    AddParts(&step, document, images);
    return step;
  }
  Add(&step, WriteLine{document.name, ReaderLogKind::Document});
  Add(&step, SendEvent{ReaderEventCode::DocOnWindow});
  if (document.isScan && !images.front().reading.error.empty()) {
    AddPassingError(&step, ErrorOf(images.front()));
  } else {
    Add(&step, SendEvent{ReaderEventCode::StartOfDocumentData});
    AddParts(&step, document, images);
    Add(&step, SendEvent{ReaderEventCode::EndOfDocumentData});
  }
  Add(&step, SendEvent{ReaderEventCode::DocRemoved});
  std::stable_partition(step.begin(), step.end(), [](const StepAction& action) {
    return std::holds_alternative<WriteLine>(action);
  });
  return step;
}

}  // namespace conduit
