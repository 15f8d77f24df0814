#pragma once  // self-contained; C++17

namespace conduit {

/// The kinds of condition, for IInputModule::AddCondition.
namespace ConditionKind {

/// The operand is a reader event: see ReaderEventNames.
inline constexpr char ReceiveEvent[] = "ReceiveEvent";

}  // namespace ConditionKind

/// The kinds of action, for IInputModule::AddAction.
namespace ActionKind {

/// The operand is the name of one of the host's scripts.
inline constexpr char SetActiveScript[] = "SetActiveScript";

}  // namespace ActionKind

}  // namespace conduit
