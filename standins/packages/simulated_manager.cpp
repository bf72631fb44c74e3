#include "simulated_manager.h"

#include <memory>
#include <utility>
#include <vector>

#include "runtime_object.h"
#include "simulated_package.h"
#include "unused_operations.h"

namespace Standin::Packages {

namespace {

// E_BOUNDS, which not every toolchain's headers have.
constexpr HRESULT kOutOfBounds = static_cast<HRESULT>(0x8000000BUL);

struct Collection {
  std::vector<PackageFolder> packages;
  Script script;
};

/// The package's own words count as well, where there is a package.
class SimulatedIterator final : public RuntimeObject<UnusedIterator, WinRt::IPackageIterator> {
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

class SimulatedManager final : public RuntimeObject<UnusedManager, WinRt::IPackageManager> {
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

WinRt::IPackageManager* MakeManager(std::wstring root, Script script) {
  return new SimulatedManager(std::move(root), std::move(script));
}

}  // namespace Standin::Packages
