# Copies the public HEADERS below the folder FROM to the folder TO, with their includes of one
# another rewritten from "x/y.hpp" to "vqmath63/x/y.hpp". Fails when one of them includes a header
# of the project that is not public. Files that would not change keep their time.
#
# usage: cmake "-DHEADERS=x/y.hpp;..." -DFROM=src -DTO=build/include/vqmath63 -P copy_public_headers.cmake
cmake_minimum_required(VERSION 3.25)

foreach(header IN LISTS HEADERS)
  file(READ ${FROM}/${header} text)
  string(REGEX MATCHALL "#[ \t]*include[ \t]*\"[^\"]*\"" includes "${text}")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE ".*\"(.*)\"" "\\1" included "${include}")
    if(NOT included IN_LIST HEADERS)
      message(SEND_ERROR "${header} is public and includes ${included}, which is not: take that "
        "include out, or make ${included} public too (cmake/PublicHeaders.cmake)")
    endif()
  endforeach()
  string(REGEX REPLACE "(#[ \t]*include[ \t]*\")" "\\1vqmath63/" text "${text}")
  set(old "")
  if(EXISTS ${TO}/${header})
    file(READ ${TO}/${header} old)
  endif()
  if(NOT old STREQUAL text)
    file(WRITE ${TO}/${header} "${text}")
  endif()
endforeach()

# What was public once and is no longer must not stay where a host would still find it.
file(GLOB_RECURSE present RELATIVE ${TO} ${TO}/*.hpp ${TO}/*.h)
foreach(header IN LISTS present)
  if(NOT header IN_LIST HEADERS)
    file(REMOVE ${TO}/${header})
  endif()
endforeach()
