#pragma once  // self-contained; C++17

#include <cstdint>

#include "Compiler.h"
#include "ReaderDataType.h"
#include "ReaderErrorInfo.h"
#include "ReaderEventCode.h"
#include "ReaderState.h"

/// The reader maker's library: the four functions that drive a document reader,
/// and the callbacks through which it delivers data, events and errors.
///
/// The library calls the callbacks on its own threads. It owns every pointer that
/// it passes; the pointer is valid until the callback returns.

#if defined(HALDEN_READER_BUILDS_LIBRARY)
#define HALDEN_READER_API CONDUIT_EXPORT
#else
#define HALDEN_READER_API CONDUIT_IMPORT
#endif

extern "C" {

/// Receives one data item.
/// @param context  the pointer given to HaldenReader_Initialise
/// @param length   bytes at `data`; meaningless for a record
/// @param data     the item's bytes, or the record of the type
using ReaderDataCallback = void (*)(void* context, conduit::ReaderDataType type,
                                    std::int32_t length, void* data);

/// Receives one event.
/// @param context  the pointer given to HaldenReader_Initialise
using ReaderEventCallback = void (*)(void* context, conduit::ReaderEventCode code);

/// Receives one error.
/// @param first    private to the library
/// @param context  the pointer given to HaldenReader_Initialise
using ReaderErrorCallback = void (*)(void* first, const conduit::ReaderErrorInfo* error,
                                     void* context);

/// Turns the library's own log on or off. [before HaldenReader_Initialise]
/// @param level  0 (failures only) to 5 (everything)
/// @param mask   all bits set: logs every part of the library
/// @param file   the log file's name; copied
/// @returns 0, or the library's error code.
HALDEN_READER_API std::int32_t HaldenReader_EnableLogging(bool enable, std::int32_t level,
                                                          std::int32_t mask, const char* file);

/// Starts the reader, which may call the callbacks before this returns.
/// @param reserved4, reserved5, reserved6  null, false, false
/// @param context  passed to every callback
/// @returns 0, or the library's error code when the reader did not start.
HALDEN_READER_API std::int32_t HaldenReader_Initialise(ReaderDataCallback dataCallback,
                                                       ReaderEventCallback eventCallback,
                                                       ReaderErrorCallback errorCallback,
                                                       void* reserved4, bool reserved5,
                                                       bool reserved6, void* context);

/// Returns the reader's current state: a ReaderState. [any thread, callbacks included]
HALDEN_READER_API std::int32_t HaldenReader_GetState();

/// Stops the reader. When it returns, no callback is running, except the one
/// that called it, if any. [any thread, callbacks included]
/// @returns 0, or the library's error code.
HALDEN_READER_API std::int32_t HaldenReader_Shutdown();

}  // extern "C"
