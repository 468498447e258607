# The files that programs look up beside themselves.

# mrlr_shipped_resources(PROGRAMS <targets> TO <place> FOLDERS <folders>) copies folders of resources/
# to dist/<place> when one of the programs is built. With the executables they are the whole
# deliverable tree.
function(mrlr_shipped_resources)
    cmake_parse_arguments(ARG "" "TO" "PROGRAMS;FOLDERS" ${ARGN})
    set(place "${CMAKE_BINARY_DIR}/dist/${ARG_TO}")
    list(JOIN ARG_PROGRAMS "_" name)
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/resources_of_${name}.stamp")
    set(copies)
    foreach(folder IN LISTS ARG_FOLDERS)
        list(APPEND copies COMMAND "${CMAKE_COMMAND}" -E copy_directory
            "${CMAKE_SOURCE_DIR}/resources/${folder}" "${place}/${folder}")
    endforeach()
    file(GLOB_RECURSE resources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/*")
    add_custom_command(
        OUTPUT "${stamp}"
        COMMAND "${CMAKE_COMMAND}" -E rm -rf "${place}"
        ${copies}
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${resources}
        COMMENT "Copying the resources beside the executable"
        VERBATIM)
    add_custom_target(resources_of_${name} ALL DEPENDS "${stamp}")
    foreach(program IN LISTS ARG_PROGRAMS)
        add_dependencies(${program} resources_of_${name})
    endforeach()
endfunction()
