# The man page of vqhost and its completion in bash, made from what it says of itself. Without a
# Python, or where the host cannot run on this machine, they are left out.
if(CMAKE_CROSSCOMPILING)
  return()
endif()
find_package(Python3 COMPONENTS Interpreter)
if(NOT Python3_FOUND)
  message(STATUS "No Python: the man page and the completion of vqhost are not made")
  return()
endif()

set(pages ${PROJECT_BINARY_DIR}/pages)
set(generator ${PROJECT_SOURCE_DIR}/tools/host_pages.py)
add_custom_command(OUTPUT ${pages}/vqhost.1 ${pages}/vqhost.bash
  COMMAND ${CMAKE_COMMAND} -E make_directory ${pages}
  COMMAND Python3::Interpreter ${generator} man $<TARGET_FILE:vqhost> ${PROJECT_VERSION}
          ${pages}/vqhost.1
  COMMAND Python3::Interpreter ${generator} bash $<TARGET_FILE:vqhost> ${PROJECT_VERSION}
          ${pages}/vqhost.bash
  DEPENDS vqhost ${generator}
  COMMENT "Writing the man page and the completion of vqhost"
  VERBATIM)
add_custom_target(vq_host_pages ALL DEPENDS ${pages}/vqhost.1 ${pages}/vqhost.bash)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")  # Debian has its pages compressed
  find_program(VQ_GZIP gzip REQUIRED)
  add_custom_command(OUTPUT ${pages}/vqhost.1.gz
    COMMAND ${VQ_GZIP} -9 -n -c ${pages}/vqhost.1 > ${pages}/vqhost.1.gz
    DEPENDS ${pages}/vqhost.1
    COMMENT "Compressing the man page"
    VERBATIM)
  add_custom_target(vq_host_page_compressed ALL DEPENDS ${pages}/vqhost.1.gz)
  install(FILES ${pages}/vqhost.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
else()
  install(FILES ${pages}/vqhost.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
install(FILES ${pages}/vqhost.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME vqhost)
