#pragma once  // stands alone in C++17

namespace conduit {

/// What a module can wait for, as IInputModule::AddCondition takes it.
namespace ConditionKind {

/// The operand is a reader event: see ReaderEventNames.
inline constexpr char ReceiveEvent[] = "ReceiveEvent";

}  // namespace ConditionKind

/// What a module can do then, as IInputModule::AddAction takes it.
namespace ActionKind {

/// The operand is the name of one of the host's scripts.
inline constexpr char SetActiveScript[] = "SetActiveScript";

}  // namespace ActionKind

}  // namespace conduit
