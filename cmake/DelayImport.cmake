# DLLs that a program loads when it first calls one of their functions, and not when it starts.
#
# For DLLs outside of Windows' list of KnownDLLs: before the first call the program limits the
# search to the system directory, or the manifest names the version.
# The tool chain has the delay loader but no such import libraries, so they are made here from the
# names in its ordinary ones.

# mrlr_delay_import(<target> <dll>...) links <target>, and every target that links it, with such an
# import library for each DLL. Names are in lower case and without ending.
# With Clang, whose linker does not understand libraries of that kind, they are loaded as usual:
# that build is for tests.
function(mrlr_delay_import target)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_link_libraries(${target} PUBLIC ${ARGN})
        return()
    endif()
    foreach(name ${ARGN})
        set(library "delayed_${name}")
        if(NOT TARGET ${library})
            mrlr_delay_import_library(${library} ${name})
        endif()
        target_link_libraries(${target} PUBLIC ${library})
    endforeach()
endfunction()

function(mrlr_delay_import_library library name)
    find_library(import_library_of_${name} NAMES lib${name}.a REQUIRED)
    mark_as_advanced(import_library_of_${name})
    execute_process(COMMAND "${CMAKE_NM}" --defined-only "${import_library_of_${name}}"
        OUTPUT_VARIABLE symbols ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL " T [A-Za-z0-9_]+\n" functions "${symbols}")
    list(TRANSFORM functions REPLACE " T ([A-Za-z0-9_]+)\n" "\\1")
    list(SORT functions)
    list(JOIN functions "\n" functions)
    # A folder each: the tool leaves its temporary files where it runs.
    set(folder "${CMAKE_BINARY_DIR}/delay_imports/${library}")
    file(CONFIGURE OUTPUT "${folder}/${name}.def" @ONLY CONTENT
        "LIBRARY \"@name@.dll\"\nEXPORTS\n@functions@\n")
    set(archive "${folder}/lib${library}.a")
    add_custom_command(
        OUTPUT "${archive}"
        COMMAND "${CMAKE_DLLTOOL}" --machine i386:x86-64 --kill-at
            --input-def "${name}.def" --dllname "${name}.dll" --output-delaylib "lib${library}.a"
        DEPENDS "${folder}/${name}.def"
        WORKING_DIRECTORY "${folder}"
        COMMENT "Making the delay-import library of ${name}.dll"
        VERBATIM)
    add_custom_target(${library}_archive DEPENDS "${archive}")
    add_library(${library} STATIC IMPORTED GLOBAL)
    set_target_properties(${library} PROPERTIES IMPORTED_LOCATION "${archive}")
    add_dependencies(${library} ${library}_archive)
endfunction()
