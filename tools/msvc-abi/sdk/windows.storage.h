// Files and folders, with the names and types of the Windows SDK. Only what this project uses is
// complete.
#pragma once
#include <windows.h>
#include <hstring.h>
#include <inspectable.h>
#include <windows.foundation.h>
namespace ABI {
namespace Windows {
namespace Storage {
namespace FileProperties {
class BasicProperties;
}
class StorageFile;
class StorageFolder;
struct IStorageItem;
enum NameCollisionOption : int {};
enum StorageDeleteOption : int {};
enum FileAttributes : unsigned int {};
enum StorageItemTypes : unsigned int {};
enum CreationCollisionOption : int {};
using Foundation::DateTime;
using Foundation::IAsyncAction;
using Foundation::IAsyncOperation;
using Foundation::Collections::IVectorView;
struct __declspec(uuid("4207a996-ca2f-42f7-bde8-8b10457a7f30")) __declspec(novtable) IStorageItem
    : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE RenameAsyncOverloadDefaultOptions(HSTRING, IAsyncAction**) = 0;
  virtual HRESULT STDMETHODCALLTYPE RenameAsync(HSTRING, NameCollisionOption, IAsyncAction**) = 0;
  virtual HRESULT STDMETHODCALLTYPE DeleteAsyncOverloadDefaultOptions(IAsyncAction**) = 0;
  virtual HRESULT STDMETHODCALLTYPE DeleteAsync(StorageDeleteOption, IAsyncAction**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  GetBasicPropertiesAsync(IAsyncOperation<FileProperties::BasicProperties*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Name(HSTRING*) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Path(HSTRING*) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Attributes(FileAttributes*) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DateCreated(DateTime*) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsOfType(StorageItemTypes, boolean*) = 0;
};
struct __declspec(uuid("72d1cb78-b3ef-4f75-a80b-6fd9dae2944b")) __declspec(novtable) IStorageFolder
    : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE
  CreateFileAsyncOverloadDefaultOptions(HSTRING, IAsyncOperation<StorageFile*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateFileAsync(HSTRING, CreationCollisionOption,
                                                    IAsyncOperation<StorageFile*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  CreateFolderAsyncOverloadDefaultOptions(HSTRING, IAsyncOperation<StorageFolder*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateFolderAsync(HSTRING, CreationCollisionOption,
                                                      IAsyncOperation<StorageFolder*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFileAsync(HSTRING, IAsyncOperation<StorageFile*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFolderAsync(HSTRING, IAsyncOperation<StorageFolder*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetItemAsync(HSTRING, IAsyncOperation<IStorageItem*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFilesAsyncOverloadDefaultOptionsStartAndCount(
      IAsyncOperation<IVectorView<StorageFile*>*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFoldersAsyncOverloadDefaultOptionsStartAndCount(
      IAsyncOperation<IVectorView<StorageFolder*>*>**) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  GetItemsAsyncOverloadDefaultStartAndCount(IAsyncOperation<IVectorView<IStorageItem*>*>**) = 0;
};
}  // namespace Storage
}  // namespace Windows
}  // namespace ABI
