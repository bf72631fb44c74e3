// The library's objects call the log through the pointers of an import table, since they are
// compiled for Logging.dll. These are the pointers for Microsoft's linker, which otherwise makes
// them itself and warns of each. Elsewhere: own_log_mingw.cpp.

// Defines what the header otherwise declares as imported.
#define GANTRY_LOGGING_EXPORTS
#include "logging/trace_logger.h"

namespace {

using Zq::Gantry::Logging::LoggingData;
using Zq::Gantry::Logging::LogManager;
using Zq::Gantry::Logging::TraceLogger;

using PlainCall = void (TraceLogger::*)(const wchar_t*, ...);
using StructuredCall = void (TraceLogger::*)(LoggingData, ...);
static_assert(sizeof(PlainCall) == sizeof(void*), "an address, as in an import table");

}  // namespace

extern "C" {

extern const PlainCall wattleaf_own_info = &TraceLogger::LogInfo;
extern const StructuredCall wattleaf_own_info_data = &TraceLogger::LogInfo;
extern const PlainCall wattleaf_own_warning = &TraceLogger::LogWarning;
extern const StructuredCall wattleaf_own_warning_data = &TraceLogger::LogWarning;
extern const PlainCall wattleaf_own_error = &TraceLogger::LogError;
extern const StructuredCall wattleaf_own_error_data = &TraceLogger::LogError;
extern TraceLogger* (*const wattleaf_own_logger)() = &LogManager::GetLogger;

}  // extern "C"

// The decorated name of each pointer, and what stands for it.
#pragma comment( \
    linker,      \
    "/alternatename:__imp_?LogInfo@TraceLogger@Logging@Gantry@Zq@@QEAAXPEB_WZZ=wattleaf_own_info")
#pragma comment(linker,                                                         \
                "/alternatename:__imp_?LogInfo@TraceLogger@Logging@Gantry@Zq@@" \
                "QEAAXULoggingData@234@ZZ=wattleaf_own_info_data")
#pragma comment( \
    linker,      \
    "/alternatename:__imp_?LogWarning@TraceLogger@Logging@Gantry@Zq@@QEAAXPEB_WZZ=wattleaf_own_warning")
#pragma comment(linker,                                                            \
                "/alternatename:__imp_?LogWarning@TraceLogger@Logging@Gantry@Zq@@" \
                "QEAAXULoggingData@234@ZZ=wattleaf_own_warning_data")
#pragma comment( \
    linker,      \
    "/alternatename:__imp_?LogError@TraceLogger@Logging@Gantry@Zq@@QEAAXPEB_WZZ=wattleaf_own_error")
#pragma comment(linker,                                                          \
                "/alternatename:__imp_?LogError@TraceLogger@Logging@Gantry@Zq@@" \
                "QEAAXULoggingData@234@ZZ=wattleaf_own_error_data")
#pragma comment(linker,                                                          \
                "/alternatename:__imp_?GetLogger@LogManager@Logging@Gantry@Zq@@" \
                "SAPEAVTraceLogger@234@XZ=wattleaf_own_logger")
