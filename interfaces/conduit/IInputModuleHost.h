#pragma once  // stands alone in C++17

#include <cstdint>

#include "IStringMap.h"
#include "ItemType.h"

namespace conduit {

/// Where the host receives what a module delivers.
///
/// Every pointer passed in is lent for the duration of the call; the host
/// copies what it keeps. No text is ever null. The calls come on the thread
/// that produced the data: the reader's own for everything except the state
/// report of IInputModule::Initialise, which comes on its caller's thread. A
/// reader with several threads may call several operations at once.
///
/// The module never destroys a host, so there is no virtual destructor: it
/// would take a slot of the table that the module calls through.
class IInputModuleHost {
 public:
  /// Reserved: these hold the first three slots of the table. Never called.
  virtual void Reserved1() {}
  virtual void Reserved2() {}
  virtual void Reserved3() {}

  /// Receives one item. [reader thread]
  /// @param name        the item's name, "CODELINE_SURNAME"
  /// @param itemType    what the data is: see ItemType.h
  /// @param length      bytes at `data`, without a terminating NUL
  /// @param data        the item's bytes. Text items end in a NUL; images,
  ///                    chip data and barcodes need not, and may be null when
  ///                    the reader gave none
  /// @param properties  of a barcode: "feature", its 0-based position among the
  ///                    barcodes of the same read; null for every other item
  /// @param last        false only for a barcode that is not the last of its read
  /// @returns StopRecord (1) in answer to "UNKNOWN_DOCUMENT" or "BAD_CHARS" to
  ///          receive nothing more of that codeline; anything else goes on.
  ///          The answer to any other item changes nothing.
  virtual std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length,
                                const void* data, IStringMap* properties, bool last) = 0;

  /// Receives a reader event by name, "DOC_ON_WINDOW". [reader thread]
  virtual void SendEvent(const char* name) = 0;

  /// The data of one document or swipe begins. [reader thread]
  virtual void BeginData() = 0;

  /// The data of the document or swipe is complete. [reader thread]
  virtual void EndData() = 0;

  /// Asks the host to make the named script its active one. [reader thread]
  /// @returns 0 for success; anything else keeps the remaining actions of the
  ///          same condition from running.
  virtual std::int32_t SetActiveScript(const char* name) = 0;

  /// The reader's state after an event, an error or Initialise, "Reading";
  /// empty for a state that has no name. [reader thread; Initialise]
  virtual void ReportState(const char* text) = 0;

  /// The reader's error text; empty when no error stands, which every event
  /// reports first. [reader thread]
  virtual void ReportError(const char* text) = 0;

 protected:
  ~IInputModuleHost() = default;
};

}  // namespace conduit
