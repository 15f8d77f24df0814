// The process that decodes and searches page images for the virtual reader, which starts it
// and ends it. A page comes from anybody: it may crash a decoder or hold it for hours.
#include <cstdio>
#include <cstdlib>

#include "virtual_reader/pages/PageService.h"
#include "virtual_reader/pages/PageWork.h"

int main(int count, char** /*arguments*/) {
  if (count > 1) {
    std::puts(
        "conduit-page-reader reads page images for the virtual reader, which starts it.\n"
        "It is not started by hand.");
    return EXIT_FAILURE;
  }
  return conduit::ServePageRequests(conduit::WorkOn);
}
