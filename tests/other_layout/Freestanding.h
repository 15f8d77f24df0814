#pragma once

#include <cstddef>
#include <cstdint>

#include <conduit/ModuleEntry.h>

/// Declares the Windows functions that these programs call: they are built without a C or
/// C++ library, because none for their compiler is available here.
extern "C" {
int CloseHandle(void* handle);
void* CreateEventA(void* security, int manualReset, int initiallySet, const char* name);
void* CreateThread(void* security, std::size_t stack, std::uint32_t (*run)(void*), void* context,
                   std::uint32_t flags, std::uint32_t* id);
[[noreturn]] void ExitProcess(std::uint32_t status);
std::uint32_t GetCurrentThreadId();
std::uint32_t GetEnvironmentVariableA(const char* name, char* value, std::uint32_t size);
std::uint32_t GetFileAttributesA(const char* path);
void* GetProcessHeap();
std::uint32_t GetProcessHeaps(std::uint32_t size, void** heaps);
void* GetProcAddress(void* library, const char* name);
void* GetStdHandle(std::uint32_t which);
void* HeapAlloc(void* heap, std::uint32_t flags, std::size_t size);
int HeapFree(void* heap, std::uint32_t flags, void* block);
int HeapValidate(void* heap, std::uint32_t flags, const void* block);
void* LoadLibraryA(const char* file);
int ResetEvent(void* event);
std::uint32_t ResumeThread(void* thread);
int SetEnvironmentVariableA(const char* name, const char* value);
int SetEvent(void* event);
std::uint32_t WaitForSingleObject(void* handle, std::uint32_t milliseconds);
int WriteFile(void* stream, const void* bytes, std::uint32_t count, std::uint32_t* written,
              void* overlapped);
}

namespace conduit {

inline constexpr char SessionVariable[] = "HALDEN_READER_SESSION";
inline constexpr std::uint32_t Forever = 0xFFFFFFFF;
inline constexpr std::uint32_t Signalled = 0;  ///< a result of WaitForSingleObject

/// A null text counts as the empty text.
std::size_t Length(const char* text);
bool AreEqual(const char* left, const char* right);

/// Concatenates a line of output from texts and numbers; truncates what does not fit.
class Line {
 public:
  Line& operator<<(const char* text);
  Line& operator<<(long long number);
  /// Escapes bytes that are not printable as \xNN.
  Line& Escape(const char* bytes, std::size_t count);
  ~Line();  ///< writes the line to the standard output

  Line() = default;
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

 private:
  void Append(char character);

  static constexpr std::uint32_t Capacity = 3000;
  // Not on the stack: a frame of a page or more requires a helper of the compiler's library.
  char* const text = new char[Capacity];
  std::uint32_t length = 0;
};

/// Loads the module beside the program and finds its functions; ends the program without one.
struct ModuleFunctions {
  GetInputModuleFunction create;
  DestroyFunction destroy;
};
ModuleFunctions LoadModule();

}  // namespace conduit
