#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace conduit {

/// What the four functions of the virtual reader answer, as int32.
enum class ReaderResult : std::int32_t {
  Success = 0,
  AlreadyRunning = 1,     ///< a session is being played, or the call came from its callback
  NoSession = 2,          ///< the environment variable that names the session is not set
  SessionUnreadable = 3,  ///< the session file is missing, empty, too large or no file, or the
                          ///< session folder has no image
  SessionMalformed = 4,   ///< the session file is not JSON
  SessionWrong = 5,       ///< a step or field is wrong, or a file that it names
  LogNotOpened = 6,       ///< the log file has no name or cannot be written
  LogLevelInvalid = 7,    ///< the log level is not one of 0 to 5
  Failed = 8,             ///< the system gave no memory or no thread
};

/// Why a session cannot be played: the code for the caller, the text for the user.
class SessionError : public std::runtime_error {
 public:
  SessionError(ReaderResult result, const std::string& reason)
      : std::runtime_error(reason), result(result) {}

  ReaderResult result;
};

}  // namespace conduit
