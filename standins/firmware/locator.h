#pragma once

#include <windows.h>

#include <unknwn.h>

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// The class factory of IWbemLocator: one for the process, never deleted, without a reference
/// count.
[[nodiscard]] IClassFactory& LocatorFactory();

}  // namespace Standin::Firmware
