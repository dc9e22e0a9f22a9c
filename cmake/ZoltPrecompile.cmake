# zolt_precompile(<target> <kind>)
#
# With ZOLT_PRECOMPILE, the headers of others that the target's files include are parsed once for all targets of a kind
# (CORE, TEST or QT) rather than once for each file. Every file still includes what it needs: most presets do
# without.
set(ZOLT_PRECOMPILED_CORE <algorithm> <cstddef> <cstdint> <functional> <map> <memory> <optional> <string> <utility> <vector>)
set(ZOLT_PRECOMPILED_TEST ${ZOLT_PRECOMPILED_CORE} <gtest/gtest.h>)
set(ZOLT_PRECOMPILED_QT ${ZOLT_PRECOMPILED_CORE} <QHash> <QMainWindow> <QMenu> <QPainter> <QPointer> <QVariant>)

function(zolt_precompile target kind)
  get_target_property(type ${target} TYPE)
  if(NOT ZOLT_PRECOMPILE OR type STREQUAL "INTERFACE_LIBRARY")
    return()
  endif()
  set(owner zolt_precompiled_${kind})
  if(NOT TARGET ${owner})
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/${owner}.cpp CONTENT "")
    add_library(${owner} OBJECT EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/${owner}.cpp)
    target_compile_features(${owner} PRIVATE cxx_std_17)
    target_link_libraries(${owner} PRIVATE zolt_warnings)
    set_target_properties(${owner} PROPERTIES CXX_EXTENSIONS OFF AUTOMOC OFF AUTORCC OFF POSITION_INDEPENDENT_CODE
                                                                                         "${BUILD_SHARED_LIBS}")
    if(kind STREQUAL "TEST")
      target_link_libraries(${owner} PRIVATE GTest::gtest)
    endif()
    if(kind STREQUAL "QT")
      target_link_libraries(${owner} PRIVATE Qt6::Widgets)
    endif()
    target_precompile_headers(${owner} PRIVATE ${ZOLT_PRECOMPILED_${kind}})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()
