#include <conduit/Compiler.h>

namespace conduit {

CONDUIT_EXPORT void Helper();
void Helper() {}

}  // namespace conduit
