# What `cmake --install` lays down, so that other projects can build on the module:
#
#   bin/tarn                            the command
#   lib/libTarn_*.so                    the module and the host
#   lib/cmake/Tarn_base_math/           what find_package(Tarn_base_math) reads
#   include/Tarn_base_math/             headers; tarn_base_math.h, host/embedded_host.h
#   share/doc/Tarn_base_math/           the pages of docs/
#
# Nothing in the tree names the place where it lies: it may be moved as a whole.
#
# The component "development" is what another project needs to build (libraries, headers, package
# files); it is complete as soon as the two libraries are built.

# The command looks for modules in ../lib, seen from its own folder.
set(CMAKE_INSTALL_LIBDIR lib CACHE PATH "Folder of libraries below the prefix")
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package Tarn_base_math)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/${package})

# The headers that a program can include, by whatever way; the rest is private.
set(public_headers
  tarn_base_math.h
  arrays/median.h arrays/search.h arrays/sort.h arrays/typed_array.h
  frame/error_numbers.h frame/export.h frame/host.h frame/host_value.h frame/module_entry.h
  host/embedded_host.h
  linalg/forward.h linalg/matrix.h linalg/vector.h linalg/vector_set.h
  optim/bisection.h optim/climb.h optim/golden_section.h optim/line_lsqm2.h optim/point_pool.h
  optim/stop_reason.h
  special/bessel_modified.h special/beta.h special/error_function.h special/f_test.h
  special/gamma.h special/random.h special/random_lock.h
  stat/float_tables.h stat/probability_functions.h stat/stat.h stat/stat_weighted.h
  tfunc/interval_search.h tfunc/owner_ring.h tfunc/tfunc.h)

foreach(library Tarn_host Tarn_base_math)
  set_target_properties(${library} PROPERTIES INSTALL_RPATH "$ORIGIN")
  target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${header_dir}>)
  target_compile_features(${library} INTERFACE cxx_std_20)
endforeach()
set_target_properties(Tarn_base_math PROPERTIES EXPORT_NAME base_math)
set_target_properties(Tarn_host PROPERTIES EXPORT_NAME host)
set_target_properties(tarn PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

install(TARGETS Tarn_base_math Tarn_host EXPORT TarnTargets
        LIBRARY COMPONENT development
        RUNTIME COMPONENT development
        ARCHIVE COMPONENT development)
install(TARGETS tarn RUNTIME COMPONENT command)
foreach(header ${public_headers})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${header_dir}/${folder} COMPONENT development)
endforeach()

install(EXPORT TarnTargets NAMESPACE Tarn:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(cmake/${package}Config.cmake.in ${PROJECT_BINARY_DIR}/${package}Config.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/${package}Config.cmake
  ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT documentation
        PATTERN html EXCLUDE)
