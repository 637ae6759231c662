# How every folder of the house becomes a target.
#
#   house_library(<target> ROOMS <sub-folders…> LINKS <targets…>)  one static library a folder
#   house_program(<target> <main.cpp> LINKS <targets…>)             a main and what it links
#   house_test(<target> LINKS <targets…>)                           one GoogleTest program a folder
#
# Sources are the *.cpp files of the folder and of its rooms, the sub-folders that it names;
# a test's folder may hold mains of helper programs besides, "…_main.cpp". A folder's headers
# are reached by their path from the root ("runtime/core/value.h"), but only through the
# targets it links: each library exposes a private view of the tree that holds its own folder
# and nothing else, so an include against the arrows does not compile.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

option(HOUSE_QT "Build the Qt screen and the programs that need it" ON)
option(HOUSE_TESTS "Build the tests" ON)
option(HOUSE_BENCH "Build the benchmarks" OFF)
option(HOUSE_FUZZ "Build libFuzzer targets (clang)" OFF)
option(HOUSE_UNITY "Compile the folders on the toolkit's headers as few large units" ON)
set(HOUSE_SANITIZE "" CACHE STRING "Sanitizers for every target, e.g. address,undefined")
option(HOUSE_COVERAGE "Instrument for coverage" OFF)

find_program(HOUSE_CCACHE ccache)
if(HOUSE_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${HOUSE_CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options(-Wno-deprecated-declarations)
endif()
if(HOUSE_SANITIZE)
  add_compile_options(-fsanitize=${HOUSE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${HOUSE_SANITIZE})
endif()
if(HOUSE_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

function(_house_sources out)
  set(patterns ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  foreach(room ${ARGN})
    list(APPEND patterns ${CMAKE_CURRENT_SOURCE_DIR}/${room}/*.cpp)
  endforeach()
  file(GLOB found CONFIGURE_DEPENDS ${patterns})
  list(FILTER found EXCLUDE REGEX "_main\\.cpp$")
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# A directory in which only this folder is visible, under its own path.
function(_house_view out)
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  string(REPLACE "/" "-" room ${folder})
  set(view ${CMAKE_BINARY_DIR}/include/${room})
  get_filename_component(parent ${view}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  if(NOT EXISTS ${view}/${folder})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${folder} SYMBOLIC)
  endif()
  set(${out} ${view} PARENT_SCOPE)
endfunction()

function(house_library target)
  cmake_parse_arguments(ARG "" "" "ROOMS;LINKS;PRIVATE_LINKS" ${ARGN})
  _house_sources(sources ${ARG_ROOMS})
  _house_view(view)
  if(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC ${view})
    target_link_libraries(${target} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${view})
    target_link_libraries(${target} INTERFACE ${ARG_LINKS})
  endif()
endfunction()

function(house_program target main)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  _house_view(view)
  add_executable(${target} ${main})
  target_include_directories(${target} PRIVATE ${view})
  target_link_libraries(${target} PRIVATE ${ARG_LINKS})
endfunction()

function(house_test target)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  _house_sources(sources)
  if(NOT sources)
    return()
  endif()
  add_executable(${target} ${sources})
  target_link_libraries(${target} PRIVATE ${ARG_LINKS} GTest::gmock_main)
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120 ENVIRONMENT "TZ=Europe/Rome;LC_ALL=C.UTF-8")
endfunction()
