# What each library shows to the code that links it.
#
# The sources include each other as "tessaly/namemap.h" and "veldra/records/sqlinfo.h", relative
# to src/. A library's own sources see all of src/; the code that links it (the apps, other
# libraries, an installed consumer) sees only its public headers, through one include directory:
#   build tree   <build>/include/veldra/<path>   a symbolic link to src/<path>
#   install      <prefix>/include/veldra/<path>  the header itself
# A public header that includes a private one therefore fails to compile in the apps already,
# not first in a consumer of the installed package.

include(GenerateExportHeader)

set(VELDRA_PUBLIC_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include/veldra)
set(VELDRA_INTERNAL_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include/internal)

# A link, not a copy: the header exists once, and a build never sees a stale one.
function(_veldra_link_header root path)
    get_filename_component(folder ${root}/${path} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${path} ${root}/${path} SYMBOLIC)
    set_property(GLOBAL APPEND PROPERTY VELDRA_HEADER_LINKS ${root}/${path})
endfunction()

# Path of the current source folder below src/: "tessaly", "veldra".
function(_veldra_source_prefix out)
    file(RELATIVE_PATH prefix ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
    set(${out} ${prefix} PARENT_SCOPE)
endfunction()

# veldra_public_headers(<target> ALIAS <Name> EXPORT_HEADER <path> HEADERS <header>...)
#   A shared library that is installed: the alias Veldra::<Name> (also its name in the installed
#   CMake package), the export header <path> (below include/veldra, defining <BASE>_EXPORT from
#   the target name), and HEADERS (relative to the current source folder) as its public API.
function(veldra_public_headers target)
    cmake_parse_arguments(ARG "" "ALIAS;EXPORT_HEADER" "HEADERS" ${ARGN})
    _veldra_source_prefix(prefix)

    add_library(Veldra::${ARG_ALIAS} ALIAS ${target})
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${ARG_ALIAS})

    string(TOUPPER ${target} base)
    generate_export_header(${target} BASE_NAME ${base} EXPORT_FILE_NAME ${VELDRA_PUBLIC_INCLUDE_DIR}/${ARG_EXPORT_HEADER})
    set_property(GLOBAL APPEND PROPERTY VELDRA_HEADER_LINKS ${VELDRA_PUBLIC_INCLUDE_DIR}/${ARG_EXPORT_HEADER})

    set(public)
    foreach(header IN LISTS ARG_HEADERS)
        _veldra_link_header(${VELDRA_PUBLIC_INCLUDE_DIR} ${prefix}/${header})
        list(APPEND public ${prefix}/${header})
    endforeach()
    # Read by packaging/ to install exactly these, each below include/veldra/.
    set_target_properties(${target} PROPERTIES
        VELDRA_PUBLIC_HEADERS "${public}"
        VELDRA_EXPORT_HEADER ${ARG_EXPORT_HEADER})

    target_include_directories(${target}
        PUBLIC $<BUILD_INTERFACE:${VELDRA_PUBLIC_INCLUDE_DIR}>
        PRIVATE ${PROJECT_SOURCE_DIR}/src)
endfunction()

# veldra_internal_headers(<target> ALIAS <Name>)
#   A library of this build only (never installed): every header of the current source folder
#   is shown to the code that links it, and nothing else of src/.
function(veldra_internal_headers target)
    cmake_parse_arguments(ARG "" "ALIAS" "" ${ARGN})
    _veldra_source_prefix(prefix)
    add_library(Veldra::${ARG_ALIAS} ALIAS ${target})
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    foreach(header IN LISTS headers)
        _veldra_link_header(${VELDRA_INTERNAL_INCLUDE_DIR} ${prefix}/${header})
    endforeach()
    target_include_directories(${target} PUBLIC ${VELDRA_INTERNAL_INCLUDE_DIR} PRIVATE ${PROJECT_SOURCE_DIR}/src)
endfunction()

# Removes links no library declares any more, so a header taken out of the public
# API stops compiling in the code that still includes it.
function(veldra_prune_header_links)
    get_property(kept GLOBAL PROPERTY VELDRA_HEADER_LINKS)
    file(GLOB_RECURSE present ${VELDRA_PUBLIC_INCLUDE_DIR}/* ${VELDRA_INTERNAL_INCLUDE_DIR}/*)
    foreach(file IN LISTS present)
        if(NOT file IN_LIST kept)
            file(REMOVE ${file})
        endif()
    endforeach()
endfunction()
