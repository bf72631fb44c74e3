#include "simulated_package.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "runtime_object.h"
#include "unused_operations.h"

namespace Standin::Packages {

namespace {

using Folder = std::shared_ptr<const PackageFolder>;

bool StandsInAPath(char c) {
  constexpr std::string_view kSigns = "-._~!$&'()*+,;=:@/";
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         kSigns.find(c) != std::string_view::npos;
}

std::string Utf8(const std::wstring& text) {
  std::string bytes(text.size() * 3, '\0');
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

/// The path of a file's URI: slashes, and percent signs with the bytes of what may not stand there.
std::wstring UriPath(const std::wstring& file) {
  constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  std::wstring path = L"/";
  for (const char c : Utf8(file)) {
    if (c == '\\') {
      path += L'/';
    } else if (StandsInAPath(c)) {
      path += static_cast<wchar_t>(c);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      path += {L'%', kDigits[byte >> 4], kDigits[byte & 0xF]};
    }
  }
  return path;
}

class SimulatedUri final : public RuntimeObject<UnusedUri, WinRt::IUriRuntimeClass> {
 public:
  explicit SimulatedUri(Folder folder) : folder_(std::move(folder)) {}

  STDMETHODIMP get_Path(HSTRING* value) override {
    return HandOutText(folder_->script, "LogoPath", Path(), value);
  }

 private:
  std::wstring Path() const {
    if (folder_->logo.empty()) return L"";
    const std::wstring file = folder_->folder + L"\\" + folder_->logo;
    return folder_->script.HasPlainAddresses() ? L"/" + file : UriPath(file);
  }

  Folder folder_;
};

class SimulatedFolder final
    : public RuntimeObject<UnusedFolder, WinRt::IStorageFolder, WinRt::IStorageItem> {
 public:
  explicit SimulatedFolder(Folder folder) : folder_(std::move(folder)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool refused =
        iid == __uuidof(WinRt::IStorageItem) && FAILED(folder_->script.ResultOf("IStorageItem"));
    *object = nullptr;
    return refused ? folder_->script.ResultOf("IStorageItem")
                   : RuntimeObject::QueryInterface(iid, object);
  }
  STDMETHODIMP get_Path(HSTRING* value) override {
    return HandOutText(folder_->script, "Path", folder_->folder, value);
  }

 private:
  Folder folder_;
};

class SimulatedId final : public RuntimeObject<UnusedPackageId, WinRt::IPackageId> {
 public:
  explicit SimulatedId(Folder folder) : folder_(std::move(folder)) {}

  STDMETHODIMP get_Name(HSTRING* value) override {
    return HandOutText(folder_->script, "Name", folder_->name, value);
  }

 private:
  Folder folder_;
};

class SimulatedPackage final
    : public RuntimeObject<UnusedPackage, WinRt::IPackage, WinRt::IPackage2, WinRt::IPackage4> {
 public:
  explicit SimulatedPackage(Folder folder) : folder_(std::move(folder)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    HRESULT result = S_OK;
    if (iid == __uuidof(WinRt::IPackage2)) result = folder_->script.ResultOf("IPackage2");
    if (iid == __uuidof(WinRt::IPackage4)) result = folder_->script.ResultOf("IPackage4");
    return FAILED(result) ? result : RuntimeObject::QueryInterface(iid, object);
  }

  STDMETHODIMP get_Id(WinRt::IPackageId** value) override {
    return HandOut(folder_->script, "Id", value, [this] { return new SimulatedId(folder_); });
  }
  STDMETHODIMP get_InstalledLocation(WinRt::IStorageFolder** value) override {
    return HandOut(folder_->script, "InstalledLocation", value,
                   [this] { return new SimulatedFolder(folder_); });
  }
  STDMETHODIMP get_IsFramework(boolean* value) override {
    const boolean given = folder_->isFramework ? 1 : 0;
    return HandOutValue(folder_->script, "IsFramework", given, value);
  }
  STDMETHODIMP get_DisplayName(HSTRING* value) override {
    return HandOutText(folder_->script, "DisplayName", folder_->shownName, value);
  }
  STDMETHODIMP get_Logo(WinRt::IUriRuntimeClass** value) override {
    return HandOut(folder_->script, "Logo", value, [this] { return new SimulatedUri(folder_); });
  }
  STDMETHODIMP get_SignatureKind(WinRt::PackageSignatureKind* value) override {
    const auto given = static_cast<WinRt::PackageSignatureKind>(folder_->isSystem ? 4 : 3);
    return HandOutValue(folder_->script, "SignatureKind", given, value);
  }

 private:
  Folder folder_;
};

}  // namespace

WinRt::IPackage* MakePackage(std::shared_ptr<const PackageFolder> folder) {
  return new SimulatedPackage(std::move(folder));
}

}  // namespace Standin::Packages
