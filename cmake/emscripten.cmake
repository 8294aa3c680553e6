# Cross build to WebAssembly with Debian's emscripten; programs run in Node.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
get_filename_component(javascript ${CMAKE_CURRENT_LIST_DIR}/../javascript ABSOLUTE)
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -include ${javascript}/library.hpp")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fwasm-exceptions -sALLOW_MEMORY_GROWTH=1")
