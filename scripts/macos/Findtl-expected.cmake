# The header alone: beside it in /usr/include lie those of another C library.
find_path(header tl/expected.hpp PATHS /usr/include NO_CACHE)
set(EXPECTED ${CMAKE_BINARY_DIR}/expected)
file(MAKE_DIRECTORY ${EXPECTED})
file(CREATE_LINK ${header}/tl ${EXPECTED}/tl SYMBOLIC)
add_library(tl::expected INTERFACE IMPORTED)
target_include_directories(tl::expected SYSTEM INTERFACE ${EXPECTED})

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(tl-expected REQUIRED_VARS header)
