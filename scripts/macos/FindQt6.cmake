# Qt for the cross-compiler: the headers, moc and rcc of Debian's Qt, the platform definitions of
# its macx-clang mkspec, and stub libraries.
include(${CMAKE_CURRENT_LIST_DIR}/Libraries.cmake)
find_program(BONKORA_QTPATHS qtpaths6 REQUIRED)
function(ask_qt variable property)
    execute_process(COMMAND ${BONKORA_QTPATHS} --query ${property}
        OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} ${answer} PARENT_SCOPE)
endfunction()
ask_qt(headers QT_INSTALL_HEADERS)
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

foreach(module Core Gui Widgets ${Qt6_FIND_COMPONENTS})
    if(NOT TARGET Qt6::${module})
        stub_library(Qt${module} Qt6${module}
            @rpath/Qt${module}.framework/Versions/A/Qt${module})
        imported_library(Qt6::${module}
            "${data}/mkspecs/macx-clang;${headers};${headers}/Qt${module}" Qt${module})
        set_target_properties(Qt6::${module} PROPERTIES INTERFACE_QT_MAJOR_VERSION 6)
    endif()
endforeach()
target_link_libraries(Qt6::Gui INTERFACE Qt6::Core)
target_link_libraries(Qt6::Widgets INTERFACE Qt6::Gui)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Qt6 REQUIRED_VARS headers VERSION_VAR Qt6_VERSION)
