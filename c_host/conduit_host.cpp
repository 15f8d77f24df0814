#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <functional>
#include <iterator>
#include <memory>
#include <string>

#include "c_host/HostError.h"
#include "c_host/HostTable.h"
#include "hosting/DataFormat.h"
#include "hosting/ResultMeaning.h"
#include "platform/FilePath.h"
#include <conduit/Version.h>
#include <conduit/conduit_host.h>

using namespace conduit;

namespace {

struct OwnResult {
  std::int32_t result;
  const char* text;
};

constexpr OwnResult OwnResults[] = {
    {CONDUIT_HOST_SUCCESS, "success"},
    {CONDUIT_HOST_NO_SUCH_HOST, "there is no such host, or it has been destroyed"},
    {CONDUIT_HOST_NULL_POINTER, "a pointer is null that must not be"},
    {CONDUIT_HOST_WRONG_SIZE, "a structure has a size that this library does not know"},
    {CONDUIT_HOST_IN_CALLBACK, "called from within a callback"},
    {CONDUIT_HOST_BUSY, "another thread's call on this host is under way"},
    {CONDUIT_HOST_NOT_LOADED, "no module has been loaded"},
    {CONDUIT_HOST_ALREADY_LOADED, "a module has been loaded already"},
    {CONDUIT_HOST_RUNNING, "the reader runs"},
    {CONDUIT_HOST_NOT_RUNNING, "the reader does not run"},
    {CONDUIT_HOST_CANNOT_LOAD, "the file gives no module"},
    {CONDUIT_HOST_CANNOT_READ, "the session cannot be read"},
    {CONDUIT_HOST_BUFFER_TOO_SMALL, "the buffer is too small"},
    {CONDUIT_HOST_TIMED_OUT, "the time is over"},
    {CONDUIT_HOST_INTERRUPTED, "the wait was interrupted"},
    {CONDUIT_HOST_CALLBACK_FAILED, "a callback threw an exception"},
    {CONDUIT_HOST_FAILED, "the call failed"},
};

/// What every caller has of the structure; what came to it since is 0 in an older one.
constexpr std::size_t FirstCallbacksSize = offsetof(conduit_host_callbacks, reader_log);

/// Does a call on the handle's host.
template <typename Call>
std::int32_t On(conduit_host handle, const Call& call) {
  const std::shared_ptr<Host> host = HostTable::Instance().Find(handle);
  // By reference: a copy of the call may need memory.
  return host ? host->Do(std::ref(call)) : static_cast<std::int32_t>(CONDUIT_HOST_NO_SUCH_HOST);
}

void Require(const void* pointer, const char* name) {
  if (pointer == nullptr) {
    throw HostError(CONDUIT_HOST_NULL_POINTER, std::string(name) + " is null");
  }
}

/// Whether a caller that knows a larger structure uses nothing that is unknown here.
bool RestIsZero(const conduit_host_callbacks* callbacks) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>(callbacks);
  return std::all_of(bytes + std::min(sizeof *callbacks, callbacks->size), bytes + callbacks->size,
                     [](unsigned char byte) { return byte == 0; });
}

}  // namespace

const char* conduit_host_version() { return CONDUIT_VERSION; }

const char* conduit_host_result_text(std::int32_t result) {
  const auto* const own = std::ranges::find(OwnResults, result, &OwnResult::result);
  if (own != std::end(OwnResults)) {
    return own->text;
  }
  const char* const meaning = ResultMeaning(result);
  return *meaning != '\0' ? meaning : "the module refused";
}

std::int32_t conduit_host_create(const conduit_host_callbacks* callbacks, conduit_host* host) {
  if (host == nullptr) {
    return CONDUIT_HOST_NULL_POINTER;
  }
  if (IsInCallback()) {
    return CONDUIT_HOST_IN_CALLBACK;
  }
  conduit_host_callbacks known = {};
  if (callbacks != nullptr) {
    if (callbacks->size < FirstCallbacksSize || !RestIsZero(callbacks)) {
      return CONDUIT_HOST_WRONG_SIZE;
    }
    std::memcpy(&known, callbacks, std::min(sizeof known, callbacks->size));
  }
  try {
    *host = HostTable::Instance().Add(known);
    return CONDUIT_HOST_SUCCESS;
  } catch (const std::exception&) {
    return CONDUIT_HOST_FAILED;
  }
}

std::int32_t conduit_host_load(conduit_host handle, const char* file) {
  return On(handle, [&](Host& host) {
    Require(file, "file");
    host.Load(PathFromUtf8(file));
  });
}

std::int32_t conduit_host_set_session(conduit_host handle, const char* location) {
  return On(handle, [&](Host& host) {
    Require(location, "location");
    host.SetSession(location);
  });
}

std::int32_t conduit_host_follow_reader_log(conduit_host handle, const char* file) {
  return On(handle, [&](Host& host) { host.FollowReaderLog(file); });
}

std::int32_t conduit_host_set_parameter(conduit_host handle, const char* name, const char* value) {
  return On(handle, [&](Host& host) {
    Require(name, "name");
    Require(value, "value");
    host.SetParameter(name, value);
  });
}

std::int32_t conduit_host_get_parameter(conduit_host handle, const char* name, char* buffer,
                                        std::size_t capacity, std::size_t* length) {
  return On(handle, [&](Host& host) {
    Require(name, "name");
    if (capacity > 0) {
      Require(buffer, "buffer");
    }
    const std::string value = host.Parameter(name);
    if (length != nullptr) {
      *length = value.size();
    }
    if (value.size() >= capacity) {
      throw HostError(CONDUIT_HOST_BUFFER_TOO_SMALL,
                      "the value and its NUL take " + std::to_string(value.size() + 1) + " bytes");
    }
    std::memcpy(buffer, value.c_str(), value.size() + 1);
  });
}

std::int32_t conduit_host_list_parameters(conduit_host handle, conduit_host_entry entry,
                                          void* context) {
  return On(handle, [&](Host& host) {
    Require(reinterpret_cast<const void*>(entry), "entry");
    host.ListParameters(entry, context);
  });
}

std::int32_t conduit_host_add_condition(conduit_host handle, const char* name, const char* value) {
  return On(handle, [&](Host& host) {
    Require(name, "name");
    Require(value, "value");
    host.AddCondition(name, value);
  });
}

std::int32_t conduit_host_add_action(conduit_host handle, const char* conditionName,
                                     const char* conditionValue, const char* actionName,
                                     const char* actionValue) {
  return On(handle, [&](Host& host) {
    Require(conditionName, "condition_name");
    Require(conditionValue, "condition_value");
    Require(actionName, "action_name");
    Require(actionValue, "action_value");
    host.AddAction(conditionName, conditionValue, actionName, actionValue);
  });
}

std::int32_t conduit_host_list_conditions(conduit_host handle, conduit_host_entry entry,
                                          void* context) {
  return On(handle, [&](Host& host) {
    Require(reinterpret_cast<const void*>(entry), "entry");
    host.ListConditions(entry, context);
  });
}

std::int32_t conduit_host_initialise(conduit_host handle) {
  return On(handle, [](Host& host) { host.Initialise(); });
}

std::int32_t conduit_host_wait(conduit_host handle, std::int32_t milliseconds) {
  const std::shared_ptr<Host> host = HostTable::Instance().Find(handle);
  return host ? host->Wait(milliseconds) : static_cast<std::int32_t>(CONDUIT_HOST_NO_SUCH_HOST);
}

std::int32_t conduit_host_interrupt(conduit_host handle) {
  const std::shared_ptr<Host> host = HostTable::Instance().Find(handle);
  if (!host) {
    return CONDUIT_HOST_NO_SUCH_HOST;
  }
  host->Interrupt();
  return CONDUIT_HOST_SUCCESS;
}

std::int32_t conduit_host_shutdown(conduit_host handle) {
  return On(handle, [](Host& host) { host.Shutdown(); });
}

std::int32_t conduit_host_destroy(conduit_host handle) {
  return On(handle, [handle](Host& host) {
    HostTable::Instance().Remove(handle);
    host.End();
  });
}

std::size_t conduit_host_last_error(conduit_host handle, char* buffer, std::size_t capacity) {
  const std::shared_ptr<Host> host = HostTable::Instance().Find(handle);
  return host ? host->LastError(buffer, capacity)
              : CopyText(conduit_host_result_text(CONDUIT_HOST_NO_SUCH_HOST), buffer, capacity);
}

const char* conduit_host_item_property(const conduit_host_item* item, const char* key) {
  return key != nullptr ? PropertyOfCurrentItem(item, key) : nullptr;
}

const char* conduit_host_media_type(const void* data, std::size_t length) {
  // From a table of literals, which end in a NUL.
  return data != nullptr ? BrowserMediaType({static_cast<const char*>(data), length}).data() : "";
}
