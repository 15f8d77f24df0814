#include <elf.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <stdexcept>

#include "platform/ExportedNames.h"

namespace conduit {
namespace {

/// Returns a copy of a record of the file, which may be unaligned.
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

/// Instances of standard library templates are weak symbols and stay visible under
/// -fvisibility=hidden.
bool IsOfTheToolchain(const Elf64_Sym& symbol, const std::string& name) {
  static const std::set<std::string> linkerMarks = {"_init", "_fini", "_edata", "_end",
                                                    "__bss_start"};
  static const std::regex standardLibrary("_Z(T[VTIS]|GV)?Z?N?[VK]*(S[tabsiod]|9__gnu_cxx).*");
  if (symbol.st_shndx == SHN_ABS || linkerMarks.contains(name)) {
    return true;  // an absolute symbol names a version of the library
  }
  return ELF64_ST_BIND(symbol.st_info) != STB_GLOBAL && std::regex_match(name, standardLibrary);
}

/// The header of DT_GNU_HASH, the hash table of current linkers.
struct GnuHashHeader {
  std::uint32_t buckets;
  std::uint32_t firstSymbol;
  std::uint32_t filterWords;
  std::uint32_t shift;
};

/// The dynamic segment, which the loader reads. The section headers have the same
/// information but may be stripped.
class DynamicSegment {
 public:
  explicit DynamicSegment(const std::string& file) : file(file) {
    const auto header = At<Elf64_Ehdr>(file, 0);
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
      segments.push_back(At<Elf64_Phdr>(file, header.e_phoff + i * sizeof(Elf64_Phdr)));
    }
    for (const Elf64_Phdr& segment : segments) {
      for (std::size_t at = 0; segment.p_type == PT_DYNAMIC && at < segment.p_filesz;
           at += sizeof(Elf64_Dyn)) {
        const auto entry = At<Elf64_Dyn>(file, segment.p_offset + at);
        entries[entry.d_tag] = entry.d_un.d_val;
      }
    }
  }

  bool Has(Elf64_Sxword tag) const { return entries.contains(tag); }

  /// Returns the file offset of the tag's table.
  std::size_t Offset(Elf64_Sxword tag) const {
    const auto entry = entries.find(tag);
    for (const Elf64_Phdr& segment : segments) {
      if (entry != entries.end() && segment.p_type == PT_LOAD && entry->second >= segment.p_vaddr &&
          entry->second - segment.p_vaddr < segment.p_filesz) {
        return entry->second - segment.p_vaddr + segment.p_offset;
      }
    }
    throw std::runtime_error("the library's dynamic segment is damaged");
  }

  /// Returns the number of symbols, which only the hash tables contain.
  std::size_t SymbolCount() const {
    if (Has(DT_HASH)) {
      return At<std::uint32_t>(file, Offset(DT_HASH) + sizeof(std::uint32_t));
    }
    const std::size_t table = Offset(DT_GNU_HASH);
    const auto header = At<GnuHashHeader>(file, table);
    const std::size_t buckets = table + sizeof header + header.filterWords * sizeof(std::uint64_t);
    const std::size_t chains = buckets + header.buckets * sizeof(std::uint32_t);
    std::size_t last = 0;
    for (std::size_t i = 0; i < header.buckets; ++i) {
      last =
          std::max<std::size_t>(last, At<std::uint32_t>(file, buckets + i * sizeof(std::uint32_t)));
    }
    if (last < header.firstSymbol) {
      return header.firstSymbol;
    }
    // The lowest bit marks the end of a bucket's chain.
    while ((At<std::uint32_t>(file, chains + (last - header.firstSymbol) * sizeof(std::uint32_t)) &
            1) == 0) {
      ++last;
    }
    return last + 1;
  }

 private:
  const std::string& file;
  std::vector<Elf64_Phdr> segments;
  std::map<Elf64_Sxword, std::uint64_t> entries;
};

}  // namespace

std::vector<std::string> ExportedNames(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  const DynamicSegment segment(bytes);
  const std::size_t symbols = segment.Offset(DT_SYMTAB);
  const std::size_t texts = segment.Offset(DT_STRTAB);
  const std::size_t count = segment.SymbolCount();
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    const auto symbol = At<Elf64_Sym>(bytes, symbols + i * sizeof(Elf64_Sym));
    if (symbol.st_shndx == SHN_UNDEF || ELF64_ST_BIND(symbol.st_info) == STB_LOCAL) {
      continue;
    }
    const std::string name = TextAt(bytes, texts + symbol.st_name);
    if (!IsOfTheToolchain(symbol, name)) {
      names.push_back(name);
    }
  }
  return names;
}

}  // namespace conduit
