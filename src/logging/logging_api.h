#pragma once

// The export macro of the host's Logging.dll: set by the side that builds that library.
#if defined(GANTRY_LOGGING_EXPORTS)
#define GANTRY_LOGGING_API __declspec(dllexport)
#else
#define GANTRY_LOGGING_API __declspec(dllimport)
#endif
