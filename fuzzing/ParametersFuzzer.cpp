// Sets arbitrary parameters: a refused value changes nothing, an accepted one is read back
// unchanged.
#include <fuzzer/FuzzedDataProvider.h>

#include "fullpage/FullPageInputModule.h"
#include "fuzzing/CheckingHost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using conduit::Require;
  constexpr const char* known[] = {"LogLevel",         "LogFileName",     "DateOfBirthFormat",
                                   "ExpiryDateFormat", "IssueDateFormat", "BadChars"};
  FuzzedDataProvider input(data, size);
  conduit::CheckingLogger logger;
  conduit::FullPageInputModule module(&logger);
  while (input.remaining_bytes() > 0) {
    const std::string name =
        input.ConsumeBool() ? input.PickValueInArray(known) : input.ConsumeRandomLengthString(40);
    const std::string value = input.ConsumeRandomLengthString(2000);
    const char* text = nullptr;
    const bool exists = module.GetParameter(name.c_str(), &text) == 0;
    const std::string before = exists ? text : "";
    const std::int32_t result = module.SetParameter(name.c_str(), value.c_str());
    Require(exists == (result != conduit::ResultUnknownParameter), "a name is known or is not");
    if (exists) {
      module.GetParameter(name.c_str(), &text);
      Require(text == (result == 0 ? conduit::UpToNul(value) : before),
              "what is refused changes nothing");
    }
    Require(module.LogLevel >= 0 && module.LogLevel <= 5, "the log level is in its range");
    Require(module.BadChars.length > 0 && module.LogFileName.length > 0,
            "what is required is there");
    const auto index = input.ConsumeIntegral<std::int32_t>();
    const char* nameAt = nullptr;
    module.GetParameterAt(index, &nameAt, &text);
    Require((nameAt != nullptr) == (index >= 0 && index < module.GetParameterCount()),
            "an index is in its range or gives nothing");
  }
  return 0;
}
