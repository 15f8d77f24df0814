#pragma once

#include <filesystem>

namespace conduit {

/// Sets an environment variable for this process and the libraries that it loads later.
void SetEnvironment(const char* name, const std::filesystem::path& value);

}  // namespace conduit
