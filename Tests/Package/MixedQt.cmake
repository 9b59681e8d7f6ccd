# Configures the host project Mixed/, which uses Qt of one major and the package built with the
# other, and checks that CMake refuses it with the reason, so that no program that would load
# both Qt libraries is ever built. Prints "KT_SKIP" when the other Qt is not installed.
#
#   cmake -D PREFIX=<prefix> -D PACKAGE=<KtTracking|KtTracking6> -D OTHER_QT=<Qt6|Qt5>
#         -D ORDER=<qt-first|package-first> -D BINARY_DIR=<dir> -P MixedQt.cmake

cmake_minimum_required(VERSION 3.16)

foreach(variable IN ITEMS PREFIX PACKAGE OTHER_QT ORDER BINARY_DIR)
    if(NOT ${variable})
        message(FATAL_ERROR "${variable} is not set")
    endif()
endforeach()

file(REMOVE_RECURSE "${BINARY_DIR}")
execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/Mixed" -B "${BINARY_DIR}"
        "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DKT_PACKAGE=${PACKAGE}" "-DKT_OTHER_QT=${OTHER_QT}"
        "-DKT_ORDER=${ORDER}"
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
message("${output}")
if(output MATCHES "KT_SKIP")
    return()
endif()

if(ORDER STREQUAL "qt-first")
    # The package's own reason.
    set(reason "${PACKAGE} is built with Qt[56], but this project uses ${OTHER_QT} already")
else()
    # CMake's: Qt's targets carry their major as a property that must agree in one program.
    set(reason "QT_MAJOR_VERSION")
endif()
if(result EQUAL 0)
    message(FATAL_ERROR "A project with ${OTHER_QT} and ${PACKAGE} configured")
endif()
if(NOT output MATCHES "${reason}")
    message(FATAL_ERROR "The project was refused, but not for mixing Qt majors ('${reason}')")
endif()
