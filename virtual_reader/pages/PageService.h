#pragma once

#include <functional>

#include "virtual_reader/pages/PageMessages.h"

namespace conduit {

using AnswerPage = std::function<void(PageAnswer)>;

/// The main function of a process that works for PageReaders: does `work` on each request
/// from its standard input until that ends. Returns the exit status.
int ServePageRequests(const std::function<void(const PageRequest&, const AnswerPage&)>& work);

}  // namespace conduit
