#pragma once

#include "abi/package_shapes.h"
#include "parameter.h"

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
  STDMETHODIMP CreateFileAsyncOverloadDefaultOptions(
      HSTRING,
      Parameter<&WinRt::IStorageFolder::CreateFileAsyncOverloadDefaultOptions, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateFileAsync(HSTRING, Parameter<&WinRt::IStorageFolder::CreateFileAsync, 1>,
                               Parameter<&WinRt::IStorageFolder::CreateFileAsync, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateFolderAsyncOverloadDefaultOptions(
      HSTRING,
      Parameter<&WinRt::IStorageFolder::CreateFolderAsyncOverloadDefaultOptions, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CreateFolderAsync(HSTRING, Parameter<&WinRt::IStorageFolder::CreateFolderAsync, 1>,
                                 Parameter<&WinRt::IStorageFolder::CreateFolderAsync, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetFileAsync(HSTRING, Parameter<&WinRt::IStorageFolder::GetFileAsync, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetFolderAsync(HSTRING,
                              Parameter<&WinRt::IStorageFolder::GetFolderAsync, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetItemAsync(HSTRING, Parameter<&WinRt::IStorageFolder::GetItemAsync, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetFilesAsyncOverloadDefaultOptionsStartAndCount(
      Parameter<&WinRt::IStorageFolder::GetFilesAsyncOverloadDefaultOptionsStartAndCount>)
      override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetFoldersAsyncOverloadDefaultOptionsStartAndCount(
      Parameter<&WinRt::IStorageFolder::GetFoldersAsyncOverloadDefaultOptionsStartAndCount>)
      override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetItemsAsyncOverloadDefaultStartAndCount(
      Parameter<&WinRt::IStorageFolder::GetItemsAsyncOverloadDefaultStartAndCount>) override {
    return E_NOTIMPL;
  }

  STDMETHODIMP RenameAsyncOverloadDefaultOptions(
      HSTRING, Parameter<&WinRt::IStorageItem::RenameAsyncOverloadDefaultOptions, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RenameAsync(HSTRING, Parameter<&WinRt::IStorageItem::RenameAsync, 1>,
                           Parameter<&WinRt::IStorageItem::RenameAsync, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP DeleteAsyncOverloadDefaultOptions(
      Parameter<&WinRt::IStorageItem::DeleteAsyncOverloadDefaultOptions>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP DeleteAsync(Parameter<&WinRt::IStorageItem::DeleteAsync>,
                           Parameter<&WinRt::IStorageItem::DeleteAsync, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetBasicPropertiesAsync(
      Parameter<&WinRt::IStorageItem::GetBasicPropertiesAsync>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_Name(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Attributes(Parameter<&WinRt::IStorageItem::get_Attributes>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_DateCreated(Parameter<&WinRt::IStorageItem::get_DateCreated>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP IsOfType(Parameter<&WinRt::IStorageItem::IsOfType>, boolean*) override {
    return E_NOTIMPL;
  }
};

struct UnusedPackageIdMethods : WinRt::IPackageId {
  STDMETHODIMP get_Version(Parameter<&WinRt::IPackageId::get_Version>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_Architecture(Parameter<&WinRt::IPackageId::get_Architecture>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_ResourceId(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Publisher(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_PublisherId(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_FullName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_FamilyName(HSTRING*) override { return E_NOTIMPL; }
};

struct UnusedPackageMethods : WinRt::IPackage, WinRt::IPackage2, WinRt::IPackage4 {
  STDMETHODIMP get_Dependencies(Parameter<&WinRt::IPackage::get_Dependencies>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP get_PublisherDisplayName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Description(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsResourcePackage(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsBundle(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsDevelopmentMode(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsOptional(boolean*) override { return E_NOTIMPL; }
  STDMETHODIMP VerifyContentIntegrityAsync(
      Parameter<&WinRt::IPackage4::VerifyContentIntegrityAsync>) override {
    return E_NOTIMPL;
  }
};

struct UnusedIteratorMethods : WinRt::IPackageIterator {
  STDMETHODIMP GetMany(UINT32, WinRt::IPackage**, UINT32*) override { return E_NOTIMPL; }
};

struct UnusedManagerMethods : WinRt::IPackageManager {
  STDMETHODIMP AddPackageAsync(WinRt::IUriRuntimeClass*,
                               Parameter<&WinRt::IPackageManager::AddPackageAsync, 1>,
                               Parameter<&WinRt::IPackageManager::AddPackageAsync, 2>,
                               Parameter<&WinRt::IPackageManager::AddPackageAsync, 3>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP UpdatePackageAsync(
      WinRt::IUriRuntimeClass*, Parameter<&WinRt::IPackageManager::UpdatePackageAsync, 1>,
      Parameter<&WinRt::IPackageManager::UpdatePackageAsync, 2>,
      Parameter<&WinRt::IPackageManager::UpdatePackageAsync, 3>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RemovePackageAsync(
      HSTRING, Parameter<&WinRt::IPackageManager::RemovePackageAsync, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP StagePackageAsync(
      WinRt::IUriRuntimeClass*, Parameter<&WinRt::IPackageManager::StagePackageAsync, 1>,
      Parameter<&WinRt::IPackageManager::StagePackageAsync, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RegisterPackageAsync(
      WinRt::IUriRuntimeClass*, Parameter<&WinRt::IPackageManager::RegisterPackageAsync, 1>,
      Parameter<&WinRt::IPackageManager::RegisterPackageAsync, 2>,
      Parameter<&WinRt::IPackageManager::RegisterPackageAsync, 3>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindPackagesByUserSecurityId(
      HSTRING, Parameter<&WinRt::IPackageManager::FindPackagesByUserSecurityId, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindPackagesByNamePublisher(
      HSTRING, HSTRING,
      Parameter<&WinRt::IPackageManager::FindPackagesByNamePublisher, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindPackagesByUserSecurityIdNamePublisher(
      HSTRING, HSTRING, HSTRING,
      Parameter<&WinRt::IPackageManager::FindPackagesByUserSecurityIdNamePublisher, 3>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindUsers(HSTRING, Parameter<&WinRt::IPackageManager::FindUsers, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP SetPackageState(HSTRING,
                               Parameter<&WinRt::IPackageManager::SetPackageState, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindPackageByPackageFullName(
      HSTRING, Parameter<&WinRt::IPackageManager::FindPackageByPackageFullName, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP CleanupPackageForUserAsync(
      HSTRING, HSTRING,
      Parameter<&WinRt::IPackageManager::CleanupPackageForUserAsync, 2>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindPackagesByPackageFamilyName(
      HSTRING, Parameter<&WinRt::IPackageManager::FindPackagesByPackageFamilyName, 1>) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindPackagesByUserSecurityIdPackageFamilyName(
      HSTRING, HSTRING,
      Parameter<&WinRt::IPackageManager::FindPackagesByUserSecurityIdPackageFamilyName, 2>)
      override {
    return E_NOTIMPL;
  }
  STDMETHODIMP FindPackageByUserSecurityIdPackageFullName(
      HSTRING, HSTRING,
      Parameter<&WinRt::IPackageManager::FindPackageByUserSecurityIdPackageFullName, 2>) override {
    return E_NOTIMPL;
  }
};

}  // namespace Standin::Packages
