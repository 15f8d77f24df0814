#pragma once  // self-contained; C++17

#include <cstdint>

#include "IStringMap.h"
#include "ItemType.h"

namespace conduit {

/// Receives everything that a module delivers.
///
/// Every pointer is valid for the duration of the call; the host copies what it
/// keeps. No text is ever null. The module calls on a reader thread, with one
/// exception: the state report of IInputModule::Initialise comes on the thread
/// that called Initialise. A reader with several threads may call several
/// operations at once.
///
/// The module never destroys a host, so there is no virtual destructor: it
/// would take a slot of the vtable that the module calls through.
class IInputModuleHost {
 public:
  /// Reserved: these occupy the first three vtable slots. Never called.
  virtual void Reserved1() {}
  virtual void Reserved2() {}
  virtual void Reserved3() {}

  /// Receives one item. [reader thread]
  /// @param name        the item's name, "CODELINE_SURNAME"
  /// @param itemType    the kind of data: see ItemType.h
  /// @param length      bytes at `data`, without a terminating NUL
  /// @param data        the item's bytes. Text items end in a NUL; images,
  ///                    chip data and barcodes need not, and are null when the
  ///                    reader supplied none
  /// @param properties  of a barcode: "feature", its 0-based position among the
  ///                    barcodes of the same read; null for every other item
  /// @param last        false only for a barcode that is not the last of its read
  /// @returns StopRecord (1) in answer to "UNKNOWN_DOCUMENT" or "BAD_CHARS" to
  ///          receive nothing more of that codeline; anything else to continue.
  ///          The module ignores the answer to any other item.
  virtual std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length,
                                const void* data, IStringMap* properties, bool last) = 0;

  /// Receives a reader event by name, "DOC_ON_WINDOW". [reader thread]
  virtual void SendEvent(const char* name) = 0;

  /// The data of one document or swipe begins. [reader thread]
  virtual void BeginData() = 0;

  /// The data of the document or swipe is complete. [reader thread]
  virtual void EndData() = 0;

  /// Asks the host to make the named script its active one. [reader thread]
  /// @returns 0 for success; anything else skips the remaining actions of the
  ///          same condition.
  virtual std::int32_t SetActiveScript(const char* name) = 0;

  /// Receives the reader's state, "Reading", after an event, an error or
  /// Initialise; empty for a state without a name. [reader thread; Initialise]
  virtual void ReportState(const char* text) = 0;

  /// Receives the reader's error text. The empty text means that there is no
  /// current error; one precedes every event. [reader thread]
  virtual void ReportError(const char* text) = 0;

 protected:
  ~IInputModuleHost() = default;
};

}  // namespace conduit
