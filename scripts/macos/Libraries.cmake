# What the cross-compiler gets of this machine's libraries: their headers, and in place of each
# library a list of what it exports here, which is enough for a linker to find a name that it lacks.

# stub_library(NAME HERE INSTALL_NAME): the linker's text form of the library that is called HERE on this
# machine: its name on the Mac and the symbols it exports.
set(STUB_LIBRARIES ${CMAKE_BINARY_DIR}/stub-libraries)
function(stub_library name here install_name)
    file(GLOB folders /usr/lib/*-linux-gnu)
    find_library(library ${here} PATHS ${folders} /usr/lib64 /usr/lib REQUIRED NO_CACHE NO_DEFAULT_PATH)
    execute_process(COMMAND nm --dynamic --defined-only --format=posix ${library}
        OUTPUT_VARIABLE table COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_]+" symbols "${table}")
    list(TRANSFORM symbols STRIP)
    list(TRANSFORM symbols PREPEND _)
    # The standard library's strings have another name there.
    list(TRANSFORM symbols REPLACE "B5cxx11" "")
    list(TRANSFORM symbols REPLACE "St7__cxx11" "St3__1")
    list(REMOVE_DUPLICATES symbols)
    list(JOIN symbols ", " symbols)
    set(targets "[ x86_64-macos, arm64-macos ]")
    file(WRITE ${STUB_LIBRARIES}/lib${name}.tbd
        "--- !tapi-tbd\n"
        "tbd-version: 4\n"
        "targets: ${targets}\n"
        "install-name: '${install_name}'\n"
        "exports:\n"
        "  - targets: ${targets}\n"
        "    symbols: [ ${symbols} ]\n"
        "...\n")
endfunction()

# imported_library(TARGET HEADERS [NAME]): a target with those headers, and the stub library NAME.
function(imported_library target headers)
    if(TARGET ${target})
        return()
    endif()
    add_library(${target} INTERFACE IMPORTED)
    target_include_directories(${target} SYSTEM INTERFACE ${headers})
    if(ARGC GREATER 2)
        target_link_directories(${target} INTERFACE ${STUB_LIBRARIES})
        target_link_libraries(${target} INTERFACE ${ARGV2})
    endif()
endfunction()

# headers_alone(VARIABLE HEADER): a folder with nothing but the header's own, or the header itself where
# it has none; beside it in /usr/include lie those of another C library.
function(headers_alone variable header)
    find_path(found_${header} ${header} PATHS /usr/include REQUIRED NO_CACHE)
    string(REGEX REPLACE "/.*" "" entry ${header})
    set(folder ${CMAKE_BINARY_DIR}/headers/${entry})
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${found_${header}}/${entry} ${folder}/${entry} SYMBOLIC)
    set(${variable} ${folder} PARENT_SCOPE)
endfunction()
