# The headers are copied, so that they find in their own folder what Debian has moved out of it.
include(${CMAKE_CURRENT_LIST_DIR}/Libraries.cmake)
find_path(folder SDL2/SDL.h PATHS /usr/include REQUIRED NO_CACHE)
set(SDL2_HEADERS ${CMAKE_BINARY_DIR}/headers/SDL2)
file(COPY ${folder}/SDL2/ DESTINATION ${SDL2_HEADERS})
file(GLOB real /usr/include/*/SDL2/_real_SDL_config.h)
if(real)
    # Written for this machine's processor.
    file(CONFIGURE OUTPUT ${SDL2_HEADERS}/SDL_config.h @ONLY
        CONTENT "#include \"${real}\"\n#undef HAVE_IMMINTRIN_H\n")
endif()
stub_library(SDL2 SDL2 @rpath/libSDL2-2.0.0.dylib)
imported_library(SDL2::SDL2 ${SDL2_HEADERS} SDL2)
set(SDL2_FOUND TRUE)
