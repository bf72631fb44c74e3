#include "catalogue/icon_png.h"

#include <cstddef>
#include <cwchar>
#include <vector>

#include "platform/win32/gdiplus_owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using namespace Gdiplus::DllExports;

constexpr wchar_t kPngType[] = L"image/png";

/// The list of codecs, with their texts behind it in one block.
class EncoderList {
 public:
  EncoderList() {
    UINT count = 0;
    UINT bytes = 0;
    if (GdipGetImageEncodersSize(&count, &bytes) != Gdiplus::Ok) return;
    // In whole entries, for their alignment; the list never reaches beyond its block.
    entries_.resize((bytes + sizeof(Gdiplus::ImageCodecInfo) - 1) /
                    sizeof(Gdiplus::ImageCodecInfo));
    if (count == 0 || count > entries_.size()) return;
    if (GdipGetImageEncoders(count, bytes, entries_.data()) == Gdiplus::Ok) count_ = count;
  }

  /// The class of the first codec of this type; all zero if there is none.
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

bool SaveIconAsPng(HICON icon, const std::wstring& path) {
  const Platform::GdiplusSession session;
  if (!session) return false;
  const Platform::UniqueGdiplusImage image = MakeImage(icon);
  if (!image) return false;

  // Kept on purpose: without a PNG codec the save is asked for all the same, and fails (test
  // SaveIconAsPngFailures.OfACodecListWithoutPngAreTheSaves).
  const CLSID codec = EncoderList().ClassOf(kPngType);
  return GdipSaveImageToFile(image.get(), path.c_str(), &codec, /*parameters=*/nullptr) ==
         Gdiplus::Ok;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
