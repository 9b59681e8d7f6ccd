# The Qt major version of this build, 5 (the default) or 6, from one source.
#
#   KT_QT_MAJOR_VERSION   the choice (cache): 5 or 6
#   KT_QT                 "Qt5" or "Qt6": every CMake file of this project names Qt through it,
#                         find_package(${KT_QT} ...) and ${KT_QT}::Core, ${KT_QT}::Widgets, ...
#   KT_TRACKING_QT_VERSION   the oldest Qt of that major the code is written for
#   KT_QT_REGEXP          the target that holds QRegExp: ${KT_QT}::Core under Qt 5,
#                         Qt6::Core5Compat under Qt 6 (the id expressions keep QRegExp's syntax)
#   KT_TRACKING_NAME_SUFFIX  "" under Qt 5, "6" under Qt 6: what the installed names carry, so
#                         that both builds install into one prefix (see KtTrackingInstall.cmake)
#
# A component added later with kt_tracking_setup_target and kt_tracking_install_library gets the
# choice by naming Qt through ${KT_QT}; kt_tracking_check_qt_major() fails the configuration when
# a target of the project links the other major's Qt directly.

include_guard(GLOBAL)

set(KT_QT_MAJOR_VERSION 5 CACHE STRING "The Qt major version to build against: 5 or 6")
set_property(CACHE KT_QT_MAJOR_VERSION PROPERTY STRINGS 5 6)
if(KT_QT_MAJOR_VERSION STREQUAL "5")
    set(KT_TRACKING_QT_VERSION 5.12)
    set(KT_TRACKING_NAME_SUFFIX "")
    set(_kt_qt_other Qt6)
elseif(KT_QT_MAJOR_VERSION STREQUAL "6")
    set(KT_TRACKING_QT_VERSION 6.4)
    set(KT_TRACKING_NAME_SUFFIX 6)
    set(_kt_qt_other Qt5)
else()
    message(FATAL_ERROR "KT_QT_MAJOR_VERSION is '${KT_QT_MAJOR_VERSION}': it must be 5 or 6")
endif()
set(KT_QT Qt${KT_QT_MAJOR_VERSION})

# A build directory is for one major: switching it would keep objects and cached package paths
# of the other one.
if(DEFINED CACHE{KT_TRACKING_CONFIGURED_QT_MAJOR}
   AND NOT KT_TRACKING_CONFIGURED_QT_MAJOR STREQUAL KT_QT_MAJOR_VERSION)
    message(FATAL_ERROR "This build directory was configured for Qt "
        "${KT_TRACKING_CONFIGURED_QT_MAJOR}; configure Qt ${KT_QT_MAJOR_VERSION} in another one")
endif()
set(KT_TRACKING_CONFIGURED_QT_MAJOR ${KT_QT_MAJOR_VERSION} CACHE INTERNAL "")

find_package(${KT_QT} ${KT_TRACKING_QT_VERSION} REQUIRED COMPONENTS Core Gui Widgets)
if(KT_QT_MAJOR_VERSION EQUAL 6)
    find_package(Qt6 ${KT_TRACKING_QT_VERSION} REQUIRED COMPONENTS Core5Compat)
    set(KT_QT_REGEXP Qt6::Core5Compat)
else()
    set(KT_QT_REGEXP Qt5::Core)
endif()

# _kt_tracking_targets(<dir> <variable>): the targets defined in <dir> and below.
function(_kt_tracking_targets dir variable)
    get_property(targets DIRECTORY "${dir}" PROPERTY BUILDSYSTEM_TARGETS)
    get_property(subdirs DIRECTORY "${dir}" PROPERTY SUBDIRECTORIES)
    foreach(subdir IN LISTS subdirs)
        _kt_tracking_targets("${subdir}" more)
        list(APPEND targets ${more})
    endforeach()
    set(${variable} ${targets} PARENT_SCOPE)
endfunction()

# kt_tracking_check_qt_major(): after every target has been added, fails when one of them links
# the other major's Qt (a CMake file that names Qt5::... or Qt6::... instead of ${KT_QT}::...).
# Such a program would load both Qt libraries and break at run time.
function(kt_tracking_check_qt_major)
    _kt_tracking_targets("${PROJECT_SOURCE_DIR}" targets)
    set(wrong "")
    foreach(target IN LISTS targets)
        foreach(property IN ITEMS LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
            get_target_property(libraries ${target} ${property})
            if(NOT libraries)
                continue()
            endif()
            list(FILTER libraries INCLUDE REGEX "${_kt_qt_other}::")
            foreach(library IN LISTS libraries)
                string(REGEX REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1" library "${library}")
                list(APPEND wrong "${target} links ${library}")
            endforeach()
        endforeach()
    endforeach()
    if(wrong)
        list(REMOVE_DUPLICATES wrong)
        list(JOIN wrong "\n  " wrong)
        message(FATAL_ERROR "This is a ${KT_QT} build, but\n  ${wrong}\n"
            "Name Qt as \${KT_QT} (find_package(\${KT_QT} ...), \${KT_QT}::Core).")
    endif()
endfunction()
