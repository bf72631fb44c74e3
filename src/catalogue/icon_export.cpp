#include "catalogue/icon_export.h"

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <cstring>

#include "base/byte_text.h"
#include "catalogue/drive_path.h"
#include "catalogue/icon_png.h"
#include "catalogue/icon_target.h"
#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The system's own limit for a path, its end included; the call also writes into the buffer.
using PathBuffer = std::array<char, MAX_PATH>;
static_assert(sizeof(PathBuffer) == 260);

/// A path that does not fit becomes an empty one, never a cut one.
PathBuffer BoundedPath(const std::string& path) {
  PathBuffer buffer{};
  const std::size_t bytes = std::strlen(path.c_str());
  if (bytes < buffer.size()) std::memcpy(buffer.data(), path.c_str(), bytes);
  return buffer;
}

PathBuffer ProgramPath(const std::string& path, const std::string& devicePrefix) {
  if (devicePrefix.empty()) return PathBuffer{};
  return BoundedPath(TryDrivePath(path, devicePrefix).value_or(path));
}

Platform::UniqueIcon IconOf(PathBuffer path) {
  WORD index = 0;
  WORD id = 0;
  return Platform::UniqueIcon(
      ExtractAssociatedIconExA(/*instance=*/nullptr, path.data(), &index, &id));
}

}  // namespace

std::string ExportAppIcon(std::string path, const std::string& directory,
                          const std::string& displayName, const std::string& devicePrefix) {
  const Platform::UniqueIcon icon = IconOf(ProgramPath(path, devicePrefix));
  if (!icon) return std::string();

  const std::string target = directory + "\\" + displayName + ".png";
  if (StaysInDirectory(directory, displayName)) {
    // Kept on purpose: the path is given even where the save has failed (test
    // ExportAppIcon.GivesThePathEvenWhereTheSaveFails).
    static_cast<void>(
        SaveIconAsPng(icon.get(), WidenBytes(target.data(), target.data() + target.size())));
  }
  return target;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
