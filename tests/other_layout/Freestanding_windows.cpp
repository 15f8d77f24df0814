#include "Freestanding.h"

// Functions that the compiler's own code calls.

extern "C" void* memcpy(void* to, const void* from, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<char*>(to)[i] = static_cast<const char*>(from)[i];
  }
  return to;
}

extern "C" void* memset(void* to, int byte, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<unsigned char*>(to)[i] = static_cast<unsigned char>(byte);
  }
  return to;
}

extern "C" [[noreturn]] void _purecall() { ExitProcess(3); }

void* operator new(std::size_t size) {
  constexpr std::uint32_t raiseWhenFull = 4;
  return HeapAlloc(GetProcessHeap(), raiseWhenFull, size);
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* block) noexcept { HeapFree(GetProcessHeap(), 0, block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }
void operator delete[](void* block) noexcept { operator delete(block); }

namespace conduit {

std::size_t Length(const char* text) {
  std::size_t length = 0;
  while (text != nullptr && text[length] != '\0') {
    ++length;
  }
  return length;
}

bool AreEqual(const char* left, const char* right) {
  const std::size_t length = Length(left);
  bool equal = length == Length(right);
  for (std::size_t i = 0; equal && i < length; ++i) {
    equal = left[i] == right[i];
  }
  return equal;
}

Line& Line::operator<<(const char* added) {
  for (std::size_t i = 0; i < Length(added); ++i) {
    Append(added[i]);
  }
  return *this;
}

Line& Line::operator<<(long long number) {
  if (number < 0) {
    return *this << "-" << -number;
  }
  if (number >= 10) {
    *this << number / 10;
  }
  Append(static_cast<char>('0' + number % 10));
  return *this;
}

Line& Line::Escape(const char* bytes, std::size_t count) {
  constexpr char digits[] = "0123456789ABCDEF";
  for (std::size_t i = 0; i < count; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (byte >= 0x20 && byte < 0x7F) {
      Append(bytes[i]);
    } else {
      *this << "\\x";
      Append(digits[byte / 16]);
      Append(digits[byte % 16]);
    }
  }
  return *this;
}

void Line::Append(char character) {
  if (length < Capacity - 1) {
    text[length++] = character;
  }
}

Line::~Line() {
  constexpr auto standardOutput = static_cast<std::uint32_t>(-11);
  text[length] = '\n';
  WriteFile(GetStdHandle(standardOutput), text, length + 1, &length, nullptr);
  delete[] text;
}

ModuleFunctions LoadModule() {
  void* const library = LoadLibraryA("FullPageInputModule.dll");
  const ModuleFunctions functions = {
      reinterpret_cast<GetInputModuleFunction>(GetProcAddress(library, "CIM_GetInputModule")),
      reinterpret_cast<DestroyFunction>(GetProcAddress(library, "CIM_Destroy"))};
  if (functions.create == nullptr || functions.destroy == nullptr) {
    Line() << "There is no module FullPageInputModule.dll";
    ExitProcess(2);
  }
  return functions;
}

}  // namespace conduit
