# Headers that many sources read are compiled once, with GCC: some 60 % of a build's time was spent on
# reading them. Every source still includes what it needs: Clang builds without this, so that a
# forgotten include is an error there.

# bonkora_precompile(TARGET KIND HEADERS...): the first target of a kind compiles the headers, each
# later one takes them over. Targets of one kind are compiled alike: all libraries, or all programs.
function(bonkora_precompile target kind)
    # With a sanitizer GCC 12 warns of the standard library's own strings once they are precompiled.
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR BONKORA_SANITIZE)
        return()
    endif()
    get_property(first GLOBAL PROPERTY BONKORA_PRECOMPILED_${kind})
    if(first)
        target_precompile_headers(${target} REUSE_FROM ${first})
    else()
        target_precompile_headers(${target} PRIVATE ${ARGN})
        set_property(GLOBAL PROPERTY BONKORA_PRECOMPILED_${kind} ${target})
    endif()
endfunction()

set(bonkora_standard_headers
    <algorithm> <chrono> <filesystem> <functional> <memory> <optional> <string> <string_view>
    <utility> <vector>)
set(bonkora_widget_headers
    ${bonkora_standard_headers} <QApplication> <QMouseEvent> <QPainter> <QTimer> <QWidget>)
set(bonkora_test_headers ${bonkora_standard_headers} <gmock/gmock.h> <gtest/gtest.h>)
