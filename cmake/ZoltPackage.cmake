# Installs the libraries, their headers, a CMake package "zolt" with one component per library, and a pkg-config module
# zolt-<component> for each. Both are relocatable: they find their files from their own place. What is installed is in parts
# (install components): "libraries", "library_<component>" for one that needs others from outside, "development",
# "designer", "tools" and "desktop".
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zolt)
set(pkg_config_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(staging ${CMAKE_CURRENT_BINARY_DIR}/package)

get_property(ZOLT_ALL_COMPONENTS GLOBAL PROPERTY ZOLT_COMPONENTS)
set(ZOLT_DEFAULT_COMPONENTS)
file(RELATIVE_PATH ZOLT_PREFIX_FROM_PC /${pkg_config_dir} /)

# All that `cmake --install --component development` needs.
list(TRANSFORM ZOLT_ALL_COMPONENTS PREPEND zolt_ OUTPUT_VARIABLE all_libraries)
add_custom_target(libraries)
add_dependencies(libraries ${all_libraries})

foreach(component IN LISTS ZOLT_ALL_COMPONENTS)
  get_property(find_code GLOBAL PROPERTY ZOLT_${component}_FIND_CODE)
  get_property(depends GLOBAL PROPERTY ZOLT_${component}_DEPENDS)
  get_property(modules GLOBAL PROPERTY ZOLT_${component}_PKG_CONFIG)
  get_target_property(kind zolt_${component} TYPE)
  list(FILTER depends INCLUDE REGEX "^zolt::")
  list(TRANSFORM depends REPLACE "^zolt::" "")

  # What needs a large library of others is installed only by who wants it.
  set(part libraries)
  if(component MATCHES "^(surface_cairo|qt)$")
    set(part library_${component})
  endif()
  install(
    TARGETS zolt_${component}
    EXPORT zolt-${component}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${part} NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${part}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
  install(EXPORT zolt-${component} NAMESPACE zolt:: FILE zolt-${component}-targets.cmake DESTINATION ${package_dir}
          COMPONENT development)

  set(ZOLT_COMPONENT ${component})
  set(ZOLT_FIND_CODE ${find_code})
  set(ZOLT_COMPONENT_DEPENDS ${depends})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/zolt-component.cmake.in ${staging}/zolt-${component}.cmake @ONLY)
  install(FILES ${staging}/zolt-${component}.cmake DESTINATION ${package_dir} COMPONENT development)
  if(NOT find_code)
    list(APPEND ZOLT_DEFAULT_COMPONENTS ${component})
  endif()

  list(TRANSFORM depends PREPEND zolt-)
  list(TRANSFORM modules REPLACE "(>=|=|<=)" " \\1 ")
  # Whoever links a static library links what that needs, too.
  if(NOT BUILD_SHARED_LIBS)
    list(APPEND depends ${modules})
    set(modules)
  endif()
  list(JOIN depends ", " ZOLT_PC_REQUIRES)
  list(JOIN modules ", " ZOLT_PC_REQUIRES_PRIVATE)
  if(kind STREQUAL "INTERFACE_LIBRARY")
    set(ZOLT_PC_LIBS)
  else()
    set(ZOLT_PC_LIBS "-L\${libdir} -lzolt_${component}")
  endif()
  get_target_property(ZOLT_PC_CFLAGS zolt_${component} INTERFACE_COMPILE_OPTIONS)
  if(NOT ZOLT_PC_CFLAGS)
    set(ZOLT_PC_CFLAGS)
  endif()
  configure_file(${CMAKE_CURRENT_LIST_DIR}/zolt.pc.in ${staging}/zolt-${component}.pc @ONLY)
  install(FILES ${staging}/zolt-${component}.pc DESTINATION ${pkg_config_dir} COMPONENT development)
endforeach()

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zolt-config.cmake.in ${staging}/zolt-config.cmake
                              INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${staging}/zolt-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${staging}/zolt-config.cmake ${staging}/zolt-config-version.cmake DESTINATION ${package_dir}
        COMPONENT development)
if(NOT ZOLT_DEBIAN_PACKAGES)
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
endif()
