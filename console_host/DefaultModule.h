#pragma once

#include <filesystem>
#include <string>

namespace conduit {

/// The module that is run when the user names none: beside this program, else where it is
/// installed relative to this program. What is built or put there by hand comes first.
std::filesystem::path DefaultModule();

/// The same for a reader: "FullPageInputModule.so beside this program or in ../lib/conduit".
std::string DefaultModulePlace();

}  // namespace conduit
