# Run by CTest as install_tree; see CMakeLists.txt beside it.
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})

function(must_run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed (${status}):\n${out}\n${err}")
    endif()
    set(output "${out}" PARENT_SCOPE)
endfunction()

must_run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# What no check below reads already.
set(expected
    bin/veldra-studio share/applications/veldra-studio.desktop share/mime/packages/veldra.xml
    ${LIBDIR}/libVeldra.so ${LIBDIR}/libVeldra.so.${VERSION_MAJOR} ${LIBDIR}/libtessaly.so ${LIBDIR}/libtessaly.so.${VERSION_MAJOR}
    ${LIBDIR}/libVeldraUi.so.${VERSION_MAJOR} ${LIBDIR}/libtessalywidgets.so.${VERSION_MAJOR}
    share/veldra/samples/sales-by-region.xml share/veldra/samples/sample.sql share/man/man1/veldra-studio.1.gz
    share/veldra/translations/veldra_ja.qm
    share/doc/veldra/README.md share/doc/veldra/cli.md share/doc/veldra/protocol.md
    share/doc/veldra/copyright share/doc/veldra/changelog.gz share/doc/veldra-dev/copyright)
foreach(file IN LISTS expected)
    if(NOT EXISTS ${prefix}/${file})
        message(FATAL_ERROR "missing from the install tree: ${file}")
    endif()
endforeach()

# The tool and the studio are the package's only programs: no tests, no benchmarks.
file(GLOB programs RELATIVE ${prefix}/bin ${prefix}/bin/*)
list(SORT programs)
if(NOT programs STREQUAL "veldra;veldra-studio")
    message(FATAL_ERROR "bin/ holds ${programs}, not just veldra and veldra-studio")
endif()

# Sonames carry the major version; RUNPATHs are relative to the installed files.
must_run(readelf -d ${prefix}/${LIBDIR}/libVeldra.so.${VERSION})
if(NOT output MATCHES "SONAME[^\n]*\\[libVeldra\\.so\\.${VERSION_MAJOR}\\]")
    message(FATAL_ERROR "libVeldra's soname is not libVeldra.so.${VERSION_MAJOR}:\n${output}")
endif()
must_run(readelf -d ${prefix}/bin/veldra)
if(NOT output MATCHES "RUNPATH[^\n]*\\[\\$ORIGIN/\\.\\./${LIBDIR}\\]")
    message(FATAL_ERROR "veldra's RUNPATH is not $ORIGIN/../${LIBDIR}:\n${output}")
endif()

# The installed tool runs from its own libraries on its own sample database.
file(MAKE_DIRECTORY ${WORK_DIR}/config)
must_run(${CMAKE_COMMAND} -E env --unset=VELDRA_SAMPLE_DB --unset=LD_LIBRARY_PATH VELDRA_LANG=en
    XDG_CONFIG_HOME=${WORK_DIR}/config
    ${prefix}/bin/veldra run ${prefix}/share/veldra/samples/sales-by-region.component.xml --format csv)
if(NOT output MATCHES "^Region,Segment,Orders,Revenue" OR NOT output MATCHES "North East,Small business,")
    message(FATAL_ERROR "the installed veldra printed:\n${output}")
endif()
# It speaks Japanese from its own installed translation.
must_run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH VELDRA_LANG=ja ${prefix}/bin/veldra --help)
if(NOT output MATCHES "^使い方：veldra")
    message(FATAL_ERROR "the installed veldra does not speak Japanese:\n${output}")
endif()

# Only the public headers and the export headers are installed, each where the sources include
# it from, and the package's one include directory is include/veldra.
file(GLOB_RECURSE installed RELATIVE ${prefix}/include/veldra ${prefix}/include/*)
file(STRINGS ${PUBLIC_HEADERS} declared)
list(SORT installed)
list(SORT declared)
if(NOT installed STREQUAL declared)
    message(FATAL_ERROR "installed headers:\n${installed}\nare not the declared public ones:\n${declared}")
endif()
file(STRINGS ${prefix}/${LIBDIR}/cmake/Veldra/VeldraTargets.cmake include_dirs REGEX "INTERFACE_INCLUDE_DIRECTORIES")
list(FILTER include_dirs EXCLUDE REGEX "INTERFACE_INCLUDE_DIRECTORIES \"\\\${_IMPORT_PREFIX}/include/veldra\"$")
if(include_dirs)
    message(FATAL_ERROR "an installed target shows more than include/veldra: ${include_dirs}")
endif()

# The manual pages name the data where this prefix put it.
execute_process(COMMAND gzip -dc ${prefix}/share/man/man1/veldra.1.gz OUTPUT_VARIABLE manual)
string(FIND "${manual}" ".I ${prefix}/share/veldra/samples/\n" at)
if(at LESS 0 OR manual MATCHES "@[A-Z_]+@")
    message(FATAL_ERROR "veldra.1 does not name ${prefix}/share/veldra/samples/, or keeps a placeholder")
endif()

# A project finds the package and builds against the installed public headers, every one of them
# in one source, and the libraries.
list(FILTER installed INCLUDE REGEX "\\.h$")
list(TRANSFORM installed REPLACE "(.+)" "#include \"\\1\"\n")
string(JOIN "" includes ${installed})
file(WRITE ${WORK_DIR}/consumer/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)
project(Consumer LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 17)
find_package(Veldra ${VERSION} REQUIRED)
add_executable(consumer main.cpp)
target_link_libraries(consumer PRIVATE Veldra::Veldra Veldra::VeldraUi)
")
file(WRITE ${WORK_DIR}/consumer/main.cpp "${includes}
int main()
{
    const bool widgets = QLatin1String(veldra::frmWizard::staticMetaObject.className()) == QLatin1String(\"veldra::frmWizard\");
    return widgets && veldra::SQLInfo().getTableNames().isEmpty() ? 0 : 1;
}
")
set(sanitize)
if(SANITIZE) # the installed libraries need the sanitizers' run time
    set(sanitize "-DCMAKE_CXX_FLAGS=-fsanitize=address,undefined" "-DCMAKE_EXE_LINKER_FLAGS=-fsanitize=address,undefined")
endif()
must_run(${CMAKE_COMMAND} -S ${WORK_DIR}/consumer -B ${WORK_DIR}/consumer/build -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${prefix} ${sanitize})
must_run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer/build)
must_run(${WORK_DIR}/consumer/build/consumer)
