#include "catalogue/package_manager.h"

#include <windows.h>

#include <utility>

#include "abi/package_shapes.h"
#include "platform/winrt/activation.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using namespace Platform::WinRt;
using Platform::UniqueInterface;

constexpr wchar_t kPackageManager[] = L"Windows.Management.Deployment.PackageManager";

class RuntimePackage final : public InstalledPackage {
 public:
  explicit RuntimePackage(UniqueInterface<IPackage> package) : package_(std::move(package)) {}

  bool IsFramework() override { return FetchValue(*package_.get(), &IPackage::get_IsFramework); }

  int SignatureKind() override {
    return FetchValue(*As<IPackage4>().get(), &IPackage4::get_SignatureKind);
  }

  std::wstring Name() override {
    const auto id = FetchObject(*package_.get(), &IPackage::get_Id);
    return FetchText(*id.get(), &IPackageId::get_Name);
  }

  std::wstring DisplayName() override {
    return FetchText(*As<IPackage2>().get(), &IPackage2::get_DisplayName);
  }

  std::wstring InstalledPath() override {
    const auto folder = FetchObject(*package_.get(), &IPackage::get_InstalledLocation);
    const auto item = FetchInterface<IStorageItem>(*folder.get());
    return FetchText(*item.get(), &IStorageItem::get_Path);
  }

  std::wstring LogoPath() override {
    const auto uri = FetchObject(*As<IPackage2>().get(), &IPackage2::get_Logo);
    return FetchText(*uri.get(), &IUriRuntimeClass::get_Path);
  }

 private:
  template <typename Interface>
  UniqueInterface<Interface> As() {
    return FetchInterface<Interface>(*package_.get());
  }

  UniqueInterface<IPackage> package_;
};

class RuntimeWalk final : public PackageWalk {
 public:
  RuntimeWalk() {
    const auto manager = Activate<IPackageManager>(kPackageManager);
    const auto packages = FetchObject(*manager.get(), &IPackageManager::FindPackages);
    iterator_ = FetchObject(*packages.get(), &IPackageIterable::First);
  }

  bool HasCurrent() override {
    return FetchValue(*iterator_.get(), &IPackageIterator::get_HasCurrent);
  }

  std::unique_ptr<InstalledPackage> Current() override {
    return std::make_unique<RuntimePackage>(
        FetchObject(*iterator_.get(), &IPackageIterator::get_Current));
  }

  bool MoveNext() override { return FetchValue(*iterator_.get(), &IPackageIterator::MoveNext); }

 private:
  // Declared first and so destroyed last: no object may be released after the apartment is left.
  ApartmentMembership apartment_;
  UniqueInterface<IPackageIterator> iterator_;
};

}  // namespace

std::unique_ptr<PackageWalk> FindAllPackages() { return std::make_unique<RuntimeWalk>(); }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
