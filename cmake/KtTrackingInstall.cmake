# Installation: the shared libraries, their public headers (generated ones included), the
# schemas of the configuration documents and a CMake package, so that another project can use
# an installed copy with find_package(KtTracking). The rules are only written when
# KT_TRACKING_INSTALL is on.
#
# The Qt 5 and the Qt 6 build install side by side into one prefix: every installed name
# carries KT_TRACKING_NAME_SUFFIX, "" under Qt 5 and "6" under Qt 6 (KtTrackingQt.cmake), the way
# Qt's own modules and KDE's frameworks carry theirs. <S> below stands for it.
#
# Layout below the prefix (GNUInstallDirs):
#   <libdir>/libKtTracking<S>.so*, <libdir>/libKtHost<S>.so*, <libdir>/libKtHostReference<S>.so*
#                               (every library installed with kt_tracking_install_library)
#   <bindir>/kttrack<S>
#   <includedir>/KtTracking<S>/ the include root: "Tracking/Tracking.h", "App/...", "HostExport.h"
#   <datadir>/KtTracking<S>/    KtmStat.xsd, Filter.xsd, Aggregator.xsd
#   <libdir>/cmake/KtTracking<S>/  the package KtTracking<S>: KtTracking<S>Config.cmake,
#                               ...ConfigVersion.cmake, KtTrackingTargets.cmake,
#                               KtHostReferenceTargets.cmake
# The imported targets keep their names under both majors (Kt::Tracking, Kt::Host, ...), so a
# host that builds with either Qt differs in the name of the package it finds, nothing else.
#
# Components: "Runtime" (the shared libraries), "Development" (headers, namelinks, schemas,
# package) and "HostReference" (Kt::HostReference, its headers and its own targets file, which
# the package loads when it is there).

include_guard(GLOBAL)

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(KT_TRACKING_PACKAGE_NAME "KtTracking${KT_TRACKING_NAME_SUFFIX}")
# The headers get a folder of their own: "App/", "KT/", "UI/" ... must not land directly in the
# system's include directory.
set(KT_TRACKING_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/${KT_TRACKING_PACKAGE_NAME}")
set(KT_TRACKING_INSTALL_SCHEMADIR "${CMAKE_INSTALL_DATADIR}/${KT_TRACKING_PACKAGE_NAME}")
set(KT_TRACKING_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/${KT_TRACKING_PACKAGE_NAME}")

# Before 1.0 every minor release may break the binary interface, so it is part of the SONAME.
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(KT_TRACKING_SOVERSION "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
    set(KT_TRACKING_COMPATIBILITY SameMinorVersion)
else()
    set(KT_TRACKING_SOVERSION "${PROJECT_VERSION_MAJOR}")
    set(KT_TRACKING_COMPATIBILITY SameMajorVersion)
endif()

# An installed tree can be moved: programs find the libraries through a path relative to
# themselves. Set before the targets are created, as it only initialises their properties; a
# parent project's own choice is kept.
if(KT_TRACKING_INSTALL AND NOT DEFINED CMAKE_INSTALL_RPATH)
    file(RELATIVE_PATH _kt_bin_to_lib "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set(CMAKE_INSTALL_RPATH "$ORIGIN/${_kt_bin_to_lib}")
endif()

# kt_tracking_install_library(<target> EXPORT_NAME <name> [COMPONENT <component>])
# Versions <target>, names its file lib<target><S>.so, names it Kt::<name> in the package and
# adds it to the package's targets. With COMPONENT, the library and its targets file
# Kt<component>Targets.cmake form an optional component of the package of that name (one target
# per component, <component> = <name>).
function(kt_tracking_install_library target)
    cmake_parse_arguments(ARG "" "EXPORT_NAME;COMPONENT" "" ${ARGN})
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${target}${KT_TRACKING_NAME_SUFFIX}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${KT_TRACKING_SOVERSION}
        EXPORT_NAME ${ARG_EXPORT_NAME})
    if(NOT KT_TRACKING_INSTALL)
        return()
    endif()
    if(NOT DEFINED CMAKE_INSTALL_RPATH OR CMAKE_INSTALL_RPATH MATCHES "^\\$ORIGIN/")
        # The libraries lie next to each other.
        set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
    endif()
    if(ARG_COMPONENT)
        set(export_set "Kt${ARG_COMPONENT}Targets")
        set(runtime ${ARG_COMPONENT})
        set(development ${ARG_COMPONENT})
        set_property(GLOBAL APPEND PROPERTY KT_TRACKING_OPTIONAL_COMPONENTS ${ARG_COMPONENT})
    else()
        set(export_set KtTrackingTargets)
        set(runtime Runtime)
        set(development Development)
    endif()
    install(TARGETS ${target}
        EXPORT ${export_set}
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT ${runtime}
            NAMELINK_COMPONENT ${development}
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${development}
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${runtime}
        INCLUDES DESTINATION "${KT_TRACKING_INSTALL_INCLUDEDIR}")
endfunction()

# kt_tracking_install_headers(<root> <header>... [COMPONENT <component>])
# Installs each header, given relative to <root>, at the same relative place below the include
# root, so that the include lines of consumers stay as they are in this source tree. The
# component is "Development" unless told.
function(kt_tracking_install_headers root)
    cmake_parse_arguments(ARG "" "COMPONENT" "" ${ARGN})
    if(NOT KT_TRACKING_INSTALL)
        return()
    endif()
    if(NOT ARG_COMPONENT)
        set(ARG_COMPONENT Development)
    endif()
    foreach(header IN LISTS ARG_UNPARSED_ARGUMENTS)
        get_filename_component(folder "${header}" DIRECTORY)
        install(FILES "${root}/${header}"
            DESTINATION "${KT_TRACKING_INSTALL_INCLUDEDIR}/${folder}"
            COMPONENT ${ARG_COMPONENT})
    endforeach()
endfunction()

# kt_tracking_install_package(): the package files, after every library has been added.
function(kt_tracking_install_package)
    if(NOT KT_TRACKING_INSTALL)
        return()
    endif()
    get_property(KT_TRACKING_OPTIONAL_COMPONENTS GLOBAL PROPERTY KT_TRACKING_OPTIONAL_COMPONENTS)
    set(build "${PROJECT_BINARY_DIR}/package")
    set(package ${KT_TRACKING_PACKAGE_NAME})
    configure_package_config_file(
        "${PROJECT_SOURCE_DIR}/cmake/KtTrackingConfig.cmake.in"
        "${build}/${package}Config.cmake"
        INSTALL_DESTINATION "${KT_TRACKING_INSTALL_CMAKEDIR}"
        PATH_VARS KT_TRACKING_INSTALL_SCHEMADIR)
    write_basic_package_version_file("${build}/${package}ConfigVersion.cmake"
        VERSION ${PROJECT_VERSION}
        COMPATIBILITY ${KT_TRACKING_COMPATIBILITY})
    install(EXPORT KtTrackingTargets
        NAMESPACE Kt::
        FILE KtTrackingTargets.cmake
        DESTINATION "${KT_TRACKING_INSTALL_CMAKEDIR}"
        COMPONENT Development)
    install(FILES "${build}/${package}Config.cmake" "${build}/${package}ConfigVersion.cmake"
        DESTINATION "${KT_TRACKING_INSTALL_CMAKEDIR}"
        COMPONENT Development)
    foreach(component IN LISTS KT_TRACKING_OPTIONAL_COMPONENTS)
        install(EXPORT Kt${component}Targets
            NAMESPACE Kt::
            FILE Kt${component}Targets.cmake
            DESTINATION "${KT_TRACKING_INSTALL_CMAKEDIR}"
            COMPONENT ${component})
    endforeach()
endfunction()
