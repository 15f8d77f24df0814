#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <conduit/IInputModuleHost.h>

namespace conduit {

/// What a kind of document is delivered as.
struct DocumentKind {
  const char* name;
  std::vector<const char*> items;  ///< in the order in which they have to come
  /// Carries the document's number, as text; null where nothing does.
  const char* numberedItem;
};

struct SoakFault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A host that knows what has to come next and throws a SoakFault at anything
/// else: an item lost, delivered twice, out of order or of another document.
class SoakHost final : public IInputModuleHost {
 public:
  /// Before the reader plays a document: it must bring exactly this.
  void Expect(const DocumentKind& kind, std::int64_t number);
  /// After it.
  void CheckComplete() const;

  std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length, const void* data,
                        IStringMap* properties, bool last) override;
  void SendEvent(const char* name) override;
  void BeginData() override;
  void EndData() override;
  std::int32_t SetActiveScript(const char* name) override;
  void ReportState(const char* text) override;
  void ReportError(const char* text) override;

  std::int64_t items = 0;
  std::int64_t events = 0;
  std::int64_t scripts = 0;
  std::int64_t documents = 0;
  std::int64_t states = 0;
  std::int64_t errors = 0;  ///< with a text

 private:
  [[noreturn]] void Fail(const std::string& what) const;

  const DocumentKind* kind = nullptr;
  std::string number;
  std::size_t received = 0;
  bool open = false;
};

}  // namespace conduit
