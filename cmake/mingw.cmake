# What the cross builds for Windows share; VQ_MINGW is the prefix of the tools' names.
# The posix compilers have the threads of the C++ library.
set(CMAKE_CXX_COMPILER ${VQ_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${VQ_MINGW}-windres)
set(VQ_WIDL ${VQ_MINGW}-widl)
set(VQ_OBJDUMP ${VQ_MINGW}-objdump)
set(CMAKE_FIND_ROOT_PATH /usr/${VQ_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
