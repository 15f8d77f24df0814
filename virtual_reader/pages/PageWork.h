#pragma once

#include "virtual_reader/pages/PageService.h"

namespace conduit {

/// Does what a request asks for and hands over each answer as soon as it is there, at last
/// PageDone. Throws what `answer` throws, and std::bad_alloc.
void WorkOn(const PageRequest& request, const AnswerPage& answer);

}  // namespace conduit
