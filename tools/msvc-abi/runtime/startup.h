#pragma once

// What the entry points of programs and of libraries share.

using Function = void(__cdecl*)();
using CheckedFunction = int(__cdecl*)();

extern "C" {
__declspec(dllimport) void __cdecl _initterm(Function* begin, Function* end);
__declspec(dllimport) int __cdecl _initterm_e(CheckedFunction* begin, CheckedFunction* end);
}

namespace MsvcAbi {

/// The initialisers of C, which may fail, and the constructors of C++. False: a C initialiser
/// failed.
bool RunInitializers();
/// The terminators that the linker collected, and the names that type_info made.
void RunTerminators();
/// Runs a program from its initialisers to its end. `takeArguments` prepares what `callMain` passes
/// on.
[[noreturn]] void RunProgram(void (*takeArguments)(), int (*callMain)());
/// The constructors of this thread's thread_local objects.
void ConstructThreadLocals();
/// Frees the texts of type_info::name().
void FreeTypeNames();

}  // namespace MsvcAbi
