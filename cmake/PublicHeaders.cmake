# The headers that a host includes as <vqmath63/ROOM/NAME.hpp>; those that end with .h are for C too.
# In the sources they include one another as "ROOM/NAME.hpp"; a build makes the tree of them below
# VQ_PUBLIC_INCLUDE, which is installed as it is. A public header may include public headers only.
set(VQ_PUBLIC_HEADERS
  accumulate/accumulate.hpp
  automation/system/base.hpp
  automation/system/codes.hpp
  automation/system/functions.hpp
  automation/system/interfaces.hpp
  automation/system/types.hpp
  automation/system/variant.hpp
  automation/types.hpp
  calculus/differentiate.hpp
  calculus/integrate.hpp
  component/by_name.h
  component/by_name_library.h
  component/by_name_values.h
  component/exports.hpp
  frame/array.hpp
  frame/array_tools.hpp
  frame/common_maths.hpp
  frame/companions.hpp
  frame/date.hpp
  frame/date_tools.hpp
  frame/error_handler.hpp
  frame/fault.hpp
  frame/memory.hpp
  frame/message_receivers.hpp
  frame/sort_tools.hpp
  geometry/cell.hpp
  geometry/polygon.hpp
  geometry/records.hpp
  geometry/vectors.hpp
  info/analyse_info.hpp
  mathlib/math_lib.hpp
  petroleum/petroleum.hpp
  regression/least_squares.hpp
  regression/line_fit.hpp
  regression/matrix.hpp
  regression/regression.hpp
  statistics/probability.hpp
  statistics/sample.hpp
  statistics/statistics.hpp
  statistics/sums.hpp)

# A class that hosts create by name is there for hosts in C++ too.
file(GLOB vq_member_tables CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/src src/*/*_members.hpp)
list(TRANSFORM vq_member_tables REPLACE "_members\\.hpp$" ".hpp")
list(REMOVE_ITEM vq_member_tables ${VQ_PUBLIC_HEADERS})
if(vq_member_tables)
  message(FATAL_ERROR "cmake/PublicHeaders.cmake does not list ${vq_member_tables}")
endif()

set(VQ_PUBLIC_INCLUDE ${PROJECT_BINARY_DIR}/include)

list(TRANSFORM VQ_PUBLIC_HEADERS PREPEND ${PROJECT_SOURCE_DIR}/src/ OUTPUT_VARIABLE vq_header_sources)
list(TRANSFORM VQ_PUBLIC_HEADERS PREPEND ${VQ_PUBLIC_INCLUDE}/vqmath63/ OUTPUT_VARIABLE vq_header_copies)
set(vq_headers_done ${PROJECT_BINARY_DIR}/public_headers.done)
add_custom_command(OUTPUT ${vq_headers_done}
  COMMAND ${CMAKE_COMMAND} "-DHEADERS=${VQ_PUBLIC_HEADERS}" -DFROM=${PROJECT_SOURCE_DIR}/src
          -DTO=${VQ_PUBLIC_INCLUDE}/vqmath63 -P ${CMAKE_CURRENT_LIST_DIR}/copy_public_headers.cmake
  COMMAND ${CMAKE_COMMAND} -E touch ${vq_headers_done}
  DEPENDS ${vq_header_sources} ${CMAKE_CURRENT_LIST_DIR}/copy_public_headers.cmake
          ${CMAKE_CURRENT_LIST_FILE}
  BYPRODUCTS ${vq_header_copies}
  COMMENT "Making the tree of public headers"
  VERBATIM)
add_custom_target(vq_public_headers ALL DEPENDS ${vq_headers_done})

# vq_offer_public_headers(<target>): who links to the target finds <vqmath63/...>, in the build tree
# and where it is installed.
function(vq_offer_public_headers target)
  add_dependencies(${target} vq_public_headers)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${VQ_PUBLIC_INCLUDE}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endfunction()
