#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <utility>

namespace conduit {

/// The parts of an argument before and after its first '='.
inline std::pair<std::string, std::string> SplitPair(const std::string& pair) {
  const std::size_t equals = pair.find('=');
  return {pair.substr(0, equals), pair.substr(equals + 1)};
}

/// Holds an argument to having a name before its first '='.
/// @param form  for the error, "NAME=VALUE"
inline CLI::Validator NamedPair(const char* form) {
  return {[form](const std::string& text) {
            const std::size_t equals = text.find('=');
            const bool named = equals != std::string::npos && equals > 0;
            return named ? std::string() : "'" + text + "' is not of the form " + form;
          },
          form};
}

}  // namespace conduit
