# Cross-builds for Windows x64 with the MinGW of Debian, its variant with C++ threads.
#
# MARVIK_WINDOWS_PREFIX names the folder that packaging/windows/build-dependencies prints.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(MARVIK_WINDOWS_PREFIX "$ENV{MARVIK_WINDOWS_PREFIX}" CACHE PATH
    "Qt and the other libraries for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MARVIK_WINDOWS_PREFIX)
if(NOT EXISTS "${MARVIK_WINDOWS_PREFIX}/complete")
    message(FATAL_ERROR "MARVIK_WINDOWS_PREFIX does not name a complete folder; use scripts/windows")
endif()

set(CMAKE_FIND_ROOT_PATH "${MARVIK_WINDOWS_PREFIX}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${MARVIK_WINDOWS_PREFIX}/lib/pkgconfig")

# Tests run under Wine, which finds the libraries in the folder and keeps its own files in the build's.
set(CMAKE_CROSSCOMPILING_EMULATOR
    ${CMAKE_CURRENT_LIST_DIR}/../packaging/windows/run-under-wine
    "${MARVIK_WINDOWS_PREFIX}" "${CMAKE_BINARY_DIR}/wine")
