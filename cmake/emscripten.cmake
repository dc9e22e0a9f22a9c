# Toolchain file for WebAssembly: Emscripten's own, found beside its compiler, so that it need not be told where that is.
find_program(EMSCRIPTEN_COMPILER em++ REQUIRED)
file(REAL_PATH ${EMSCRIPTEN_COMPILER} emscripten_compiler)
cmake_path(GET emscripten_compiler PARENT_PATH emscripten_root)
include(${emscripten_root}/cmake/Modules/Platform/Emscripten.cmake)

# Linking runs Node.js on Debian's modules, which no other than Debian's Node.js finds by itself.
if(EXISTS /usr/share/nodejs)
  set_property(GLOBAL PROPERTY RULE_LAUNCH_LINK "${CMAKE_COMMAND} -E env NODE_PATH=/usr/share/nodejs")
endif()
