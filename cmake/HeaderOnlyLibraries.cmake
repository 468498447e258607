# The third-party libraries, all used header-only so that they cross-compile.
#
# Debian installs them into the system's include folder, which a cross-compiler must not see (the
# C library's headers are there too). So each gets a link of its own in a folder of the build.

set(header_only_root "${CMAKE_BINARY_DIR}/third_party_headers")
file(MAKE_DIRECTORY "${header_only_root}")

function(mrlr_header_only name folder package)
    set(source "/usr/include/${folder}")
    if(NOT EXISTS "${source}")
        message(FATAL_ERROR "${folder}: no headers in ${source}; install Debian's ${package}")
    endif()
    file(CREATE_LINK "${source}" "${header_only_root}/${folder}" SYMBOLIC)
    add_library(${name} INTERFACE)
    target_include_directories(${name} SYSTEM INTERFACE "${header_only_root}")
endfunction()

mrlr_header_only(third_party_json nlohmann nlohmann-json3-dev)
mrlr_header_only(third_party_cli11 CLI libcli11-dev)
mrlr_header_only(third_party_mustache kainjow libkainjow-mustache-dev)
mrlr_header_only(third_party_toml toml++ libtomlplusplus-dev)
mrlr_header_only(third_party_fmt fmt libfmt-dev)
mrlr_header_only(third_party_spdlog spdlog libspdlog-dev)
mrlr_header_only(third_party_utf8 utf8cpp libutfcpp-dev)
target_compile_definitions(third_party_fmt INTERFACE FMT_HEADER_ONLY)
target_compile_definitions(third_party_spdlog INTERFACE
    SPDLOG_HEADER_ONLY SPDLOG_FMT_EXTERNAL $<$<BOOL:${WIN32}>:SPDLOG_WCHAR_FILENAMES>)
target_link_libraries(third_party_spdlog INTERFACE third_party_fmt Threads::Threads)
