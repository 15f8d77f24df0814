#include "virtual_reader/search/PageSearch.h"

namespace conduit {

bool CanSearchPages() { return false; }

PageFindings SearchPage(const PageImage& /*image*/) { return {}; }

}  // namespace conduit
