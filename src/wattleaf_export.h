#pragma once

// The export macro of WattleafService.dll. WATTLEAF_EXPORTS is defined while the library's own
// sources are compiled, WATTLEAF_IMPORTS for a program that uses the installed package. The macro
// is empty for tests, which link the sources themselves.
//
// On a class the macro exports all members. So exported classes declare their copies and
// destructors and have bodies for them in the library: what is exported of implicit ones depends on
// the toolchain.
#if defined(WATTLEAF_EXPORTS)
#define WATTLEAF_API __declspec(dllexport)
#elif defined(WATTLEAF_IMPORTS)
#define WATTLEAF_API __declspec(dllimport)
#else
#define WATTLEAF_API
#endif
