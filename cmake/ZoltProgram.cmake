# zolt_add_program(<name> SOURCES … LIBRARIES … [NO_INSTALL])
#
# A program of ours: compiled as the libraries are, able to include any header by its path from src/ or from the
# project's folder, installed with the project unless NO_INSTALL.
function(zolt_add_program name)
  cmake_parse_arguments(arg "NO_INSTALL" "" "SOURCES;LIBRARIES" ${ARGN})
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zolt_add_program(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} zolt_warnings)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  if(ZOLT_INSTALL AND NOT arg_NO_INSTALL)
    include(GNUInstallDirs)
    install(TARGETS ${name} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endfunction()
