# The JSON library's headers alone: beside them in /usr/include lie those of another C library.
find_path(header nlohmann/json.hpp PATHS /usr/include NO_CACHE)
set(NLOHMANN ${CMAKE_BINARY_DIR}/nlohmann)
file(MAKE_DIRECTORY ${NLOHMANN})
file(CREATE_LINK ${header}/nlohmann ${NLOHMANN}/nlohmann SYMBOLIC)
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${NLOHMANN})

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(nlohmann_json REQUIRED_VARS header)
