# The vcpkg triplet of the windows-msvc preset: static libraries with the shared C runtime, and pugixml in
# wide-character mode; code that uses pugixml is compiled in that mode too (cmake/Dependencies.cmake).
# Never run, because no machine with Visual Studio was available.
set(VCPKG_TARGET_ARCHITECTURE x64)
set(VCPKG_CRT_LINKAGE dynamic)
set(VCPKG_LIBRARY_LINKAGE static)

# vcpkg requires both or neither. The other libraries ignore the definition.
set(VCPKG_CXX_FLAGS "-DPUGIXML_WCHAR_MODE")
set(VCPKG_C_FLAGS "-DPUGIXML_WCHAR_MODE")
