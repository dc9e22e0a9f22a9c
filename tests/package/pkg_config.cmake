# Compiles, links and runs SOURCE with nothing but what pkg-config says of the modules in the folder MODULES, asked for
# STATIC libraries or not.
set(ENV{PKG_CONFIG_PATH} ${MODULES})
execute_process(
  COMMAND ${PKG_CONFIG} --cflags --libs ${STATIC} zolt-catalogue zolt-surface_recording
  OUTPUT_VARIABLE flags
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND ${flags})
execute_process(COMMAND ${CXX} -std=c++17 ${SOURCE} -o ${PROGRAM} ${flags} -Wl,-rpath,${MODULES}/.. COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PROGRAM} COMMAND_ERROR_IS_FATAL ANY)
