# What `cmake --install` puts where: libraries, public headers, the files by which CMake and
# pkg-config find them, and the host with its man page and completion.
include(CMakePackageConfigHelpers)

set(VQ_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/vqmath63)

install(TARGETS vq_core vqmath63 EXPORT vqmath63
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${VQ_PUBLIC_INCLUDE}/vqmath63 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT vqmath63 NAMESPACE vqmath63:: FILE vqmath63-targets.cmake
  DESTINATION ${VQ_CMAKE_FOLDER})
configure_package_config_file(packaging/cmake/vqmath63-config.cmake.in
  ${PROJECT_BINARY_DIR}/vqmath63-config.cmake INSTALL_DESTINATION ${VQ_CMAKE_FOLDER}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vqmath63-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vqmath63-config.cmake
  ${PROJECT_BINARY_DIR}/vqmath63-config-version.cmake DESTINATION ${VQ_CMAKE_FOLDER})

if(NOT WIN32)
  # Relative to the file itself, so that an installed tree may be moved.
  file(RELATIVE_PATH VQ_PC_TO_PREFIX
    /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  string(REGEX REPLACE "/$" "" VQ_PC_TO_PREFIX "${VQ_PC_TO_PREFIX}")
  foreach(name IN ITEMS vqmath63 vqmath63-component)
    configure_file(packaging/pkgconfig/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  endforeach()
endif()

if(WIN32)
  install(FILES $<TARGET_FILE_DIR:vqmath63>/vqmath63.manifest
    DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

if(TARGET vqhost)
  file(RELATIVE_PATH library_from_host
    /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
  set_target_properties(vqhost PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_host}")
  install(TARGETS vqhost RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  include(cmake/HostPages.cmake)
endif()

if(PROJECT_IS_TOP_LEVEL AND NOT WIN32)
  include(cmake/Package.cmake)
endif()
