# Cross-compiling for 32-bit Windows (the shipped program) with MinGW-w64.
# The win32 thread model: the posix one links winpthreads, which imports kernel32 functions that
# Windows 95 lacks (vectored exception handlers, TryEnterCriticalSection, GetTickCount64, ...).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(TOOLCHAIN_PREFIX i686-w64-mingw32)
set(CMAKE_C_COMPILER ${TOOLCHAIN_PREFIX}-gcc-win32)
set(CMAKE_CXX_COMPILER ${TOOLCHAIN_PREFIX}-g++-win32)
set(CMAKE_RC_COMPILER ${TOOLCHAIN_PREFIX}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${TOOLCHAIN_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
