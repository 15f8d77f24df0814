// Does to the reader what a page does to a decoder: the bytes of the page say what.
#include <cstdio>
#include <cstdlib>

#include "virtual_reader/pages/PageService.h"

namespace {

using namespace conduit;

void Misbehave(const PageRequest& request, const AnswerPage& answer) {
  const std::string_view page = request.bytes;
  if (page.starts_with("search")) {
    answer(PageDecoded{100, 100, 1});
    answer(CodelineFindings{{"LINE"}, {}});
    answer(PageFinding{ReaderDataType::BarcodeQr, "found", {0, 0, 9, 9}, ""});
  }
  if (page.ends_with("crash")) {
    std::abort();
  }
  while (page.ends_with("hang")) {
    static volatile int spins = 0;
    spins = spins + 1;
  }
  if (page.ends_with("babble")) {
    std::fputs("This is a text and no message of any kind.", stdout);
  }
  answer(PageDone{});
}

}  // namespace

int main() { return ServePageRequests(Misbehave); }
