#include "framework/Condition.h"

#include <conduit/ResultCode.h>

namespace conduit {

Condition::Condition(const char* name) : name(name) {}

Condition::~Condition() { actions.DeleteAll(); }

void Condition::AddAction(std::unique_ptr<Action> action) {
  actions.Add(action.get());
  action.release();
}

std::int32_t Condition::ExecuteActions() {
  std::int32_t result = ResultSuccess;
  EnumerablePtrRefList<Action> snapshot = actions.GetEnumerator();
  for (; result == ResultSuccess && snapshot.HasMore(); snapshot.MoveNext()) {
    result = snapshot.Current()->Execute();
  }
  return result;
}

}  // namespace conduit
