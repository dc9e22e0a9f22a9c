# zolt_add_library(<name> SOURCES … PUBLIC_HEADERS … [PRIVATE_HEADERS …] [DEPENDS …] [PRIVATE_DEPENDS …] [CORE])
#
# Defines the library zolt_<name> with the alias zolt::<name>. Files are named relative to the calling folder; headers
# are included by their full path from src/. CORE marks the libraries that must build without exceptions and RTTI.
function(zolt_add_library name)
  cmake_parse_arguments(arg "CORE" "" "SOURCES;PUBLIC_HEADERS;PRIVATE_HEADERS;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  set(target zolt_${name})
  add_library(${target})
  add_library(zolt::${name} ALIAS ${target})
  target_sources(${target} PRIVATE ${arg_SOURCES} ${arg_PRIVATE_HEADERS})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${arg_PUBLIC_HEADERS})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name} CXX_EXTENSIONS OFF)
  target_link_libraries(${target} PUBLIC ${arg_DEPENDS} PRIVATE ${arg_PRIVATE_DEPENDS} $<BUILD_INTERFACE:zolt_warnings>)
  if(arg_CORE)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:zolt_core_flags>)
  endif()
endfunction()
