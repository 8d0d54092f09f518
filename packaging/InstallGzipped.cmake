# Run by `cmake --install` and cpack (see install_gzipped in CMakeLists.txt beside it): installs
# one file compressed with gzip -9n (no name, no time stamp: the same bytes on every build), as
# Debian wants manual pages and changelogs. With GZ_CONFIGURE, @VELDRA_DATADIR@ and
# @VELDRA_DOCDIR@ are filled in first from the prefix installed into now, which need not be the
# one the build was configured with (cpack installs into /usr).

function(prefixed out path)
    if(IS_ABSOLUTE "${path}")
        set(${out} "${path}" PARENT_SCOPE)
    else()
        set(${out} "${CMAKE_INSTALL_PREFIX}/${path}" PARENT_SCOPE)
    endif()
endfunction()

set(work "${GZ_WORK_DIR}/${GZ_NAME}")
if(GZ_CONFIGURE)
    prefixed(VELDRA_DATADIR "${GZ_DATADIR}")
    prefixed(VELDRA_DOCDIR "${GZ_DOCDIR}")
    set(PROJECT_VERSION "${GZ_VERSION}")
    configure_file("${GZ_SOURCE}" "${work}" @ONLY)
else()
    configure_file("${GZ_SOURCE}" "${work}" COPYONLY)
endif()

execute_process(COMMAND "${GZIP_PROGRAM}" -9nc "${work}" OUTPUT_FILE "${work}.gz" RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "gzip could not compress ${work} (${status})")
endif()

prefixed(destination "${GZ_DESTINATION}")
file(INSTALL DESTINATION "${destination}" TYPE FILE FILES "${work}.gz")
