# Generation of the configuration object model from its XML Schemas.
#
# kt_tracking_add_config_model(<target> SCHEMAS <name> <c++ namespace> ... SCHEMA_DIR <dir>
#                              OUTPUT_DIR <dir> [HEADERS_VARIABLE <variable>]
#                              [INCLUDES_FOR <targets>...])
#
# For each <name>.xsd in SCHEMA_DIR: the CodeSynthesis XSD tree mapping (<name>.hxx/.cxx) under
# OUTPUT_DIR/Tracking/Config, exported with KT_TRACKING_EXPORT, and <name>Rules.inc, the reading
# rules of its types (written by the KtSchemaRules build tool). OUTPUT_DIR becomes a SYSTEM
# include directory of <target> and of each INCLUDES_FOR target: the generated code is
# third-party style and compiled without warnings. HEADERS_VARIABLE receives the generated
# headers, relative to OUTPUT_DIR.

include_guard(GLOBAL)

find_program(KT_XSDCXX_EXECUTABLE NAMES xsdcxx DOC "CodeSynthesis XSD compiler")
if(NOT KT_XSDCXX_EXECUTABLE)
    message(FATAL_ERROR "xsdcxx (CodeSynthesis XSD) is required to generate the configuration model")
endif()
find_path(KT_XSD_INCLUDE_DIR xsd/cxx/config.hxx DOC "CodeSynthesis XSD runtime headers")
if(NOT KT_XSD_INCLUDE_DIR)
    message(FATAL_ERROR "The CodeSynthesis XSD runtime headers (xsd/cxx/...) were not found")
endif()

function(kt_tracking_add_config_model target)
    cmake_parse_arguments(ARG "" "SCHEMA_DIR;OUTPUT_DIR;HEADERS_VARIABLE" "SCHEMAS;INCLUDES_FOR"
        ${ARGN})
    set(gen "${ARG_OUTPUT_DIR}/Tracking/Config")
    file(MAKE_DIRECTORY "${gen}")

    if(NOT TARGET KtSchemaRules)
        add_executable(KtSchemaRules "${ARG_SCHEMA_DIR}/SchemaRulesTool.cpp")
        set_target_properties(KtSchemaRules PROPERTIES CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON)
        target_compile_options(KtSchemaRules PRIVATE ${KT_TRACKING_WARNINGS})
        target_link_libraries(KtSchemaRules PRIVATE XercesC::XercesC)
    endif()

    set(common_options cxx-tree --std c++11 --char-type char --output-dir "${gen}")
    add_custom_command(
        OUTPUT "${gen}/XmlSchema.hxx"
        COMMAND "${KT_XSDCXX_EXECUTABLE}" ${common_options} --generate-xml-schema XmlSchema.xsd
        COMMENT "Generating the XML Schema built-in types"
        VERBATIM)
    set(generated "${gen}/XmlSchema.hxx")
    set(headers Tracking/Config/XmlSchema.hxx)

    list(LENGTH ARG_SCHEMAS count)
    math(EXPR last "${count} - 1")
    foreach(i RANGE 0 ${last} 2)
        math(EXPR j "${i} + 1")
        list(GET ARG_SCHEMAS ${i} name)
        list(GET ARG_SCHEMAS ${j} namespace)
        set(schema "${ARG_SCHEMA_DIR}/${name}.xsd")
        add_custom_command(
            OUTPUT "${gen}/${name}.hxx" "${gen}/${name}.cxx"
            COMMAND "${KT_XSDCXX_EXECUTABLE}" ${common_options}
                --root-element-none
                --generate-comparison
                --extern-xml-schema XmlSchema.xsd
                --namespace-map "=${namespace}"
                --export-symbol KT_TRACKING_EXPORT
                --hxx-prologue "#include \"Tracking/TrackingExport.h\""
                "${schema}"
            DEPENDS "${schema}" "${gen}/XmlSchema.hxx"
            COMMENT "Generating the object model of ${name}.xsd"
            VERBATIM)
        add_custom_command(
            OUTPUT "${gen}/${name}Rules.inc"
            COMMAND KtSchemaRules "${schema}" "${gen}/${name}Rules.inc"
            DEPENDS KtSchemaRules "${schema}"
            COMMENT "Extracting the reading rules of ${name}.xsd"
            VERBATIM)
        set_source_files_properties("${gen}/${name}.cxx" PROPERTIES COMPILE_OPTIONS "-w")
        list(APPEND generated "${gen}/${name}.hxx" "${gen}/${name}.cxx" "${gen}/${name}Rules.inc")
        list(APPEND headers "Tracking/Config/${name}.hxx")
    endforeach()

    target_sources(${target} PRIVATE ${generated})
    foreach(user IN ITEMS ${target} ${ARG_INCLUDES_FOR})
        target_include_directories(${user} SYSTEM PUBLIC
            "$<BUILD_INTERFACE:${ARG_OUTPUT_DIR}>"
            "$<BUILD_INTERFACE:${KT_XSD_INCLUDE_DIR}>")
    endforeach()
    if(ARG_HEADERS_VARIABLE)
        set(${ARG_HEADERS_VARIABLE} ${headers} PARENT_SCOPE)
    endif()
endfunction()
