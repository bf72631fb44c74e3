#pragma once

#include <windows.h>

#include <windows.foundation.h>

// Boxed values as the Windows SDK declares them, under the names that the rest of the library uses.
namespace Zq::Gantry::Platform::WinRt {

using ABI::Windows::Foundation::IPropertyValue;
using ABI::Windows::Foundation::PropertyType;
using ABI::Windows::Foundation::PropertyType_Boolean;
using ABI::Windows::Foundation::PropertyType_Double;
using ABI::Windows::Foundation::PropertyType_String;
using IStringReference = ABI::Windows::Foundation::IReference<HSTRING>;
using IDoubleReference = ABI::Windows::Foundation::IReference<double>;
using IBooleanReference = ABI::Windows::Foundation::IReference<bool>;

}  // namespace Zq::Gantry::Platform::WinRt
