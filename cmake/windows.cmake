# Builds for 64-bit Windows with Debian's cross compiler. VEXA_WINDOWS_LIBRARIES, a variable of the
# environment, is the folder where scripts/windows-libraries has put the libraries.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH $ENV{VEXA_WINDOWS_LIBRARIES} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One program without libraries beside it: each is linked in, with those that it needs itself.
set(CMAKE_CXX_FLAGS_INIT "-DZIP_STATIC -DPROJ_DLL=")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -wrapper ${CMAKE_CURRENT_LIST_DIR}/windows-linker")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${CMAKE_EXE_LINKER_FLAGS_INIT}")
find_program(VEXA_WINDOWS_AR llvm-ar)  # as much quicker where they are there
find_program(VEXA_WINDOWS_RANLIB llvm-ranlib)
if(VEXA_WINDOWS_AR AND VEXA_WINDOWS_RANLIB)
  set(CMAKE_AR ${VEXA_WINDOWS_AR} CACHE FILEPATH "")
  set(CMAKE_RANLIB ${VEXA_WINDOWS_RANLIB} CACHE FILEPATH "")
endif()
set(libraries $ENV{VEXA_WINDOWS_LIBRARIES}/lib)
set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a CACHE FILEPATH "")
set(LIBZIP_LIBRARY "${libraries}/libzip.a;${ZLIB_LIBRARY}" CACHE STRING "")
set(PROJ_LIBRARY "${libraries}/libproj.a;${libraries}/libsqlite3.a;ole32;shell32" CACHE STRING "")
set(SQLITE3_LIBRARY "${libraries}/libsqlite3.a" CACHE FILEPATH "")
