#pragma once

#include <windows.h>

#include <unknwn.h>

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// The factory of locators, one for the process; it is never deleted and counts no references.
IClassFactory& LocatorFactory();

}  // namespace Standin::Firmware
