# The vcpkg triplet of the windows-msvc preset: static libraries on the shared C runtime, and pugixml in
# wide-character mode, which its users have to be compiled with as well (cmake/Dependencies.cmake).
# Never run: no machine with Visual Studio was at hand.
set(VCPKG_TARGET_ARCHITECTURE x64)
set(VCPKG_CRT_LINKAGE dynamic)
set(VCPKG_LIBRARY_LINKAGE static)

# vcpkg wants both or neither. The other libraries do not know the definition.
set(VCPKG_CXX_FLAGS "-DPUGIXML_WCHAR_MODE")
set(VCPKG_C_FLAGS "-DPUGIXML_WCHAR_MODE")
