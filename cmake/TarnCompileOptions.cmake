# The one place where compiler flags are set, for every target of the project.
#
# Results are a contract, bit for bit: no contraction of a*b+c into a fused operation and no flag
# that lets the compiler reorder or approximate floating-point arithmetic.

set(TARN_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")

add_library(tarn_compile_options INTERFACE)
target_compile_features(tarn_compile_options INTERFACE cxx_std_20)
target_compile_options(tarn_compile_options INTERFACE
  -ffp-contract=off
  -fvisibility=hidden -fvisibility-inlines-hidden
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Werror)
target_include_directories(tarn_compile_options INTERFACE ${PROJECT_SOURCE_DIR})
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(TARN_SANITIZE)
  # Instrumented code makes GCC see uninitialised members inside the standard library's <regex>.
  target_compile_options(tarn_compile_options INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_compile_options(tarn_compile_options INTERFACE
    -fsanitize=${TARN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tarn_compile_options INTERFACE -fsanitize=${TARN_SANITIZE})
endif()

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()
