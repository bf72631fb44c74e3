#include "keep_imports.h"

#include <windows.h>

#include <set>
#include <stdexcept>
#include <string>

#include "import_list.h"
#include "platform/win32/owners.h"

namespace Faults {

void KeepImportsOf(const wchar_t* library) {
  using Zq::Gantry::Platform::UniqueModule;
  const UniqueModule loaded(LoadLibraryW(library));
  if (!loaded) throw std::runtime_error("a library does not load");
  std::set<std::string> names;
  for (const Import& import : ImportsOf(loaded.get())) names.insert(import.library);
  for (const std::string& name : names) {
    // Kept on purpose.
    static_cast<void>(UniqueModule(LoadLibraryA(name.c_str())).release());
  }
}

}  // namespace Faults
