#pragma once  // C99 and C++; stands alone

#include <stddef.h>
#include <stdint.h>

#include <conduit/Compiler.h>

/// A host for modules as plain C functions, for whatever language can call those.
///
/// The life of a host: conduit_host_create, conduit_host_load, any number of
/// conduit_host_set_parameter, conduit_host_add_condition and conduit_host_add_action,
/// conduit_host_initialise, then the callbacks on the reader's threads, conduit_host_wait,
/// conduit_host_shutdown, conduit_host_destroy. After the shutdown it may be configured
/// and initialised again.
///
/// Texts end in a NUL. Those that name files, and those that this library makes, are UTF-8;
/// all others are handed on as the bytes that they are. A text given to a function is copied.
///
/// Threads: every function may be called from any thread that is not within a callback.
/// The calls on one host come one at a time; one that would come between is refused with
/// CONDUIT_HOST_BUSY and does nothing, so that no call ever waits for another. Outside of
/// this rule, and allowed within callbacks too, stand conduit_host_interrupt,
/// conduit_host_last_error, conduit_host_item_property, conduit_host_media_type,
/// conduit_host_result_text and conduit_host_version. conduit_host_wait may be under way
/// beside any other call.
///
/// Nothing is thrown: an exception that a module lets out, or a callback in C++, becomes a
/// result.

#if defined(CONDUIT_HOST_BUILDS_LIBRARY)
#define CONDUIT_HOST_API CONDUIT_EXPORT
#else
#define CONDUIT_HOST_API CONDUIT_IMPORT
#endif

#if defined(__cplusplus)
extern "C" {
#endif

/// A host, until it is destroyed. A number that is looked up and never comes again, so that
/// one whose host has ended is refused and not followed. 0 is none.
typedef uint64_t conduit_host;

/// What a function answers: 0 for success, a positive number as the module answered it, or
/// one of these, which are all negative.
enum conduit_host_result {
  CONDUIT_HOST_SUCCESS = 0,
  CONDUIT_HOST_NO_SUCH_HOST = -1,    ///< the handle is 0, or its host has been destroyed
  CONDUIT_HOST_NULL_POINTER = -2,    ///< a pointer is null that must not be
  CONDUIT_HOST_WRONG_SIZE = -3,      ///< a structure's `size` is none that this library knows
  CONDUIT_HOST_IN_CALLBACK = -4,     ///< called from within a callback, which could wait for itself
  CONDUIT_HOST_BUSY = -5,            ///< another thread's call on this host is under way
  CONDUIT_HOST_NOT_LOADED = -6,      ///< no module has been loaded
  CONDUIT_HOST_ALREADY_LOADED = -7,  ///< this host has its module
  CONDUIT_HOST_RUNNING = -8,         ///< the reader runs; shut it down first
  CONDUIT_HOST_NOT_RUNNING = -9,     ///< the reader does not run, or no longer
  CONDUIT_HOST_CANNOT_LOAD = -10,    ///< there is no module to be had from the file
  CONDUIT_HOST_CANNOT_READ = -11,    ///< a session is neither a file nor a folder to be read
  CONDUIT_HOST_BUFFER_TOO_SMALL = -12,
  CONDUIT_HOST_TIMED_OUT = -13,        ///< of conduit_host_wait: the time is over
  CONDUIT_HOST_INTERRUPTED = -14,      ///< of conduit_host_wait: conduit_host_interrupt was called
  CONDUIT_HOST_CALLBACK_FAILED = -15,  ///< a callback threw an exception, or there was no memory
                                       ///< to call it with
  CONDUIT_HOST_FAILED = -16  ///< anything else: memory, or a module that broke its contract
};

/// One item as a callback receives it. Lent, with all that it points to, until the callback
/// returns.
typedef struct conduit_host_item {
  size_t size;          ///< of this structure, as the library knows it
  const char* name;     ///< "CODELINE_SURNAME"; never null
  int32_t type;         ///< 4 text, 5 an image or binary; a barcode has 0 to 5, by its format
  int32_t length;       ///< bytes, as the module gave it; negative only from a faulty module
  const void* data;     ///< that many bytes; a NUL need not follow; null when the module announced
                        ///< bytes and gave none, or gave no possible length
  const char* feature;  ///< of a barcode: its 0-based position in its read; else null
  int32_t last;         ///< 0 only for a barcode that is followed by another of the same read
} conduit_host_item;

/// A line of the reader library's own log. Lent, with all that it points to, until the
/// callback returns. No text is null.
typedef struct conduit_host_reader_line {
  size_t size;       ///< of this structure, as the library knows it
  int32_t level;     ///< -1 in a log of another form than the virtual reader's
  const char* text;  ///< as people read it, "document 03.png"
  const char*
      document;         ///< what the document comes from that this line heads, "03.png"; else empty
  const char* warning;  ///< of a warning its text, "03.png: DBB is no date"; else empty
} conduit_host_reader_line;

/// What a host receives. Each may be null, for what is of no interest.
///
/// Called on the reader's threads, of which there may be several, at once; what comes from
/// within a call (log lines, the state that conduit_host_initialise reports) is called on
/// that call's thread. No pointer is null unless it says so, and each is lent until the
/// callback returns. The reader waits meanwhile, and so does conduit_host_shutdown: a
/// callback must not wait for a thread that is about to call it.
///
/// A callback returns; it must not jump out (longjmp) or end its thread.
typedef struct conduit_host_callbacks {
  size_t size;    ///< sizeof(conduit_host_callbacks), as the caller was compiled with
  void* context;  ///< handed to every callback; the caller's own, may be null

  /// A line of the module's log.
  /// @param level  0 failures, 1 unknown parameters, 2 items and events, 3 configuration
  /// @param tag    the operation that speaks
  void (*log)(void* context, int32_t level, const char* tag, const char* message);

  /// @returns 1 in answer to "UNKNOWN_DOCUMENT" or "BAD_CHARS" to receive nothing more of
  ///          that codeline; 0 otherwise. Without this callback 0 is answered.
  int32_t (*item)(void* context, const conduit_host_item* item);

  /// An event of the reader, "DOC_ON_WINDOW".
  void (*event)(void* context, const char* name);

  /// The data of one document or swipe begins, and is complete.
  void (*begin)(void* context);
  void (*end)(void* context);

  /// A reaction asks for this script to be made the active one.
  /// @returns 0 for success; anything else keeps the remaining actions of the same
  ///          condition from running. Without this callback 0 is answered.
  int32_t (*script)(void* context, const char* name);

  /// The reader's state, "Reading"; empty for one without a name.
  void (*state)(void* context, const char* text);

  /// The reader's error; empty when none stands any more, which comes before every event.
  void (*error)(void* context, const char* text);

  /// A line of the reader library's own log, before what it is about: see
  /// conduit_host_follow_reader_log.
  /// @param level     -1 in a log of another form than the virtual reader's
  /// @param document  what the document comes from that this line heads, "03.png"; else empty
  void (*reader_line)(void* context, int32_t level, const char* text, const char* document);

  /// The reader has nothing more to give: its device was disconnected, and it has
  /// terminated. Comes once for each initialise, at most, after everything else.
  void (*ended)(void* context);

  /// As reader_line, with all that is known of the line. Both are called where both are set.
  void (*reader_log)(void* context, const conduit_host_reader_line* line);
} conduit_host_callbacks;

/// Receives one entry of a list, lent until it returns. Counts as a callback.
typedef void (*conduit_host_entry)(void* context, const char* name, const char* value);

/// The version of this library, "1.1.0". Good for ever.
CONDUIT_HOST_API const char* conduit_host_version(void);

/// What a result means, in English, for any number. Good for ever.
CONDUIT_HOST_API const char* conduit_host_result_text(int32_t result);

/// Makes a host.
/// @param callbacks  copied; null for none
/// @param host       receives the handle, which the caller gives back with
///                   conduit_host_destroy; not written on failure
/// @returns 0, NULL_POINTER, WRONG_SIZE, IN_CALLBACK or FAILED.
CONDUIT_HOST_API int32_t conduit_host_create(const conduit_host_callbacks* callbacks,
                                             conduit_host* host);

/// Loads a module's library and creates the module.
/// @param file  the library's path; its reader library is looked for beside it
/// @returns 0, CANNOT_LOAD, ALREADY_LOADED, or a refusal that any call may get: NO_SUCH_HOST,
///          NULL_POINTER, IN_CALLBACK, BUSY, FAILED. After a failure it may be called again.
CONDUIT_HOST_API int32_t conduit_host_load(conduit_host host, const char* file);

/// Says what the virtual reader plays from the next conduit_host_initialise on: a session
/// file, a folder of scans, or a folder behind "watch:" to go on with what comes into it. Sets
/// the environment variable HALDEN_READER_SESSION, and so it holds for the whole process: two
/// hosts take turns. REQUIRES: no other thread reads or sets environment variables meanwhile.
/// @returns 0, CANNOT_READ, RUNNING, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_set_session(conduit_host host, const char* location);

/// Has the reader library write its log to a file, and hands each line to the callback
/// `reader_line`, and to `reader_log`. For modules with the parameter "LogFileName", which this
/// sets.
/// @param file  need not exist; what stands in it already is passed over. One that is no
///              regular file, as /dev/null, is written but not followed, and a warning says so.
///              Null: a log for this host alone, which takes no room on a disk where the system
///              has files in memory
/// @returns 0, what the module answers, NOT_LOADED, RUNNING, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_follow_reader_log(conduit_host host, const char* file);

/// Sets a parameter. A refused value changes nothing.
/// @returns 0; 2 no such parameter; 5 a value is required; 6 the value breaks a rule;
///          NOT_LOADED, RUNNING, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_set_parameter(conduit_host host, const char* name,
                                                    const char* value);

/// Reads the text that a parameter was last set to, empty until then.
/// @param buffer    receives the text with its NUL; may be null when `capacity` is 0
/// @param capacity  bytes at `buffer`
/// @param length    receives the text's length without the NUL; may be null
/// @returns 0; 2 no such parameter; BUFFER_TOO_SMALL, with `length` set and `buffer` as it
///          was; NOT_LOADED, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_get_parameter(conduit_host host, const char* name,
                                                    char* buffer, size_t capacity, size_t* length);

/// Hands every parameter to `entry`, before this returns, in the byte order of the names.
/// @returns 0, NOT_LOADED, CALLBACK_FAILED, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_list_parameters(conduit_host host, conduit_host_entry entry,
                                                      void* context);

/// Adds a condition.
/// @param name   its kind, "ReceiveEvent"
/// @param value  its operand, the event "DOC_ON_WINDOW"
/// @returns 0; 3 the module knows no such condition; NOT_LOADED, RUNNING, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_add_condition(conduit_host host, const char* name,
                                                    const char* value);

/// Attaches an action to the first condition of that name and value.
/// @param action_name   its kind, "SetActiveScript"
/// @param action_value  its operand, the script's name
/// @returns 0; 3 no such condition was added; 4 the module knows no such action; NOT_LOADED,
///          RUNNING, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_add_action(conduit_host host, const char* condition_name,
                                                 const char* condition_value,
                                                 const char* action_name, const char* action_value);

/// Hands every condition to `entry`, before this returns, in the order in which they were
/// added. Modules do not list their actions.
/// @returns 0, NOT_LOADED, CALLBACK_FAILED, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_list_conditions(conduit_host host, conduit_host_entry entry,
                                                      void* context);

/// Starts the reader. Callbacks may come before this returns.
/// @returns 0; 13 the reader did not start, after which it may be called again; NOT_LOADED,
///          RUNNING for a second time without a shutdown, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_initialise(conduit_host host);

/// Waits until the reader ends by itself. Any number of threads may.
/// @param milliseconds  at most so long; 0 asks only; negative for as long as it takes
/// @returns 0 the reader has ended; TIMED_OUT; INTERRUPTED; CALLBACK_FAILED; NOT_RUNNING, also
///          when another thread shuts the reader down meanwhile; NO_SUCH_HOST, IN_CALLBACK.
///          Whatever it is, conduit_host_shutdown comes next.
CONDUIT_HOST_API int32_t conduit_host_wait(conduit_host host, int32_t milliseconds);

/// Has every conduit_host_wait return INTERRUPTED until the next conduit_host_initialise, unless
/// the reader has ended before. Within callbacks this is the way to stop: the thread that waits
/// then shuts the reader down. Not for signal handlers.
/// @returns 0 or NO_SUCH_HOST.
CONDUIT_HOST_API int32_t conduit_host_interrupt(conduit_host host);

/// Stops the reader. No callback is under way when it returns.
/// @returns 0, what the module answers, NOT_LOADED, NOT_RUNNING, or a refusal as above.
CONDUIT_HOST_API int32_t conduit_host_shutdown(conduit_host host);

/// Shuts the reader down if it runs, destroys the module, unloads its library and ends the
/// handle. REQUIRES: done for every host before the process ends or unloads this library.
/// @returns 0, NO_SUCH_HOST, IN_CALLBACK or BUSY.
CONDUIT_HOST_API int32_t conduit_host_destroy(conduit_host host);

/// Why the last call on this host failed; empty after one that did not. Of a handle without a
/// host it says just that. After a wait, what that came to.
/// @param buffer    receives as much of the text as there is room for, with a NUL; may be null
///                  when `capacity` is 0
/// @param capacity  bytes at `buffer`
/// @returns the whole text's length without the NUL.
CONDUIT_HOST_API size_t conduit_host_last_error(conduit_host host, char* buffer, size_t capacity);

/// A property of the item that is being delivered.
/// @param item  as handed to the callback that is under way on this thread
/// @returns its value, lent until that callback returns; null for any other item or key.
CONDUIT_HOST_API const char* conduit_host_item_property(const conduit_host_item* item,
                                                        const char* key);

/// The media type of a picture that browsers show, "image/png", by its first bytes.
/// @param data  may be null when `length` is 0
/// @returns the empty text for any other data. Good for ever.
CONDUIT_HOST_API const char* conduit_host_media_type(const void* data, size_t length);

#if defined(__cplusplus)
}
#endif
