# Compiler and linker settings that every target of the project shares.

set(MRLR_SANITIZERS "" CACHE STRING "Sanitizers for -fsanitize=, comma-separated; empty for none")
option(MRLR_TRAP_UNDEFINED "Windows: end the program on undefined behaviour; for tests" OFF)
option(MRLR_FUZZERS "Build the fuzzers too; needs clang and a fuzzer among the sanitizers" OFF)
option(MRLR_HARDENED "Linux: the mitigations of Debian's own programs, and no symbols" OFF)
option(MRLR_MUTANTS "Compile each source that tools/mutants changes by itself" OFF)
option(MRLR_WERROR "Treat warnings as errors" ON)

# Release with assertions of the standard library: a diagnostic must stop at a broken invariant
# rather than report a wrong number.
set(MRLR_OPTIMIZATION "-O2" CACHE STRING "The optimization of a release build")
set(CMAKE_CXX_FLAGS_RELEASE "${MRLR_OPTIMIZATION} -DNDEBUG")
add_compile_definitions(_GLIBCXX_ASSERTIONS)

# __FILE__ becomes the path inside the repository, the same on every machine: events carry it to
# the host as the place that raised them.
add_compile_options("-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=")

# mrlr_file_from_build(): the same for the sources of the calling folder when a compiler cache hands
# the compiler paths that begin at the build folder.
function(mrlr_file_from_build)
    cmake_path(RELATIVE_PATH CMAKE_SOURCE_DIR
        BASE_DIRECTORY "${CMAKE_BINARY_DIR}" OUTPUT_VARIABLE source_from_build)
    add_compile_options("-fmacro-prefix-map=${source_from_build}/=")
endfunction()

if(WIN32)
    add_compile_definitions(
        UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00 WINVER=0x0A00
        NTDDI_VERSION=0x0A000000)
    add_compile_options(-ffunction-sections -fdata-sections -fstack-protector-strong)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Template-heavy tests pass the section limit of the plain object format; Clang takes the
        # larger one by itself where it is needed.
        add_compile_options(-Wa,-mbig-obj)
    endif()
    # No MinGW runtime DLL beside the executable, no build time inside it.
    add_link_options(
        -static -fstack-protector-strong -Wl,--gc-sections -Wl,--no-insert-timestamp
        -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va -Wl,--tsaware)
    if(MRLR_TRAP_UNDEFINED)
        # There is no sanitizer run-time library for this system: the program stops without a
        # message. Enumerations are not checked, because drivers report values that the system's
        # headers do not name.
        add_compile_options(
            -fsanitize=undefined -fno-sanitize=enum -fsanitize-undefined-trap-on-error)
    endif()
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
        add_link_options(-s)
    endif()
else()
    add_compile_options(-fno-omit-frame-pointer)
    if(MRLR_HARDENED)
        set(CMAKE_POSITION_INDEPENDENT_CODE ON)
        add_compile_options(
            -ffunction-sections -fdata-sections -fstack-protector-strong -fstack-clash-protection
            -fcf-protection -Wformat -Werror=format-security -D_FORTIFY_SOURCE=2)
        add_link_options(-pie -Wl,-z,relro -Wl,-z,now -Wl,--gc-sections -Wl,--as-needed -s)
    endif()
    if(MRLR_SANITIZERS)
        add_compile_options("-fsanitize=${MRLR_SANITIZERS}" -fno-sanitize-recover=all)
        add_link_options("-fsanitize=${MRLR_SANITIZERS}")
    endif()
endif()

# A compiler cache, where one is installed, makes a second build of the same sources cheap.
find_program(MRLR_CCACHE ccache)
mark_as_advanced(MRLR_CCACHE)
if(MRLR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${MRLR_CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER "${MRLR_CCACHE}")
endif()

find_package(Threads REQUIRED)

# The project's own code is compiled with these; third-party sources are not.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${MRLR_WERROR}>:-Werror>)

# GCC takes the sources of a batch for headers, whose classes must have no member of an unnamed
# namespace: it would be another type in each source that includes them. Nothing includes these twice.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-subobject-linkage)
endif()

# mrlr_mutated(<folder>...): tools/mutants changes the sources in these folders, which targets of the
# calling folder compile.
function(mrlr_mutated)
    if(MRLR_MUTANTS)
        list(TRANSFORM ARGN APPEND "/*.cpp" OUTPUT_VARIABLE patterns)
        file(GLOB sources ${patterns})
        set_source_files_properties(${sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
endfunction()

# mrlr_library(<name> INCLUDE <root> SOURCES <files> [LINKS <targets>] [PRIVATE_LINKS <targets>])
# declares a static library whose public headers are found below <root>.
function(mrlr_library name)
    cmake_parse_arguments(ARG "" "INCLUDE" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${ARG_INCLUDE})
    target_link_libraries(${name}
        PUBLIC ${ARG_LINKS}
        PRIVATE project_warnings ${ARG_PRIVATE_LINKS})
endfunction()
