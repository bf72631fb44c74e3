#pragma once

#include <windows.h>

#include <hstring.h>
#include <inspectable.h>

#include "abi/value_shapes.h"

// The package manager's interfaces, which the headers of this toolchain lack, as Windows documents
// them. Each operation is in the slot that it has in Windows, so that the order of the lines is the
// contract. All slots are declared, since stand-ins implement these interfaces. The last parameter
// is the result. A result that is an object or a text comes with a reference, which the caller
// owns. Objects that are not used here are typed as IInspectable, which makes no difference to the
// call.
namespace Zq::Gantry::Platform::WinRt {

/// Windows.Foundation.IUriRuntimeClass: an address, such as that of a logo.
struct IUriRuntimeClass : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_AbsoluteUri(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DisplayUri(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Domain(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Extension(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Fragment(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Host(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Password(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Path(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Query(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_QueryParsed(IInspectable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_RawUri(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SchemeName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UserName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Port(INT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Suspicious(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Equals(IUriRuntimeClass* uri, boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE CombineUri(HSTRING relativeUri, IUriRuntimeClass** value) = 0;
};

/// Windows.Storage.IStorageItem: a file or folder; get_Path is its full path.
struct IStorageItem : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE RenameAsyncOverloadDefaultOptions(HSTRING name,
                                                                      IInspectable** action) = 0;
  virtual HRESULT STDMETHODCALLTYPE RenameAsync(HSTRING name, INT32 option,
                                                IInspectable** action) = 0;
  virtual HRESULT STDMETHODCALLTYPE DeleteAsyncOverloadDefaultOptions(IInspectable** action) = 0;
  virtual HRESULT STDMETHODCALLTYPE DeleteAsync(INT32 option, IInspectable** action) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetBasicPropertiesAsync(IInspectable** action) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Name(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Path(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Attributes(UINT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DateCreated(DateTime* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsOfType(UINT32 type, boolean* value) = 0;
};

/// Windows.Storage.IStorageFolder. No operation of it is called: QueryInterface gives its
/// IStorageItem.
struct IStorageFolder : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE
  CreateFileAsyncOverloadDefaultOptions(HSTRING name, IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateFileAsync(HSTRING name, INT32 options,
                                                    IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  CreateFolderAsyncOverloadDefaultOptions(HSTRING name, IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateFolderAsync(HSTRING name, INT32 options,
                                                      IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFileAsync(HSTRING name, IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFolderAsync(HSTRING name, IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetItemAsync(HSTRING name, IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  GetFilesAsyncOverloadDefaultOptionsStartAndCount(IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  GetFoldersAsyncOverloadDefaultOptionsStartAndCount(IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  GetItemsAsyncOverloadDefaultStartAndCount(IInspectable** operation) = 0;
};

/// Windows.ApplicationModel.PackageVersion, returned by value.
struct PackageVersion {
  UINT16 Major;
  UINT16 Minor;
  UINT16 Build;
  UINT16 Revision;
};

/// Windows.ApplicationModel.IPackageId: the names of a package.
struct IPackageId : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Name(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Version(PackageVersion* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Architecture(INT32* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ResourceId(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Publisher(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_PublisherId(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FullName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FamilyName(HSTRING* value) = 0;
};

/// Windows.ApplicationModel.IPackage. Also has IPackage2 and, since Windows 10 1607, IPackage4.
struct IPackage : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Id(IPackageId** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_InstalledLocation(IStorageFolder** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsFramework(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Dependencies(IInspectable** value) = 0;
};

/// Windows.ApplicationModel.IPackage2: a package's texts as users see them, and its logo.
struct IPackage2 : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_DisplayName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_PublisherDisplayName(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Description(HSTRING* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Logo(IUriRuntimeClass** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsResourcePackage(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsBundle(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsDevelopmentMode(boolean* value) = 0;
};

/// How a package is signed; the values are fixed by Windows.
enum PackageSignatureKind : INT32 {
  PackageSignatureKind_None = 0,
  PackageSignatureKind_Developer = 1,
  PackageSignatureKind_Enterprise = 2,
  PackageSignatureKind_Store = 3,
  PackageSignatureKind_System = 4,
};

/// Windows.ApplicationModel.IPackage4: a package's signature.
struct IPackage4 : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_SignatureKind(PackageSignatureKind* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsOptional(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE VerifyContentIntegrityAsync(IInspectable** operation) = 0;
};

/// IIterator<Package>: a place in the list of packages. get_Current is for a place with
/// get_HasCurrent only.
struct IPackageIterator : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Current(IPackage** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_HasCurrent(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE MoveNext(boolean* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetMany(UINT32 capacity, IPackage** items, UINT32* actual) = 0;
};

/// IIterable<Package>: the list of packages.
struct IPackageIterable : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE First(IPackageIterator** value) = 0;
};

/// Windows.Management.Deployment.IPackageManager.
struct IPackageManager : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE AddPackageAsync(IUriRuntimeClass* package,
                                                    IInspectable* dependencies, UINT32 options,
                                                    IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE UpdatePackageAsync(IUriRuntimeClass* package,
                                                       IInspectable* dependencies, UINT32 options,
                                                       IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemovePackageAsync(HSTRING fullName,
                                                       IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE StagePackageAsync(IUriRuntimeClass* package,
                                                      IInspectable* dependencies,
                                                      IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE RegisterPackageAsync(IUriRuntimeClass* manifest,
                                                         IInspectable* dependencies, UINT32 options,
                                                         IInspectable** operation) = 0;
  /// The packages of all users; administrators only.
  virtual HRESULT STDMETHODCALLTYPE FindPackages(IPackageIterable** value) = 0;
  // None of the others is called.
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByUserSecurityId(HSTRING user,
                                                                 IPackageIterable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByNamePublisher(HSTRING name, HSTRING publisher,
                                                                IPackageIterable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByUserSecurityIdNamePublisher(
      HSTRING user, HSTRING name, HSTRING publisher, IPackageIterable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindUsers(HSTRING fullName, IInspectable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetPackageState(HSTRING fullName, INT32 state) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackageByPackageFullName(HSTRING fullName,
                                                                 IPackage** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE CleanupPackageForUserAsync(HSTRING name, HSTRING user,
                                                               IInspectable** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByPackageFamilyName(HSTRING familyName,
                                                                    IPackageIterable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPackagesByUserSecurityIdPackageFamilyName(
      HSTRING user, HSTRING familyName, IPackageIterable** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  FindPackageByUserSecurityIdPackageFullName(HSTRING user, HSTRING fullName, IPackage** value) = 0;
};

}  // namespace Zq::Gantry::Platform::WinRt

// The macro must be used outside of any namespace. Windows derives the identifiers of the two
// collections from that of the generic collection and the signature of the element type.
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IUriRuntimeClass, 0x9e365e57, 0x48b2, 0x4160, 0x95,
                0x6f, 0xc7, 0x38, 0x51, 0x20, 0xbb, 0xfc)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IStorageItem, 0x4207a996, 0xca2f, 0x42f7, 0xbd, 0xe8,
                0x8b, 0x10, 0x45, 0x7a, 0x7f, 0x30)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IStorageFolder, 0x72d1cb78, 0xb3ef, 0x4f75, 0xa8, 0x0b,
                0x6f, 0xd9, 0xda, 0xe2, 0x94, 0x4b)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPackageId, 0x1adb665e, 0x37c7, 0x4790, 0x99, 0x80,
                0xdd, 0x7a, 0xe7, 0x4e, 0x8b, 0xb2)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPackage, 0x163c792f, 0xbd75, 0x413c, 0xbf, 0x23, 0xb1,
                0xfe, 0x7b, 0x95, 0xd8, 0x25)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPackage2, 0xa6612fb6, 0x7688, 0x4ace, 0x95, 0xfb,
                0x35, 0x95, 0x38, 0xe7, 0xaa, 0x01)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPackage4, 0x65aed1ae, 0xb95b, 0x450c, 0x88, 0x2b,
                0x62, 0x55, 0x18, 0x7f, 0x39, 0x7e)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPackageIterator, 0x0217f069, 0x025c, 0x5ee6, 0xa8,
                0x7f, 0xe7, 0x82, 0xe3, 0xb6, 0x23, 0xae)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPackageIterable, 0x69ad6aa7, 0x0c49, 0x5f27, 0xa5,
                0xeb, 0xef, 0x4d, 0x59, 0x46, 0x7b, 0x6d)
__CRT_UUID_DECL(Zq::Gantry::Platform::WinRt::IPackageManager, 0x9a7d4b65, 0x5e8f, 0x4fc7, 0xa2,
                0xe5, 0x7f, 0x69, 0x25, 0xcb, 0x8b, 0x53)
