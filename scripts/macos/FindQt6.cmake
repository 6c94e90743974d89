# Qt for the cross-compiler: the headers, moc and rcc of Debian's Qt, the platform definitions of
# its macx-clang mkspec, and in place of the libraries a list of what each exports on this machine,
# which is enough for a linker to find a name that Qt does not have.
find_program(BONKORA_QTPATHS qtpaths6 REQUIRED)
function(ask_qt variable property)
    execute_process(COMMAND ${BONKORA_QTPATHS} --query ${property}
        OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} ${answer} PARENT_SCOPE)
endfunction()
ask_qt(headers QT_INSTALL_HEADERS)
ask_qt(libraries QT_INSTALL_LIBS)
ask_qt(data QT_INSTALL_ARCHDATA)
ask_qt(tools QT_INSTALL_LIBEXECS)
ask_qt(Qt6_VERSION QT_VERSION)

foreach(tool moc rcc uic)
    if(NOT TARGET Qt6::${tool})
        add_executable(Qt6::${tool} IMPORTED)
        set_target_properties(Qt6::${tool} PROPERTIES IMPORTED_LOCATION ${tools}/${tool})
    endif()
endforeach()

# AUTOMOC asks for the version so.
string(REGEX MATCH "^([0-9]+)\\.([0-9]+)" ignored ${Qt6_VERSION})
set(Qt6Core_VERSION_MAJOR ${CMAKE_MATCH_1})
set(Qt6Core_VERSION_MINOR ${CMAKE_MATCH_2})

# The linker's text form of a dynamic library: its name on the Mac and the symbols it exports.
function(write_stub_library name library)
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
    file(WRITE ${CMAKE_BINARY_DIR}/qt-stubs/lib${name}.tbd
        "--- !tapi-tbd\n"
        "tbd-version: 4\n"
        "targets: ${targets}\n"
        "install-name: '@rpath/${name}.framework/Versions/A/${name}'\n"
        "exports:\n"
        "  - targets: ${targets}\n"
        "    symbols: [ ${symbols} ]\n"
        "...\n")
endfunction()

foreach(module Core Gui Widgets ${Qt6_FIND_COMPONENTS})
    if(NOT TARGET Qt6::${module})
        write_stub_library(Qt${module} ${libraries}/libQt6${module}.so)
        add_library(Qt6::${module} INTERFACE IMPORTED)
        set_target_properties(Qt6::${module} PROPERTIES INTERFACE_QT_MAJOR_VERSION 6)
        target_include_directories(Qt6::${module} SYSTEM INTERFACE
            ${data}/mkspecs/macx-clang ${headers} ${headers}/Qt${module})
        target_link_directories(Qt6::${module} INTERFACE ${CMAKE_BINARY_DIR}/qt-stubs)
        target_link_libraries(Qt6::${module} INTERFACE Qt${module})
    endif()
endforeach()
target_link_libraries(Qt6::Gui INTERFACE Qt6::Core)
target_link_libraries(Qt6::Widgets INTERFACE Qt6::Gui)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Qt6 REQUIRED_VARS headers VERSION_VAR Qt6_VERSION)
