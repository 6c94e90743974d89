include(${CMAKE_CURRENT_LIST_DIR}/Libraries.cmake)
headers_alone(headers nlohmann/json.hpp)
imported_library(nlohmann_json::nlohmann_json ${headers})
set(nlohmann_json_FOUND TRUE)
