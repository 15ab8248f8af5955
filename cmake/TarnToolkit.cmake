# The companion module in toolkit/. It is a project of its own that knows nothing of this one but the
# installed package, so the libraries and headers are installed into a staging folder first.
include(ExternalProject)

set(staging ${PROJECT_BINARY_DIR}/staging)
list(TRANSFORM public_headers PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE staged_headers)
add_custom_command(OUTPUT ${staging}.stamp
  COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --component development
          --prefix ${staging}
  COMMAND ${CMAKE_COMMAND} -E touch ${staging}.stamp
  DEPENDS Tarn_base_math Tarn_host ${staged_headers}
  COMMENT "Installing the package for the companion module")
add_custom_target(staged_package DEPENDS ${staging}.stamp)

set(toolkit_flags "${CMAKE_CXX_FLAGS}")
if(TARN_SANITIZE)
  string(APPEND toolkit_flags
         " -fsanitize=${TARN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer")
endif()
ExternalProject_Add(toolkit
  SOURCE_DIR ${PROJECT_SOURCE_DIR}/toolkit
  BINARY_DIR ${PROJECT_BINARY_DIR}/toolkit
  PREFIX ${PROJECT_BINARY_DIR}/toolkit-steps
  DEPENDS staged_package
  CMAKE_ARGS
    -DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}
    -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
    -DCMAKE_CXX_FLAGS=${toolkit_flags}
    -DCMAKE_CXX_FLAGS_RELWITHDEBINFO=${CMAKE_CXX_FLAGS_RELWITHDEBINFO}
    -DCMAKE_PREFIX_PATH=${staging}
    -DCMAKE_LIBRARY_OUTPUT_DIRECTORY=${CMAKE_LIBRARY_OUTPUT_DIRECTORY}
  BUILD_ALWAYS ON
  INSTALL_COMMAND "")
set(TARN_TOOLKIT_PATH ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/libTarn_toolkit.so)

install(CODE "execute_process(COMMAND \${CMAKE_COMMAND} --install \"${PROJECT_BINARY_DIR}/toolkit\"
  --prefix \"\${CMAKE_INSTALL_PREFIX}\" COMMAND_ERROR_IS_FATAL ANY)" COMPONENT toolkit)
