#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// The arguments after the program's name, in UTF-8.
std::vector<std::string> ProgramArguments(int count, const char* const* arguments);

/// Where this program stands.
std::filesystem::path ProgramFile();

/// The file of the program or the library that has the code at an address.
std::filesystem::path FileOfCode(const void* address);

/// The number of this process. A fork of it has another one.
std::int64_t ProcessNumber();

/// Whatever this process and those that it starts create from now on is for this
/// user alone, where the system has such a setting.
void KeepFilesPrivate();

/// From now on a write beyond a limit of a file's size fails and does not end the process,
/// and a write to a standard stream that is closed fails, rather than reaching a file that
/// has taken its number.
void LetWritesFail();

/// From now on a crash ends this process at once, with the system's code for it as its
/// status: no dialog asks what to do, and no debugger is started.
void EndAtOnceOnCrash();

}  // namespace conduit
