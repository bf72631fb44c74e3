// Packages, with the names and types of the Windows SDK. Only what this project uses is complete.
#pragma once
#include <windows.h>
#include <hstring.h>
#include <inspectable.h>
#include <windows.foundation.h>
#include <windows.storage.h>
namespace ABI {
namespace Windows {
namespace System {
enum ProcessorArchitecture : int {};
}
namespace ApplicationModel {
class Package;
using Foundation::IUriRuntimeClass;
using Storage::IStorageFolder;
struct PackageVersion {
  UINT16 Major;
  UINT16 Minor;
  UINT16 Build;
  UINT16 Revision;
};
struct __declspec(uuid("1adb665e-37c7-4790-9980-dd7ae74e8bb2")) __declspec(novtable) IPackageId
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_Name(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Version(PackageVersion* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Architecture(System::ProcessorArchitecture* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ResourceId(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Publisher(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_PublisherId(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FullName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FamilyName(HSTRING* value) = 0;
};
struct __declspec(uuid("163c792f-bd75-413c-bf23-b1fe7b95d825")) __declspec(novtable) IPackage
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_Id(IPackageId** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_InstalledLocation(IStorageFolder** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsFramework(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  get_Dependencies(Foundation::Collections::IVectorView<Package*>** value) = 0;
};
struct __declspec(uuid("a6612fb6-7688-4ace-95fb-359538e7aa01")) __declspec(novtable) IPackage2
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_DisplayName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_PublisherDisplayName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Description(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Logo(IUriRuntimeClass** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsResourcePackage(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsBundle(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsDevelopmentMode(boolean* value) = 0;
};
enum PackageSignatureKind : int {
  PackageSignatureKind_None = 0,
  PackageSignatureKind_Developer = 1,
  PackageSignatureKind_Enterprise = 2,
  PackageSignatureKind_Store = 3,
  PackageSignatureKind_System = 4,
};
struct __declspec(uuid("65aed1ae-b95b-450c-882b-6255187f397e")) __declspec(novtable) IPackage4
    : IInspectable {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_SignatureKind(PackageSignatureKind* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsOptional(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  VerifyContentIntegrityAsync(Foundation::IAsyncOperation<bool>** operation) = 0;
};

}  // namespace ApplicationModel
namespace Foundation {
namespace Collections {
template <>
struct __declspec(uuid("0217f069-025c-5ee6-a87f-e782e3b623ae"))
    IIterator<ApplicationModel::Package*> : IIterator_impl<ApplicationModel::IPackage*> {};
template <>
struct __declspec(uuid("69ad6aa7-0c49-5f27-a5eb-ef4d59467b6d"))
    IIterable<ApplicationModel::Package*> : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE First(IIterator<ApplicationModel::Package*>** v) = 0;
};
}  // namespace Collections
}  // namespace Foundation
}  // namespace Windows
}  // namespace ABI
