# Installs a build tree into a fresh prefix and checks what lands there. That a host can build
# and run against it is checked by the host project next to this script.
#
#   cmake -D BUILD_DIR=<build tree> -D PREFIX=<prefix> -P Install.cmake

foreach(variable IN ITEMS BUILD_DIR PREFIX)
    if(NOT ${variable})
        message(FATAL_ERROR "${variable} is not set")
    endif()
endforeach()

file(REMOVE_RECURSE "${PREFIX}")
execute_process(
    COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}"
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cmake --install failed (${result}):\n${output}")
endif()

file(GLOB_RECURSE installed LIST_DIRECTORIES false RELATIVE "${PREFIX}" "${PREFIX}/*")
list(SORT installed)
list(JOIN installed "\n  " listing)
message(STATUS "Installed:\n  ${listing}")

set(failures "")

# What must stay in the build tree: test and benchmark programs, build tools, internals.
set(forbidden
    "Test"
    "Bench"
    "SampleChain"
    "KtSchemaRules"
    "Rules\\.inc$"
    "\\.cxx$"
    "\\.cpp$"
    "^include/KtTracking/Tracking/RuleDocument\\.h$"
    "^include/KtTracking/Tracking/Instances/"
    "^include/KtTracking/Tracking/Config/DocumentReader\\.h$")
foreach(pattern IN LISTS forbidden)
    set(matches ${installed})
    list(FILTER matches INCLUDE REGEX "${pattern}")
    if(matches)
        string(APPEND failures "installed but internal (${pattern}): ${matches}\n")
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
    file(GLOB libraries "${PREFIX}/lib*/libKtTracking.so.*.*.*")
    foreach(library IN LISTS libraries)
        execute_process(COMMAND "${READELF}" -d "${library}" OUTPUT_VARIABLE dynamic)
        if(NOT dynamic MATCHES "\\(SONAME\\)[^\n]*libKtTracking\\.so\\.[0-9]")
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

if(failures)
    message(FATAL_ERROR "The installed tree is not right:\n${failures}")
endif()
