# Debian packages, by CPack: "cmake --preset debian && cmake --build --preset debian" leaves them in build/debian. The preset
# builds shared libraries for the prefix /usr; tools/try_packages tries the packages in a root of their own.
set(abi ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR zolt)
# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "zolt developers <zolt@localhost>")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION math)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# Where the libraries of the other packages are while dependencies are looked for.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS)
get_property(components GLOBAL PROPERTY ZOLT_COMPONENTS)
foreach(component IN LISTS components)
  get_target_property(folder zolt_${component} BINARY_DIR)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${folder})
endforeach()

# zolt_add_debian_package(<install component> <name> <summary> <description> [<key> <value> …]): the keys are those of CPack's
# variables for one package, and NEEDS for another of these packages.
function(zolt_add_debian_package part name summary description)
  string(TOUPPER ${part} upper)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${part} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
  set(needs)
  while(ARGN)
    list(POP_FRONT ARGN key value)
    if(key STREQUAL "NEEDS")
      list(APPEND needs ${value})
      set(CPACK_COMPONENT_${upper}_DEPENDS ${needs} PARENT_SCOPE)
    else()
      set(CPACK_DEBIAN_${upper}_PACKAGE_${key} "${value}" PARENT_SCOPE)
    endif()
  endwhile()
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} RENAME copyright
          COMPONENT ${part})
endfunction()

set(CPACK_COMPONENTS_ALL)
set(fonts "fonts-katex, fonts-dejavu-core")
zolt_add_debian_package(libraries libzolt${abi} "formula editor component"
                        "A component in which a person reads and edits one formula in its textbook form." SECTION libs)
set(all_libraries libraries)
if(TARGET zolt_surface_cairo)
  zolt_add_debian_package(
    library_surface_cairo libzolt-cairo${abi} "formula editor component (pictures)"
    "Formulas as PNG, SVG and PDF pictures." SECTION libs NEEDS libraries RECOMMENDS ${fonts})
  list(APPEND all_libraries library_surface_cairo)
endif()
if(TARGET zolt_qt)
  zolt_add_debian_package(
    library_qt libzolt-qt${abi} "formula editor component (Qt 6 widget)"
    "An input field for formulas, used as a line edit is." SECTION libs NEEDS libraries RECOMMENDS ${fonts})
  list(APPEND all_libraries library_qt)
  zolt_add_debian_package(
    desktop zolt-ved-desktop "sheets of formulas in a window" "Edits sheets of formulas, and exports and prints them." NEEDS
    libraries NEEDS library_qt DEPENDS ${fonts} RECOMMENDS "shared-mime-info, desktop-file-utils, hicolor-icon-theme" SUGGESTS zolt-giac)
endif()
if(TARGET zolt_designer)
  zolt_add_debian_package(designer zolt-designer "formula widget in Qt Designer" "Shows the Qt 6 widget in forms." SECTION
                          devel NEEDS libraries NEEDS library_qt)
endif()
if(TARGET ved)
  zolt_add_debian_package(tools zolt-ved "formulas as pictures and in other notations"
                          "Draws formulas, and converts them between notations, many at a time." NEEDS libraries NEEDS
                          library_surface_cairo DEPENDS ${fonts} SUGGESTS zolt-giac)
endif()
if(TARGET ved-giac-worker)
  zolt_add_debian_package(giac zolt-giac "formulas computed by an algebra system"
                          "The worker that computes for zolt-ved and zolt-ved-desktop, under the GPL." NEEDS libraries)
endif()
set(needs)
foreach(part IN LISTS all_libraries)
  list(APPEND needs NEEDS ${part})
endforeach()
zolt_add_debian_package(
  development libzolt-dev "formula editor component (development files)"
  "Headers, and what CMake and pkg-config need." SECTION libdevel ${needs} RECOMMENDS
  "libexpat1-dev, libcairo2-dev, libfreetype-dev, libharfbuzz-dev, qt6-base-dev, qt6-svg-dev")
include(CPack)
