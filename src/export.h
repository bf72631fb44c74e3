#pragma once

// The export macro of WattleafService.dll, set while the library's own sources are compiled.
#if defined(WATTLEAF_EXPORTS)
#define WATTLEAF_API __declspec(dllexport)
#else
#define WATTLEAF_API
#endif
