#pragma once

#include <windows.h>

#include <windows.applicationmodel.h>
#include <windows.foundation.h>
#include <windows.management.deployment.h>
#include <windows.storage.h>

// The package manager's interfaces as the Windows SDK declares them, under the names that the rest
// of the library uses.
namespace Zq::Gantry::Platform::WinRt {

using ABI::Windows::ApplicationModel::IPackage;
using ABI::Windows::ApplicationModel::IPackage2;
using ABI::Windows::ApplicationModel::IPackage4;
using ABI::Windows::ApplicationModel::IPackageId;
using ABI::Windows::ApplicationModel::PackageSignatureKind;
using ABI::Windows::Foundation::IUriRuntimeClass;
using ABI::Windows::Management::Deployment::IPackageManager;
using ABI::Windows::Storage::IStorageFolder;
using ABI::Windows::Storage::IStorageItem;
using IPackageIterable =
    ABI::Windows::Foundation::Collections::IIterable<ABI::Windows::ApplicationModel::Package*>;
using IPackageIterator =
    ABI::Windows::Foundation::Collections::IIterator<ABI::Windows::ApplicationModel::Package*>;

}  // namespace Zq::Gantry::Platform::WinRt
