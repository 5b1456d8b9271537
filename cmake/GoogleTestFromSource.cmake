# GoogleTest is built from Debian's sources with the project's own settings: natively its library must agree
# with ours on the width of wchar_t.
find_path(GOOGLETEST_SOURCE googletest/CMakeLists.txt PATHS /usr/src/googletest NO_DEFAULT_PATH
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_SHARED_LIBS OFF)
if(NOT WIN32)
  set(saved_flags "${CMAKE_CXX_FLAGS}")
  string(APPEND CMAKE_CXX_FLAGS " -fshort-wchar")
endif()
add_subdirectory("${GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
if(NOT WIN32)
  set(CMAKE_CXX_FLAGS "${saved_flags}")
endif()
