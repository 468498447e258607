# Compiles for Windows x64 with Clang, on the headers and libraries of the MinGW-w64 cross-compiler:
# a second opinion on the same sources, with its own warnings and checks.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# CMake would look for LLVM's, which are a package of their own.
set(CMAKE_AR x86_64-w64-mingw32-ar)
set(CMAKE_RANLIB x86_64-w64-mingw32-ranlib)
set(CMAKE_NM x86_64-w64-mingw32-nm)

# Clang does not know where Debian keeps the posix-thread variant of the C++ library. The folder
# comes from the cross-compiler itself, so it follows its version.
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-libgcc-file-name
    OUTPUT_VARIABLE gcc_library OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET gcc_library PARENT_PATH gcc_folder)
string(APPEND CMAKE_CXX_FLAGS_INIT " -stdlib++-isystem ${gcc_folder}/include/c++"
    " -stdlib++-isystem ${gcc_folder}/include/c++/x86_64-w64-mingw32"
    # As GCC compiled the library: thread-local variables through its run-time library, and types
    # compared out of line.
    " -femulated-tls -D__GXX_TYPEINFO_EQUALITY_INLINE=0")
# LLD, because GNU's linker warns of each object of Clang's that has a section in common with the
# C++ library.
string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " -fuse-ld=lld -L${gcc_folder}")
string(APPEND CMAKE_SHARED_LINKER_FLAGS_INIT " -fuse-ld=lld -L${gcc_folder}")
set(CMAKE_CXX_STANDARD_LIBRARIES_INIT "-lpthread")

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
