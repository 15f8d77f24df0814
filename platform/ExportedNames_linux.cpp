#include <elf.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <stdexcept>

#include "platform/ExportedNames.h"

namespace conduit {

namespace {

/// A record of the file, copied out: it may stand at any address.
template <typename Record>
Record At(const std::string& file, std::size_t offset) {
  Record record;
  if (offset > file.size() || file.size() - offset < sizeof record) {
    throw std::runtime_error("the library's symbol table is damaged");
  }
  std::memcpy(&record, file.data() + offset, sizeof record);
  return record;
}

std::string TextAt(const std::string& file, std::size_t offset) {
  At<char>(file, offset);
  return file.c_str() + offset;
}

/// Templates of the standard library are weak wherever they are instantiated,
/// and stay visible under -fvisibility=hidden.
bool IsOfTheToolchain(const Elf64_Sym& symbol, const std::string& name) {
  static const std::set<std::string> linkerMarks = {"_init", "_fini", "_edata", "_end",
                                                    "__bss_start"};
  static const std::regex standardLibrary("_Z(T[VTIS]|GV)?Z?N?[VK]*(S[tabsiod]|9__gnu_cxx).*");
  if (symbol.st_shndx == SHN_ABS || linkerMarks.contains(name)) {
    return true;  // an absolute symbol names a version of the library
  }
  return ELF64_ST_BIND(symbol.st_info) != STB_GLOBAL && std::regex_match(name, standardLibrary);
}

}  // namespace

std::vector<std::string> ExportedNames(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  const auto header = At<Elf64_Ehdr>(bytes, 0);
  const auto sectionAt = [&](std::size_t i) {
    return At<Elf64_Shdr>(bytes, header.e_shoff + i * sizeof(Elf64_Shdr));
  };

  std::vector<std::string> names;
  for (std::size_t i = 0; i < header.e_shnum; ++i) {
    const Elf64_Shdr section = sectionAt(i);
    if (section.sh_type != SHT_DYNSYM) {
      continue;
    }
    const std::size_t texts = sectionAt(section.sh_link).sh_offset;
    for (std::size_t at = 0; at + sizeof(Elf64_Sym) <= section.sh_size; at += sizeof(Elf64_Sym)) {
      const auto symbol = At<Elf64_Sym>(bytes, section.sh_offset + at);
      if (symbol.st_shndx == SHN_UNDEF || ELF64_ST_BIND(symbol.st_info) == STB_LOCAL) {
        continue;
      }
      const std::string name = TextAt(bytes, texts + symbol.st_name);
      if (!IsOfTheToolchain(symbol, name)) {
        names.push_back(name);
      }
    }
  }
  return names;
}

}  // namespace conduit
