# Compiles, links and runs SOURCE with nothing but what pkg-config says of the modules in the folder MODULES. Everything in
# all COMPONENTS is linked, so that a library that they need and pkg-config does not name is missed.
set(ENV{PKG_CONFIG_PATH} ${MODULES})
string(REPLACE "," ";zolt-" names zolt-${COMPONENTS})
execute_process(
  COMMAND ${PKG_CONFIG} --cflags --libs ${names}
  OUTPUT_VARIABLE flags
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND ${flags})
execute_process(COMMAND ${CXX} -std=c++17 -fPIC ${SOURCE} -o ${PROGRAM} -Wl,--whole-archive ${flags} -Wl,--no-whole-archive
                        -Wl,-rpath,${MODULES}/.. COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PROGRAM} COMMAND_ERROR_IS_FATAL ANY)
