#include "virtual_reader/pages/PageService.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>
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
void Write(const PageMessage& message) {
  const std::string head = HeadOf(message.fields, message.bytes.size());
  for (const std::string_view part : {std::string_view(head), std::string_view(message.bytes)}) {
    std::fwrite(part.data(), 1, part.size(), stdout);
  }
  std::fflush(stdout);
}

}  // namespace

int ServePageRequests(const std::function<void(const PageRequest&, const AnswerPage&)>& work) {
  EndAtOnceOnCrash();
  BecomeWorker();
  std::string head;
  std::string fields;
  try {
    while (Read(&head, PageMessageHead)) {
      PageMessage message;
      const PageMessageLengths lengths = LengthsOf(head);
      if (!Read(&fields, lengths.fields) || !Read(&message.bytes, lengths.bytes)) {
        break;
      }
      message.fields = ParseFields(fields);
      work(RequestOf(std::move(message)), Write);
    }
    return EXIT_SUCCESS;
  } catch (const std::exception&) {
    return EXIT_FAILURE;
  }
}

}  // namespace conduit
