#include "catalogue/icon_export.h"

#include <shellapi.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <vector>

#include "base/byte_text.h"
#include "catalogue/app_identity.h"
#include "platform/win32/gdiplus_owners.h"
#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using namespace Gdiplus::DllExports;

constexpr wchar_t kPngType[] = L"image/png";

/// ExtractAssociatedIconExA takes a buffer of this size and also writes into it.
using PathBuffer = std::array<char, MAX_PATH>;
static_assert(sizeof(PathBuffer) == 260);

/// A path that does not fit becomes empty rather than cut short.
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

/// The image codecs that GDI+ lists. Their texts follow the entries in the same block.
class EncoderList {
 public:
  EncoderList() {
    UINT count = 0;
    UINT bytes = 0;
    if (GdipGetImageEncodersSize(&count, &bytes) != Gdiplus::Ok) return;
    // Whole entries, for their alignment. If the count does not fit into the block, the list stays
    // empty.
    entries_.resize((bytes + sizeof(Gdiplus::ImageCodecInfo) - 1) /
                    sizeof(Gdiplus::ImageCodecInfo));
    if (count == 0 || count > entries_.size()) return;
    if (GdipGetImageEncoders(count, bytes, entries_.data()) == Gdiplus::Ok) count_ = count;
  }

  /// The class of the first codec of this type; all zero if there is no such codec.
  CLSID ClassOf(const wchar_t* type) const {
    for (std::size_t i = 0; i < count_; ++i) {
      const wchar_t* own = entries_[i].MimeType;
      if (own != nullptr && std::wcscmp(own, type) == 0) return entries_[i].Clsid;
    }
    return CLSID{};
  }

 private:
  std::vector<Gdiplus::ImageCodecInfo> entries_;
  std::size_t count_ = 0;
};

Platform::UniqueGdiplusImage MakeImage(HICON icon) {
  Gdiplus::GpBitmap* bitmap = nullptr;
  const bool made = GdipCreateBitmapFromHICON(icon, &bitmap) == Gdiplus::Ok;
  return Platform::UniqueGdiplusImage(made ? bitmap : nullptr);
}

}  // namespace

std::string ExportAppIcon(std::string path, const std::string& directory,
                          const std::string& displayName, const std::string& devicePrefix) {
  const Platform::UniqueIcon icon = IconOf(ProgramPath(path, devicePrefix));
  if (!icon) return std::string();

  const IconFile file{directory, displayName};
  std::string target = file.Path();
  if (file.StaysInDirectory()) {
    // Kept on purpose: the path is returned even if the file could not be written (test
    // ExportAppIcon.ReturnsThePathEvenWhenTheSaveFails).
    static_cast<void>(
        SaveIconAsPng(icon.get(), WidenBytes(target.data(), target.data() + target.size())));
  }
  return target;
}

bool SaveIconAsPng(HICON icon, const std::wstring& path) {
  const Platform::GdiplusSession session;
  if (!session) return false;
  const Platform::UniqueGdiplusImage image = MakeImage(icon);
  if (!image) return false;

  // Kept on purpose: without a PNG codec the save is still called, with an all-zero class, and
  // fails (test SaveIconAsPngTest.FailsWhenNoPngCodecIsInstalled).
  const CLSID codec = EncoderList().ClassOf(kPngType);
  return GdipSaveImageToFile(image.get(), path.c_str(), &codec, /*parameters=*/nullptr) ==
         Gdiplus::Ok;
}

std::string SystemIconMaker::ExportAppIcon(const std::string& executable, const IconFile& file) {
  return Wattleaf::ExportAppIcon(executable, std::string(file.directory),
                                 std::string(file.displayName), devicePrefix_);
}

bool SystemIconMaker::CopyLogo(const std::string& logo, const std::string& target) {
  return CopyFileA(logo.c_str(), target.c_str(), /*bFailIfExists=*/FALSE) != 0;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
