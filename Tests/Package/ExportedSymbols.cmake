# Checks the dynamic symbol table of the shared library: every exported symbol that belongs to
# this library's namespace must belong to its public boundary. A class that lost its export
# macro (or never had one) is internal, and none of its functions, vtables or typeinfos may be
# exported; neither may those of a standard template instantiated for it.
#
#   cmake -D LIBRARY=<libKtTracking.so> -D NM=<nm> -P ExportedSymbols.cmake

cmake_minimum_required(VERSION 3.16)

foreach(variable IN ITEMS LIBRARY NM)
    if(NOT ${variable})
        message(FATAL_ERROR "${variable} is not set")
    endif()
endforeach()

# The public boundary: what a host uses. "Config" is the configuration object model (its
# generated classes and the parse functions), "Fillers" holds FillerTypes, "operator" the
# QDebug output of an AttachReport.
set(public
    Event IKtTracker IKtTrackingEndpoint EventText
    StatisticsManager IStatisticsManager GuiHandler HookHighlight InstancesHandler
    FilterKtTracker AggregatorKtTracker ForwardKtTracker AppCoreKtTracker DebugKtTracker
    LoadConfigFromQrc FillerTypes Config Fillers
    AttachReport CheckGuiSection DumpObjectTree DumpTopLevelWidgets MatchObjectTree operator
    RecordingKtTracker IRuleTraceListener EventJson AppendJsonString)

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
