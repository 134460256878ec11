# Debian's cross compiler for 64-bit Windows. Its libraries are linked into each program and library, so that none needs
# one of the compiler's beside it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# tools/windows/packages.sh builds them.
set(packages "${CMAKE_CURRENT_LIST_DIR}/../build/windows-packages")
cmake_path(NORMAL_PATH packages)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 "${packages}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${packages}/lib/pkgconfig")

# Windows 8: processor groups, and waiting for addresses.
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0602 -DUNICODE -D_UNICODE")
set(CMAKE_C_FLAGS_INIT "-D_WIN32_WINNT=0x0602 -DUNICODE -D_UNICODE")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/windows/wine")
