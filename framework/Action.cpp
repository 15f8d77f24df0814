#include "framework/Action.h"

namespace conduit {

Action::Action(UnaryCondition* condition, const char* name) : condition(condition), name(name) {}

}  // namespace conduit
