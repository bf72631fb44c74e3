#include "simulated_packages.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/utf8_text.h"
#include "runtime_object.h"
#include "unused_package_methods.h"

namespace Standin::Packages {

namespace {

using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

using Folder = std::shared_ptr<const PackageFolder>;

bool IsPathCharacter(char c) {
  constexpr std::string_view kSigns = "-._~!$&'()*+,;=:@/";
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         kSigns.find(c) != std::string_view::npos;
}

/// The path of a file's URI: slashes, and the UTF-8 bytes of all other characters as %XX.
std::wstring UriPath(const std::wstring& file) {
  constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  std::wstring path = L"/";
  for (const char c : ToUtf8(file)) {
    if (c == '\\') {
      path += L'/';
    } else if (IsPathCharacter(c)) {
      path += static_cast<wchar_t>(c);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      path += {L'%', kDigits[byte >> 4], kDigits[byte & 0xF]};
    }
  }
  return path;
}

class SimulatedUri final : public RuntimeObject<UnusedUriMethods, WinRt::IUriRuntimeClass> {
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
    : public RuntimeObject<UnusedFolderMethods, WinRt::IStorageFolder, WinRt::IStorageItem> {
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

class SimulatedId final : public RuntimeObject<UnusedPackageIdMethods, WinRt::IPackageId> {
 public:
  explicit SimulatedId(Folder folder) : folder_(std::move(folder)) {}

  STDMETHODIMP get_Name(HSTRING* value) override {
    return HandOutText(folder_->script, "Name", folder_->name, value);
  }

 private:
  Folder folder_;
};

class SimulatedPackage final : public RuntimeObject<UnusedPackageMethods, WinRt::IPackage,
                                                    WinRt::IPackage2, WinRt::IPackage4> {
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

// E_BOUNDS, which not every toolchain's headers have.
constexpr HRESULT kOutOfBounds = static_cast<HRESULT>(0x8000000BUL);

struct Collection {
  std::vector<PackageFolder> packages;
  Script script;
};

/// Calls about one package follow that package's own script.
class SimulatedIterator final
    : public RuntimeObject<UnusedIteratorMethods, WinRt::IPackageIterator> {
 public:
  explicit SimulatedIterator(std::shared_ptr<const Collection> all) : all_(std::move(all)) {}

  STDMETHODIMP get_Current(WinRt::IPackage** value) override {
    *value = nullptr;
    if (AtEnd()) return kOutOfBounds;
    const std::shared_ptr<const PackageFolder> package(all_, &all_->packages[at_]);
    return HandOut(package->script, "Current", value, [&] { return MakePackage(package); });
  }
  STDMETHODIMP get_HasCurrent(boolean* value) override {
    const boolean given = AtEnd() ? 0 : 1;
    return HandOutValue(all_->script, "HasCurrent", given, value);
  }
  STDMETHODIMP MoveNext(boolean* value) override {
    if (AtEnd()) return kOutOfBounds;
    const Script& script = all_->packages[at_].script;
    ++at_;
    const boolean given = AtEnd() ? 0 : 1;
    return HandOutValue(script, "MoveNext", given, value);
  }

 private:
  bool AtEnd() const { return at_ == all_->packages.size(); }

  std::shared_ptr<const Collection> all_;
  std::size_t at_ = 0;
};

class SimulatedIterable final
    : public RuntimeObject<WinRt::IPackageIterable, WinRt::IPackageIterable> {
 public:
  explicit SimulatedIterable(std::shared_ptr<const Collection> all) : all_(std::move(all)) {}

  STDMETHODIMP First(WinRt::IPackageIterator** value) override {
    return HandOut(all_->script, "First", value, [this] { return new SimulatedIterator(all_); });
  }

 private:
  std::shared_ptr<const Collection> all_;
};

class SimulatedManager final : public RuntimeObject<UnusedManagerMethods, WinRt::IPackageManager> {
 public:
  SimulatedManager(std::wstring root, Script script)
      : root_(std::move(root)), script_(std::move(script)) {}

  STDMETHODIMP FindPackages(WinRt::IPackageIterable** value) override {
    return HandOut(script_, "FindPackages", value, [this] {
      const Collection all{ReadPackageFolders(root_, script_), script_};
      return new SimulatedIterable(std::make_shared<const Collection>(all));
    });
  }

 private:
  std::wstring root_;
  Script script_;
};

}  // namespace

WinRt::IPackage* MakePackage(std::shared_ptr<const PackageFolder> folder) {
  return new SimulatedPackage(std::move(folder));
}

WinRt::IPackageManager* MakeManager(std::wstring root, Script script) {
  return new SimulatedManager(std::move(root), std::move(script));
}

}  // namespace Standin::Packages
