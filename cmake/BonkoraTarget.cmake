# bonkora_target(NAME): what every target of ours has in common.
function(bonkora_target name)
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_options(${name} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2)
    if(BONKORA_WARNINGS_AS_ERRORS)
        target_compile_options(${name} PRIVATE -Werror)
    endif()
    if(BONKORA_SANITIZE)
        target_compile_options(${name} PRIVATE -fsanitize=${BONKORA_SANITIZE}
            -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${name} PRIVATE -fsanitize=${BONKORA_SANITIZE})
    endif()
endfunction()

# What is started is hard to take over: it runs in part as root. Sanitizers have checks of their own, and
# a debugger's build has no use for it.
option(BONKORA_HARDENING "Harden the programs against attacks" ON)
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection=full BONKORA_HAS_CF_PROTECTION)    # x86 only
function(bonkora_harden name)
    if(NOT BONKORA_HARDENING OR APPLE OR BONKORA_SANITIZE OR CMAKE_BUILD_TYPE STREQUAL "Debug")
        return()
    endif()
    target_compile_options(${name} PRIVATE -fstack-protector-strong -fstack-clash-protection
        $<$<BOOL:${BONKORA_HAS_CF_PROTECTION}>:-fcf-protection=full>
        $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release,RelWithDebInfo>:-D_FORTIFY_SOURCE=3>)
    target_link_options(${name} PRIVATE -Wl,-z,relro,-z,now)
endfunction()

# bonkora_unite(NAME): the sources of a folder are compiled as one, so that the headers they share are
# read once.
option(BONKORA_UNITE "Compile the sources of a folder as one" OFF)
function(bonkora_unite name)
    get_target_property(sources ${name} SOURCES)
    foreach(source IN LISTS sources)
        cmake_path(GET source PARENT_PATH folder)
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP "of_${folder}")
    endforeach()
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${BONKORA_UNITE} UNITY_BUILD_MODE GROUP)
endfunction()

# bonkora_library(NAME sources...): a static library of one room; the linker keeps the walls.
function(bonkora_library name)
    add_library(${name} STATIC ${ARGN})
    bonkora_unite(${name})
    bonkora_target(${name})
    bonkora_harden(${name})
endfunction()

# bonkora_program(TARGET OUTPUT FOLDER sources...): a program inside the application folder.
function(bonkora_program target output folder)
    add_executable(${target} ${ARGN})
    bonkora_target(${target})
    bonkora_harden(${target})
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${output}
        RUNTIME_OUTPUT_DIRECTORY ${BONKORA_BUNDLE}/Contents/${folder})
    install(TARGETS ${target} DESTINATION ${BONKORA_INSTALLED_BUNDLE}/Contents/${folder})
endfunction()

# bonkora_unit_test(NAME [LABEL label] sources...): a GoogleTest program, each of whose tests is one of
# CTest's. The label is "unit" unless another is given.
function(bonkora_unit_test name)
    cmake_parse_arguments(arg "" "LABEL" "" ${ARGN})
    if(NOT arg_LABEL)
        set(arg_LABEL unit)
    endif()
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    bonkora_unite(${name})
    bonkora_target(${name})
    target_link_libraries(${name} PRIVATE GTest::gtest GTest::gmock)
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120 LABELS ${arg_LABEL})
endfunction()
