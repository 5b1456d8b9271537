# Settings that every target of the project shares.
option(VAK_TESTS "Build the tests" ON)
option(VAK_FUZZ "Build the libFuzzer targets (clang)" OFF)
option(VAK_BENCH "Build the benchmarks" OFF)
set(VAK_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_RC_FLAGS_INIT "")

find_program(VAK_CCACHE ccache)
if(VAK_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
    "${VAK_CCACHE}")
endif()

find_package(Threads REQUIRED)

# What the interface needs of its users, and the library of itself.
add_library(vak_settings INTERFACE)
target_link_libraries(vak_settings INTERFACE Threads::Threads)
if(WIN32)
  target_compile_definitions(vak_settings INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN
    _WIN32_WINNT=0x0601 WINVER=0x0601)
  set(VAK_SYSTEM_LIBRARIES shlwapi shell32 ole32 uuid mpr version comdlg32 comctl32 gdi32 user32 advapi32)
else()
  target_compile_options(vak_settings INTERFACE -fshort-wchar)
endif()
# Four-character codes are multi-character constants, first character in the most significant byte.
target_compile_options(vak_settings INTERFACE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Werror
  -Wno-multichar)
# clang counts an enumerator that is named like a C library function, as CFile's contract has one.
target_compile_options(vak_settings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wshadow>)
# g++ 12 at -O2 sees overlapping copies of impossible lengths inside std::basic_string.
target_compile_options(vak_settings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(VAK_SANITIZE)
  add_compile_options(-fsanitize=${VAK_SANITIZE} -fno-omit-frame-pointer)
  if(WIN32)
    # No sanitizer run-time for this target: a finding is a trap, which ends the process.
    add_compile_options(-fsanitize-undefined-trap-on-error)
  else()
    add_compile_options(-fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VAK_SANITIZE})
  endif()
endif()

if(WIN32)
  # The run-time libraries are shared by the library, its host and every plug-in: with static copies,
  # rethrowing an exception across modules breaks.
  foreach(runtime libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}
      OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${path}")
      find_file(path_${runtime} ${runtime} PATHS /usr/x86_64-w64-mingw32/lib NO_DEFAULT_PATH
        NO_CMAKE_FIND_ROOT_PATH REQUIRED)
      set(path "${path_${runtime}}")
    endif()
    configure_file("${path}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${runtime}" COPYONLY)
  endforeach()
endif()
