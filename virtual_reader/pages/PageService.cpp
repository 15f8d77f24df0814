#include "virtual_reader/pages/PageService.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <utility>

#include "platform/Process.h"
#include "platform/WorkerProcess.h"

namespace conduit {
namespace {

/// Returns false at the end of the input.
bool Read(std::string* bytes, std::size_t count) {
  bytes->resize(count);
  return std::fread(bytes->data(), 1, count, stdin) == count;
}

/// Nobody learns of what cannot be written: the reader has gone, and this process with it.
void Write(PageAnswer answer) {
  const PageMessage message = MessageOf(std::move(answer));
  const std::string head = HeadOf({message.fields.size(), message.bytes.size()});
  for (const std::string& part :
       {std::cref(head), std::cref(message.fields), std::cref(message.bytes)}) {
    std::fwrite(part.data(), 1, part.size(), stdout);
  }
  std::fflush(stdout);
}

}  // namespace

int ServePageRequests(const std::function<void(const PageRequest&, const AnswerPage&)>& work) {
  EndAtOnceOnCrash();
  try {
    BecomeWorker();
    std::string head;
    while (Read(&head, PageMessageHead)) {
      PageMessage message;
      const PageMessageLengths lengths = LengthsOf(head);
      if (!Read(&message.fields, lengths.fields) || !Read(&message.bytes, lengths.bytes)) {
        break;
      }
      work(RequestOf(std::move(message)), Write);
    }
    return EXIT_SUCCESS;
  } catch (const std::exception&) {
    return EXIT_FAILURE;
  }
}

}  // namespace conduit
