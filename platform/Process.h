#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// Returns the arguments after the program's name, in UTF-8.
std::vector<std::string> ProgramArguments(int count, const char* const* arguments);

/// Returns the path of this program's file.
std::filesystem::path ProgramFile();

/// Returns the file of the program or library that contains the code at an address.
std::filesystem::path FileOfCode(const void* address);

/// Returns the process id. A fork has another one.
std::int64_t ProcessNumber();

/// Makes files that this process and its children create accessible to this user only,
/// where the system has such a setting.
void KeepFilesPrivate();

/// Makes a write beyond the file size limit fail instead of ending the process, and a write
/// to a closed standard stream fail instead of reaching a file with its number.
void LetWritesFail();

/// Makes a crash end this process at once, with the system's code as its status, without a
/// dialog or a debugger.
void EndAtOnceOnCrash();

}  // namespace conduit
