#pragma once

namespace conduit {

/// What a module does wrong. Each has a library of its own, made of the same code
/// and a file that only says which.
enum class Fault {
  None,
  ExportsMore,
  IgnoresNullResult,
  DestroysNull,
  ReadsNullText,
  NeedsLogger,
  LeaksModule,
  LeaksCondition,
  ListsUnsorted,
  ListsPastTheEnd,
  ListsPastTheEndOfConditions,
  RenamesParameters,
  GivesDefaults,
  ChangesValue,
  KeepsRefusedValue,
  ThrowsOnUnknownParameter,
  TakesAnyCase,
  TakesAnyCondition,
  TakesAnyAction,
  ListsBackwards,
  StaysRefused,
  HidesRefusal,
  HangsInSecondShutdown,
  EndsTheProcess,
  DeliversAfterShutdown,
  LeavesDocumentOpen,
  EndsDocumentTwice,
  NamesInLowerCase,
  NullName,
  CountsTheNul,
  CutsTheImage,
  ForgetsActions,
  SwapsActions,
};

extern const Fault TheFault;

}  // namespace conduit
