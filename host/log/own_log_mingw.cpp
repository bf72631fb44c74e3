// The library's objects call the log through the pointers of an import table, since they are
// compiled for Logging.dll. Microsoft's linker makes such pointers itself for functions that the
// program defines (own_log.cpp); the linker of mingw does not.
__asm__(
    ".section .rdata\n"
    ".balign 8\n"
    ".globl __imp__ZN2Zq6Gantry7Logging11TraceLogger7LogInfoEPKwz\n"
    "__imp__ZN2Zq6Gantry7Logging11TraceLogger7LogInfoEPKwz: .quad "
    "_ZN2Zq6Gantry7Logging11TraceLogger7LogInfoEPKwz\n"
    ".globl __imp__ZN2Zq6Gantry7Logging11TraceLogger7LogInfoENS1_11LoggingDataEz\n"
    "__imp__ZN2Zq6Gantry7Logging11TraceLogger7LogInfoENS1_11LoggingDataEz: .quad "
    "_ZN2Zq6Gantry7Logging11TraceLogger7LogInfoENS1_11LoggingDataEz\n"
    ".globl __imp__ZN2Zq6Gantry7Logging11TraceLogger10LogWarningEPKwz\n"
    "__imp__ZN2Zq6Gantry7Logging11TraceLogger10LogWarningEPKwz: .quad "
    "_ZN2Zq6Gantry7Logging11TraceLogger10LogWarningEPKwz\n"
    ".globl __imp__ZN2Zq6Gantry7Logging11TraceLogger10LogWarningENS1_11LoggingDataEz\n"
    "__imp__ZN2Zq6Gantry7Logging11TraceLogger10LogWarningENS1_11LoggingDataEz: .quad "
    "_ZN2Zq6Gantry7Logging11TraceLogger10LogWarningENS1_11LoggingDataEz\n"
    ".globl __imp__ZN2Zq6Gantry7Logging11TraceLogger8LogErrorEPKwz\n"
    "__imp__ZN2Zq6Gantry7Logging11TraceLogger8LogErrorEPKwz: .quad "
    "_ZN2Zq6Gantry7Logging11TraceLogger8LogErrorEPKwz\n"
    ".globl __imp__ZN2Zq6Gantry7Logging11TraceLogger8LogErrorENS1_11LoggingDataEz\n"
    "__imp__ZN2Zq6Gantry7Logging11TraceLogger8LogErrorENS1_11LoggingDataEz: .quad "
    "_ZN2Zq6Gantry7Logging11TraceLogger8LogErrorENS1_11LoggingDataEz\n"
    ".globl __imp__ZN2Zq6Gantry7Logging10LogManager9GetLoggerEv\n"
    "__imp__ZN2Zq6Gantry7Logging10LogManager9GetLoggerEv: .quad "
    "_ZN2Zq6Gantry7Logging10LogManager9GetLoggerEv\n"
    ".text\n");
