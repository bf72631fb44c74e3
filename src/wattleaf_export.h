#pragma once

// The export macro of WattleafService.dll: set while the library's own sources are compiled, and
// the other way round for a program that uses the installed package. Elsewhere it is empty.
#if defined(WATTLEAF_EXPORTS)
#define WATTLEAF_API __declspec(dllexport)
#elif defined(WATTLEAF_IMPORTS)
#define WATTLEAF_API __declspec(dllimport)
#else
#define WATTLEAF_API
#endif
