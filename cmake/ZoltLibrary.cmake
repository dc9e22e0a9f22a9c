# zolt_limit_exports(<target>)
#
# A shared library exports what exports.txt lists and nothing else, and finds those it needs beside itself. (On ELF systems;
# elsewhere it exports everything.)
set(ZOLT_EXPORTS ${CMAKE_CURRENT_LIST_DIR}/exports.txt)
function(zolt_limit_exports target)
  get_target_property(type ${target} TYPE)
  if(NOT type STREQUAL "SHARED_LIBRARY" OR NOT UNIX OR APPLE)
    return()
  endif()
  file(STRINGS ${ZOLT_EXPORTS} names REGEX "^[^#]")
  set(patterns)
  foreach(name IN LISTS names)
    # Patterns can hold neither blanks nor brackets. Classes have capitals; what follows a function's name are its
    # arguments or a mark.
    if(name MATCHES "::[A-Z][A-Za-z0-9]*$")
      string(APPEND patterns "${name}::*; *thunk?to?${name}::*; vtable?for?${name}; VTT?for?${name};\n"
                             "typeinfo?for?${name}; typeinfo?name?for?${name};\n")
    else()
      string(APPEND patterns "${name}[!a-zA-Z0-9_]*;\n")
    endif()
  endforeach()
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  file(CONFIGURE OUTPUT ${script} CONTENT "{ global: extern \"C++\" {\n@patterns@}; local: *; };\n" @ONLY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ZOLT_EXPORTS})
  target_link_options(${target} PRIVATE -Wl,--version-script=${script})
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${script} INSTALL_RPATH $ORIGIN)
endfunction()

# zolt_add_library(<name> [CORE] SOURCES … PUBLIC_HEADERS … [PRIVATE_HEADERS …] [DEPENDS …] [PRIVATE_DEPENDS …]
#                  [PKG_CONFIG <module> …] [PACKAGES <find_package arguments> …] [BASE_DIR <folder>] [PRECOMPILE <kind>])
#
# Defines the library zolt_<name> with the alias zolt::<name>, the component <name> of the installed package and the
# pkg-config module zolt-<name>. Files are named relative to the calling folder; public headers are included by their
# path from BASE_DIR (src/ of the project unless given) and installed under include/ by the same path. A library whose
# PUBLIC_HEADERS are all it has is header-only.
#
# CORE             the library gets by without exceptions and RTTI
# DEPENDS          zolt libraries that its headers include
# PRIVATE_DEPENDS  libraries that only its sources use
# PKG_CONFIG       outside libraries known to pkg-config, each with an optional version ("cairo>=1.16"); used by the
#                  sources only
# PACKAGES         outside CMake packages, one string each ("Qt6 6.2 COMPONENTS Widgets"); the library links their targets
#                  by DEPENDS or PRIVATE_DEPENDS
#
# Both kinds of outside library are searched here and, for whoever uses the installed package, there.
function(zolt_add_library name)
  cmake_parse_arguments(
    arg "CORE" "BASE_DIR;PRECOMPILE"
    "SOURCES;PUBLIC_HEADERS;PRIVATE_HEADERS;DEPENDS;PRIVATE_DEPENDS;PKG_CONFIG;PACKAGES" ${ARGN})
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zolt_add_library(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_BASE_DIR)
    set(arg_BASE_DIR ${PROJECT_SOURCE_DIR}/src)
  endif()
  set(target zolt_${name})
  if(arg_SOURCES)
    set(kind)
    set(own PRIVATE)
    set(shown PUBLIC)
  else()
    set(kind INTERFACE)
    set(own INTERFACE)
    set(shown INTERFACE)
  endif()

  set(find_code)
  foreach(package IN LISTS arg_PACKAGES)
    string(APPEND find_code "find_dependency(${package})\n")
    separate_arguments(package)
    find_package(${package} REQUIRED)
  endforeach()
  foreach(module IN LISTS arg_PKG_CONFIG)
    string(REGEX MATCH "^[A-Za-z0-9_+.-]+" module_name ${module})
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(${module_name} REQUIRED IMPORTED_TARGET ${module})
    list(APPEND arg_PRIVATE_DEPENDS PkgConfig::${module_name})
    string(APPEND find_code "find_dependency(PkgConfig)\n"
                            "pkg_check_modules(${module_name} QUIET REQUIRED IMPORTED_TARGET ${module})\n")
  endforeach()

  add_library(${target} ${kind})
  add_library(zolt::${name} ALIAS ${target})
  target_sources(${target} ${shown} FILE_SET HEADERS BASE_DIRS ${arg_BASE_DIR} FILES ${arg_PUBLIC_HEADERS})
  target_compile_features(${target} ${shown} cxx_std_17)
  target_link_libraries(${target} ${shown} ${arg_DEPENDS})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  if(arg_SOURCES)
    target_sources(${target} PRIVATE ${arg_SOURCES} ${arg_PRIVATE_HEADERS})
    target_include_directories(${target} PRIVATE ${arg_BASE_DIR})
    target_link_libraries(${target} PRIVATE ${arg_PRIVATE_DEPENDS} $<BUILD_INTERFACE:zolt_warnings>)
    set_target_properties(
      ${target} PROPERTIES CXX_EXTENSIONS OFF VERSION ${PROJECT_VERSION}
                           SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    zolt_limit_exports(${target})
    if(NOT arg_PRECOMPILE)
      set(arg_PRECOMPILE CORE)
      if(TARGET zolt_ved)
        set(arg_PRECOMPILE VED)
      endif()
    endif()
    zolt_precompile(${target} ${arg_PRECOMPILE})
    if(arg_CORE AND ZOLT_BARE_CORE)
      # A class compiled without type information cannot be derived from where there is any, so RTTI is off for whoever
      # uses the library, too. By default the core has both, for that reason.
      target_compile_options(${target} PRIVATE -fno-exceptions PUBLIC -fno-rtti)
    endif()
  endif()

  set_property(GLOBAL APPEND PROPERTY ZOLT_COMPONENTS ${name})
  set_property(GLOBAL PROPERTY ZOLT_${name}_FIND_CODE "${find_code}")
  set_property(GLOBAL PROPERTY ZOLT_${name}_DEPENDS ${arg_DEPENDS} ${arg_PRIVATE_DEPENDS})
  set_property(GLOBAL PROPERTY ZOLT_${name}_PKG_CONFIG ${arg_PKG_CONFIG})
endfunction()
