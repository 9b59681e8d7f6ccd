# Installs a build tree into a fresh prefix and checks what lands there; then installs only the
# components "Runtime" and "Development" into "<prefix>-contract" and checks that the contract
# with the host stands without the reference implementations. That a host can build and run
# against the full prefix is checked by the host project next to this script.
#
#   cmake -D BUILD_DIR=<build tree> -D PREFIX=<prefix> [-D SUFFIX=6] -P Install.cmake
#
# SUFFIX is what the installed names of the build's Qt major carry: none for Qt 5, "6" for Qt 6.

cmake_minimum_required(VERSION 3.16)

foreach(variable IN ITEMS BUILD_DIR PREFIX)
    if(NOT ${variable})
        message(FATAL_ERROR "${variable} is not set")
    endif()
endforeach()

# install_into(<prefix> [<component>...]): the build tree, or only the components, into <prefix>.
function(install_into prefix)
    file(REMOVE_RECURSE "${prefix}")
    set(runs ${ARGN})
    if(NOT runs)
        set(runs all)
    endif()
    foreach(component IN LISTS runs)
        set(options "")
        if(NOT component STREQUAL "all")
            set(options --component ${component})
        endif()
        execute_process(
            COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}" ${options}
            RESULT_VARIABLE result
            OUTPUT_VARIABLE output
            ERROR_VARIABLE output)
        if(NOT result EQUAL 0)
            message(FATAL_ERROR "cmake --install ${options} failed (${result}):\n${output}")
        endif()
    endforeach()
endfunction()

# included_headers(<include root> <header> <variable>): the quoted includes of <header>, each
# as a path below <include root> when it is there (next to the header or from the root), else
# as written.
function(included_headers root header variable)
    get_filename_component(folder "${header}" DIRECTORY)
    file(STRINGS "${root}/${header}" lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
    set(found "")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"]+)\".*" "\\1" name "${line}")
        if(folder AND EXISTS "${root}/${folder}/${name}")
            list(APPEND found "${folder}/${name}")
        else()
            list(APPEND found "${name}")
        endif()
    endforeach()
    set(${variable} ${found} PARENT_SCOPE)
endfunction()

set(package "KtTracking${SUFFIX}")
install_into("${PREFIX}")

file(GLOB_RECURSE installed LIST_DIRECTORIES false RELATIVE "${PREFIX}" "${PREFIX}/*")
list(SORT installed)
list(JOIN installed "\n  " listing)
message(STATUS "Installed:\n  ${listing}")

set(failures "")

# Every file lies below a folder, or has a name, that carries the Qt major, so that the other
# major's build installs beside it: the Qt 5 names have no digit where the Qt 6 names have "6".
set(layout
    "^include/${package}/"
    "^share/${package}/"
    "^lib[^/]*/cmake/${package}/"
    "^lib[^/]*/libKt[A-Za-z]+${SUFFIX}\\.so(\\.[0-9]+)*$"
    "^bin/kttrack${SUFFIX}$")
list(JOIN layout "|" layout)
foreach(file IN LISTS installed)
    if(NOT file MATCHES "${layout}")
        string(APPEND failures "installed under a name without the Qt major: ${file}\n")
    endif()
endforeach()

# What must stay in the build tree: test and benchmark programs, build tools, internals.
set(forbidden
    "Test"
    "Bench"
    "SampleChain"
    "KtSchemaRules"
    "Rules\\.inc$"
    "\\.cxx$"
    "\\.cpp$"
    "_p\\.h$"
    "^include/${package}/Tracking/Config/DocumentReader"
    "^include/${package}/Analytics/(RotatingAppendFile|EventLineFormat|FileDescriptor)\\.h$")
foreach(pattern IN LISTS forbidden)
    set(matches ${installed})
    list(FILTER matches INCLUDE REGEX "${pattern}")
    if(matches)
        string(APPEND failures "installed but internal (${pattern}): ${matches}\n")
    endif()
endforeach()

# The library's installed headers are exactly those reached from its umbrella header: any other
# one is internal. And every quoted include of an installed header is installed.
set(include_root "${PREFIX}/include/${package}")
set(reached "")
set(queue "Tracking/Tracking.h")
while(queue)
    list(POP_FRONT queue header)
    if(header IN_LIST reached)
        continue()
    endif()
    if(NOT EXISTS "${include_root}/${header}")
        string(APPEND failures "included but not installed: ${header}\n")
        continue()
    endif()
    list(APPEND reached "${header}")
    included_headers("${include_root}" "${header}" included)
    list(APPEND queue ${included})
endwhile()
file(GLOB_RECURSE library_headers RELATIVE "${include_root}" "${include_root}/Tracking/*")
foreach(header IN LISTS library_headers)
    if(NOT header IN_LIST reached)
        string(APPEND failures "installed but not reached from Tracking/Tracking.h: ${header}\n")
    endif()
endforeach()

# glog is a private dependency: no installed header may need it.
file(GLOB_RECURSE headers "${PREFIX}/include/*")
foreach(header IN LISTS headers)
    file(STRINGS "${header}" glog_lines REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]glog/")
    if(glog_lines)
        string(APPEND failures "${header} includes glog: ${glog_lines}\n")
    endif()
endforeach()

# The installed libraries find each other wherever the prefix is moved.
find_program(READELF readelf)
if(READELF)
    file(GLOB libraries "${PREFIX}/lib*/libKtTracking${SUFFIX}.so.*.*.*")
    if(NOT libraries)
        string(APPEND failures "no libKtTracking${SUFFIX}.so.X.Y.Z installed\n")
    endif()
    foreach(library IN LISTS libraries)
        execute_process(COMMAND "${READELF}" -d "${library}" OUTPUT_VARIABLE dynamic)
        if(NOT dynamic MATCHES "\\(SONAME\\)[^\n]*libKtTracking${SUFFIX}\\.so\\.[0-9]")
            string(APPEND failures "${library}: no versioned SONAME\n")
        endif()
        if(NOT dynamic MATCHES "\\((RUNPATH|RPATH)\\)[^\n]*\\$ORIGIN")
            string(APPEND failures "${library}: no \$ORIGIN in its run path\n")
        endif()
        if(dynamic MATCHES "${BUILD_DIR}")
            string(APPEND failures "${library}: still refers to the build tree\n")
        endif()
    endforeach()
endif()

# The contract alone: no reference implementation, and every quoted include of its headers (and
# of the library's) is there without them.
set(contract "${PREFIX}-contract")
install_into("${contract}" Runtime Development)
file(GLOB_RECURSE contract_files LIST_DIRECTORIES false RELATIVE "${contract}" "${contract}/*")
set(reference_files ${contract_files})
list(FILTER reference_files INCLUDE REGEX "HostReference|Reference/")
if(reference_files)
    string(APPEND failures "the contract's components hold ${reference_files}\n")
endif()
set(contract_root "${contract}/include/${package}")
file(GLOB_RECURSE contract_headers RELATIVE "${contract_root}" "${contract_root}/*")
foreach(header IN LISTS contract_headers)
    included_headers("${contract_root}" "${header}" included)
    foreach(name IN LISTS included)
        if(NOT EXISTS "${contract_root}/${name}")
            string(APPEND failures "${header} needs ${name}, which the contract does not hold\n")
        endif()
    endforeach()
endforeach()
foreach(expected IN ITEMS "^include/${package}/App/LookAndFeelManager\\.h$"
                          "/cmake/${package}/${package}Config\\.cmake$"
                          "/cmake/${package}/KtHostReferenceTargets\\.cmake$"
                          "/libKtHostReference${SUFFIX}\\.so")
    set(matches ${installed})
    list(FILTER matches INCLUDE REGEX "${expected}")
    if(NOT matches)
        string(APPEND failures "the full installation has nothing like ${expected}\n")
    endif()
endforeach()
file(REMOVE_RECURSE "${contract}")

if(failures)
    message(FATAL_ERROR "The installed tree is not right:\n${failures}")
endif()
