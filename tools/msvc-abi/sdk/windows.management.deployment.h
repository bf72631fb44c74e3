// The package manager, with the names and types of the Windows SDK. Only what this project uses is
// complete.
#pragma once
#include <windows.h>
#include <hstring.h>
#include <inspectable.h>
#include <windows.applicationmodel.h>
namespace ABI {
namespace Windows {
namespace Management {
namespace Deployment {
class DeploymentResult;
struct DeploymentProgress {
  int state;
  unsigned percentage;
};
enum DeploymentOptions : unsigned {};
enum PackageState : int {};
class PackageUserInformation;
using Foundation::IAsyncOperationWithProgress;
using Foundation::IUriRuntimeClass;
using PI = Foundation::Collections::IIterable<ApplicationModel::Package*>;
using UI = Foundation::Collections::IIterable<Foundation::Uri*>;
struct __declspec(uuid("9a7d4b65-5e8f-4fc7-a2e5-7f6925cb8b53")) __declspec(novtable) IPackageManager
    : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE
  AddPackageAsync(IUriRuntimeClass*, UI*, DeploymentOptions,
                  IAsyncOperationWithProgress<DeploymentResult*, DeploymentProgress>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  UpdatePackageAsync(IUriRuntimeClass*, UI*, DeploymentOptions,
                     IAsyncOperationWithProgress<DeploymentResult*, DeploymentProgress>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemovePackageAsync(
      HSTRING, IAsyncOperationWithProgress<DeploymentResult*, DeploymentProgress>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  StagePackageAsync(IUriRuntimeClass*, UI*,
                    IAsyncOperationWithProgress<DeploymentResult*, DeploymentProgress>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  RegisterPackageAsync(IUriRuntimeClass*, UI*, DeploymentOptions,
                       IAsyncOperationWithProgress<DeploymentResult*, DeploymentProgress>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackages(PI**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByUserSecurityId(HSTRING, PI**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByNamePublisher(HSTRING, HSTRING, PI**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByUserSecurityIdNamePublisher(HSTRING, HSTRING,
                                                                              HSTRING, PI**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  FindUsers(HSTRING, Foundation::Collections::IIterable<PackageUserInformation*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetPackageState(HSTRING, PackageState) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackageByPackageFullName(HSTRING,
                                                                 ApplicationModel::IPackage**) = 0;
  virtual HRESULT STDMETHODCALLTYPE CleanupPackageForUserAsync(
      HSTRING, HSTRING, IAsyncOperationWithProgress<DeploymentResult*, DeploymentProgress>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByPackageFamilyName(HSTRING, PI**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByUserSecurityIdPackageFamilyName(HSTRING, HSTRING,
                                                                                  PI**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  FindPackageByUserSecurityIdPackageFullName(HSTRING, HSTRING, ApplicationModel::IPackage**) = 0;
};
}  // namespace Deployment
}  // namespace Management
}  // namespace Windows
}  // namespace ABI
