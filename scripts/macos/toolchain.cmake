# CMake toolchain: Zig as the compiler for macOS. scripts/check-macos puts a copy of this file beside
# the commands it makes: c++ (for one processor), ar, ranlib and run.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_CXX_COMPILER ${CMAKE_CURRENT_LIST_DIR}/c++)
set(CMAKE_AR ${CMAKE_CURRENT_LIST_DIR}/ar)
set(CMAKE_RANLIB ${CMAKE_CURRENT_LIST_DIR}/ranlib)
# Stands in for what the build itself runs.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run)
# No dynamic library is made here, so none is ever renamed.
set(CMAKE_INSTALL_NAME_TOOL true)
