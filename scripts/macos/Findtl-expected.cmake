include(${CMAKE_CURRENT_LIST_DIR}/Libraries.cmake)
headers_alone(headers tl/expected.hpp)
imported_library(tl::expected ${headers})
set(tl-expected_FOUND TRUE)
