#pragma once

// The export macro of WattleafService.dll. WATTLEAF_EXPORTS is defined while the library's own
// sources are compiled, WATTLEAF_IMPORTS for a program that uses the installed package. The macro
// is empty for tests, which link the sources themselves.
#if defined(WATTLEAF_EXPORTS)
#define WATTLEAF_API __declspec(dllexport)
#elif defined(WATTLEAF_IMPORTS)
#define WATTLEAF_API __declspec(dllimport)
#else
#define WATTLEAF_API
#endif
