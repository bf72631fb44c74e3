// MSVC's standard library includes it under this name.
#pragma once
#include <windows.h>
