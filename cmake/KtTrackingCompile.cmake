# Compile settings shared by every target of this project. They are applied per target, so a
# parent project that adds this repository with add_subdirectory keeps its own settings.

include_guard(GLOBAL)

set(KT_TRACKING_WARNINGS -Wall -Wextra)

if(KT_TRACKING_SANITIZE)
    string(REPLACE "," ";" _kt_sanitizers "${KT_TRACKING_SANITIZE}")
    set(KT_TRACKING_SANITIZE_FLAGS "-fsanitize=${KT_TRACKING_SANITIZE}" -fno-omit-frame-pointer)
    if("undefined" IN_LIST _kt_sanitizers)
        list(APPEND KT_TRACKING_SANITIZE_FLAGS -fno-sanitize-recover=undefined)
    endif()
endif()

# kt_tracking_setup_target(<target>): C++17, hidden symbols, warnings and sanitizers.
function(kt_tracking_setup_target target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 17
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        AUTOMOC ON)
    target_compile_options(${target} PRIVATE ${KT_TRACKING_WARNINGS})
    if(KT_TRACKING_SANITIZE_FLAGS)
        target_compile_options(${target} PRIVATE ${KT_TRACKING_SANITIZE_FLAGS})
        target_link_options(${target} PRIVATE ${KT_TRACKING_SANITIZE_FLAGS})
    endif()
endfunction()
