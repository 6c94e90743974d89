include(${CMAKE_CURRENT_LIST_DIR}/Libraries.cmake)
stub_library(SDL2_mixer SDL2_mixer @rpath/libSDL2_mixer-2.0.0.dylib)
imported_library(SDL2_mixer::SDL2_mixer ${CMAKE_BINARY_DIR}/headers/SDL2 SDL2_mixer)
set(SDL2_mixer_FOUND TRUE)
