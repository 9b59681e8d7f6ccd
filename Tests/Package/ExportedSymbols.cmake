# Checks the dynamic symbol table of the shared library: every exported symbol that belongs to
# this library's namespace must belong to its public boundary. A class that lost its export
# macro (or never had one) is internal, and none of its functions, vtables or typeinfos may be
# exported; neither may those of a standard template instantiated for it.
#
# The public boundary is read from the public headers themselves (the one list of them, written
# by Lib/CMakeLists.txt): the names they define at namespace level (classes, structs, enums,
# aliases and exported functions; forward declarations do not count) and the namespaces below
# Velkor::KT::Tracking they open (the configuration model's "Config").
#
#   cmake -D LIBRARY=<libKtTracking.so> -D NM=<nm> -D HEADERS=<PublicHeaders.txt> \
#         -P ExportedSymbols.cmake

cmake_minimum_required(VERSION 3.16)

foreach(variable IN ITEMS LIBRARY NM HEADERS)
    if(NOT ${variable})
        message(FATAL_ERROR "${variable} is not set")
    endif()
endforeach()

file(STRINGS "${HEADERS}" headers)
set(public "")
foreach(header IN LISTS headers)
    if(NOT EXISTS "${header}")
        message(FATAL_ERROR "${header}: listed as public but not there")
    endif()
    # Semicolons would split CMake's list of lines; a forward declaration keeps its "<sc>".
    file(READ "${header}" text)
    string(REPLACE ";" "<sc>" text "${text}")
    string(REPLACE "\n" ";" declarations "${text}")
    foreach(line IN LISTS declarations)
        set(name "")
        if(line MATCHES "^namespace Velkor::KT::Tracking::([A-Za-z0-9_]+)")
            set(name "${CMAKE_MATCH_1}")
        elseif(line MATCHES "^namespace ([A-Za-z0-9_]+)$")
            set(name "${CMAKE_MATCH_1}")
        elseif(line MATCHES "^(enum class|class|struct|enum) (KT_TRACKING_EXPORT )?([A-Za-z0-9_]+)( |$)")
            set(name "${CMAKE_MATCH_3}")
        elseif(line MATCHES "^using ([A-Za-z0-9_]+) =")
            set(name "${CMAKE_MATCH_1}")
        elseif(line MATCHES "^KT_TRACKING_EXPORT .*[ :*&](operator|[A-Za-z0-9_]+)[^A-Za-z0-9_ (]*\\(")
            set(name "${CMAKE_MATCH_1}")
        endif()
        if(name AND NOT name STREQUAL "Velkor")
            list(APPEND public "${name}")
        endif()
    endforeach()
endforeach()
list(REMOVE_DUPLICATES public)
list(SORT public)
message(STATUS "Public names: ${public}")

execute_process(
    COMMAND "${NM}" -D --defined-only --demangle "${LIBRARY}"
    RESULT_VARIABLE result
    OUTPUT_VARIABLE symbols
    ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${NM} failed on ${LIBRARY} (${result}): ${errors}")
endif()

# Demangled names hold ';', '[' and ']', which CMake lists do not survive.
string(REPLACE ";" "<sc>" symbols "${symbols}")
string(REPLACE "[" "<lb>" symbols "${symbols}")
string(REPLACE "]" "<rb>" symbols "${symbols}")
string(REPLACE "\n" ";" lines "${symbols}")

set(exported 0)
set(leaks "")
foreach(line IN LISTS lines)
    # The symbol belongs to the first name of this namespace it mentions: the class of a member
    # function, vtable or typeinfo, or the type a standard template was instantiated for.
    string(REGEX MATCH "Velkor::KT::Tracking::([A-Za-z0-9_]+)" owner "${line}")
    if(NOT owner)
        continue()
    endif()
    set(class "${CMAKE_MATCH_1}")
    math(EXPR exported "${exported} + 1")
    if(NOT class IN_LIST public)
        string(REGEX REPLACE "^[0-9a-fA-F]+ [A-Za-z] " "" name "${line}")
        string(APPEND leaks "  ${class}: ${name}\n")
    endif()
endforeach()

if(exported EQUAL 0)
    message(FATAL_ERROR "${LIBRARY} exports nothing of Velkor::KT::Tracking: wrong library?")
endif()
if(leaks)
    string(REPLACE "<sc>" ";" leaks "${leaks}")
    string(REPLACE "<lb>" "[" leaks "${leaks}")
    string(REPLACE "<rb>" "]" leaks "${leaks}")
    message(FATAL_ERROR "${LIBRARY} exports symbols of internal classes:\n${leaks}")
endif()
message(STATUS "${exported} exported symbols, all of the public boundary")
