#pragma once

#include "abi/package_shapes.h"

// Part of the stand-in for the package manager: the methods that the library never calls. Each
// returns E_NOTIMPL.
namespace Standin::Packages {

namespace WinRt = Zq::Gantry::Platform::WinRt;

struct UnusedUriMethods : WinRt::IUriRuntimeClass {
  STDMETHODIMP get_AbsoluteUri(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_DisplayUri(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Domain(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Extension(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Fragment(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Host(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Password(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Query(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_QueryParsed(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP get_RawUri(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_SchemeName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_UserName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Port(INT32*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Suspicious(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP Equals(IUriRuntimeClass*, boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP CombineUri(HSTRING, IUriRuntimeClass**) override { return E_NOTIMPL; }
};

struct UnusedFolderMethods : WinRt::IStorageFolder, WinRt::IStorageItem {
  STDMETHODIMP CreateFileAsyncOverloadDefaultOptions(HSTRING, IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateFileAsync(HSTRING, INT32, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP CreateFolderAsyncOverloadDefaultOptions(HSTRING, IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateFolderAsync(HSTRING, INT32, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP GetFileAsync(HSTRING, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP GetFolderAsync(HSTRING, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP GetItemAsync(HSTRING, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP GetFilesAsyncOverloadDefaultOptionsStartAndCount(IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetFoldersAsyncOverloadDefaultOptionsStartAndCount(IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetItemsAsyncOverloadDefaultStartAndCount(IInspectable**) override {
    return E_NOTIMPL;
  }

  STDMETHODIMP RenameAsyncOverloadDefaultOptions(HSTRING, IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RenameAsync(HSTRING, INT32, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP DeleteAsyncOverloadDefaultOptions(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP DeleteAsync(INT32, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP GetBasicPropertiesAsync(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP get_Name(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Attributes(UINT32*) override { return E_NOTIMPL; }
  STDMETHODIMP get_DateCreated(WinRt::DateTime*) override { return E_NOTIMPL; }
  STDMETHODIMP IsOfType(UINT32, boolean*) override { return E_NOTIMPL; }
};

struct UnusedPackageIdMethods : WinRt::IPackageId {
  STDMETHODIMP get_Version(WinRt::PackageVersion*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Architecture(INT32*) override { return E_NOTIMPL; }
  STDMETHODIMP get_ResourceId(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Publisher(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_PublisherId(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_FullName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_FamilyName(HSTRING*) override { return E_NOTIMPL; }
};

struct UnusedPackageMethods : WinRt::IPackage, WinRt::IPackage2, WinRt::IPackage4 {
  STDMETHODIMP get_Dependencies(IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP get_PublisherDisplayName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Description(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsResourcePackage(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsBundle(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsDevelopmentMode(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsOptional(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP VerifyContentIntegrityAsync(IInspectable**) override { return E_NOTIMPL; }
};

struct UnusedIteratorMethods : WinRt::IPackageIterator {
  STDMETHODIMP GetMany(UINT32, WinRt::IPackage**, UINT32*) override { return E_NOTIMPL; }
};

struct UnusedManagerMethods : WinRt::IPackageManager {
  STDMETHODIMP AddPackageAsync(WinRt::IUriRuntimeClass*, IInspectable*, UINT32,
                               IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP UpdatePackageAsync(WinRt::IUriRuntimeClass*, IInspectable*, UINT32,
                                  IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RemovePackageAsync(HSTRING, IInspectable**) override { return E_NOTIMPL; }
  STDMETHODIMP StagePackageAsync(WinRt::IUriRuntimeClass*, IInspectable*, IInspectable**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RegisterPackageAsync(WinRt::IUriRuntimeClass*, IInspectable*, UINT32,
                                    IInspectable**) override {
    return E_NOTIMPL;
  }
};

}  // namespace Standin::Packages
