# The Qt 5 and the Qt 6 build in one prefix. PREFIX holds the installation of BUILD_DIR already
# (Install.cmake); this installs the build of the other major, PAIRED_BUILD_DIR, into it too and
# checks that the two installations share no file, so that neither replaced a file of the other,
# and that both packages are there. The host project then builds against this prefix.
#
#   cmake -D BUILD_DIR=<build tree> -D PAIRED_BUILD_DIR=<build tree> -D PREFIX=<prefix>
#         -P SideBySide.cmake

cmake_minimum_required(VERSION 3.16)

foreach(variable IN ITEMS BUILD_DIR PAIRED_BUILD_DIR PREFIX)
    if(NOT ${variable})
        message(FATAL_ERROR "${variable} is not set")
    endif()
endforeach()

# installed(<build tree> <variable>): the files its last installation wrote.
function(installed build variable)
    if(NOT EXISTS "${build}/install_manifest.txt")
        message(FATAL_ERROR "${build} has not been installed")
    endif()
    file(STRINGS "${build}/install_manifest.txt" files)
    set(${variable} ${files} PARENT_SCOPE)
endfunction()

installed("${BUILD_DIR}" own)
execute_process(
    COMMAND "${CMAKE_COMMAND}" --install "${PAIRED_BUILD_DIR}" --prefix "${PREFIX}"
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cmake --install ${PAIRED_BUILD_DIR} failed (${result}):\n${output}")
endif()
installed("${PAIRED_BUILD_DIR}" paired)

set(shared "")
foreach(file IN LISTS own)
    if(file IN_LIST paired)
        list(APPEND shared "${file}")
    endif()
endforeach()
if(shared)
    list(JOIN shared "\n  " shared)
    message(FATAL_ERROR "Both builds install\n  ${shared}")
endif()

foreach(package IN ITEMS KtTracking KtTracking6)
    file(GLOB config "${PREFIX}/lib*/cmake/${package}/${package}Config.cmake")
    if(NOT config)
        message(FATAL_ERROR "${PREFIX} holds no package ${package}")
    endif()
endforeach()
list(LENGTH own own_count)
list(LENGTH paired paired_count)
message(STATUS "${own_count} and ${paired_count} files, none of them installed by both")
