# Flags private to our own targets: linked privately and never exported, so that nothing leaks into a program that
# builds zolt as a part of itself.

# zolt_warnings: for everything we compile.
add_library(zolt_warnings INTERFACE)
if(MSVC)
  target_compile_options(zolt_warnings INTERFACE /W4 /utf-8 $<$<BOOL:${ZOLT_WERROR}>:/WX>)
else()
  target_compile_options(zolt_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                                 $<$<BOOL:${ZOLT_WERROR}>:-Werror>)
  if(ZOLT_BARE_CORE)
    target_compile_options(zolt_warnings INTERFACE -fno-rtti)
  endif()
endif()

# zolt_core_flags: for the libraries that get by without exceptions and RTTI. They are compiled without only on request,
# because a class compiled without RTTI cannot be derived from in a program that has it: its type information is missing.
add_library(zolt_core_flags INTERFACE)
if(ZOLT_BARE_CORE AND NOT MSVC)
  target_compile_options(zolt_core_flags INTERFACE -fno-exceptions)
endif()
