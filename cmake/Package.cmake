# The Debian package: `cpack -G DEB` in the folder of a build that was configured with
# -DCMAKE_INSTALL_PREFIX=/usr. One package holds everything: what the component tells of its file's
# date it reads through the library's name without a version.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vqmath63)
set(CPACK_PACKAGE_VENDOR vqmath63)
set(CPACK_PACKAGE_CONTACT "vqmath63 <vqmath63@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION "Integration, differentiation, statistics, regression, special \
functions, volume factors, cell geometry and the accumulation of production profiles: a C++ library, \
an automation component that other languages call by name, and the command-line host vqhost.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
find_program(VQ_SHLIBDEPS dpkg-shlibdeps)
if(VQ_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.36), libgcc-s1 (>= 3.0), libstdc++6 (>= 12)")
endif()

# Only Debian's own layout has a place for these.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  find_program(VQ_GZIP gzip REQUIRED)
  set(compressed ${PROJECT_BINARY_DIR}/changelog.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${VQ_GZIP} -9 -n -c ${PROJECT_SOURCE_DIR}/CHANGELOG.md > ${compressed}
    DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    COMMENT "Compressing the change log"
    VERBATIM)
  add_custom_target(vq_changelog ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()
include(CPack)
