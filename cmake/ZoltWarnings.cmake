# zolt_warnings: flags private to what we compile ourselves, linked privately and never exported, so that nothing leaks
# into a program that builds zolt as a part of itself.
add_library(zolt_warnings INTERFACE)
if(MSVC)
  target_compile_options(zolt_warnings INTERFACE /W4 /utf-8 $<$<BOOL:${ZOLT_WERROR}>:/WX>)
else()
  target_compile_options(zolt_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                                 $<$<BOOL:${ZOLT_WERROR}>:-Werror>)
  if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # It takes a source that is compiled together with others for a header.
    target_compile_options(zolt_warnings INTERFACE -Wno-subobject-linkage)
  endif()
endif()
