# Debian packages: tovik, to run dialogs, and tovik-dev, to write plug-ins, pages and programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tovik)
set(CPACK_PACKAGE_CONTACT ${maintainer})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # else the first line of both descriptions

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME tovik)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION web)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "web-application host for desktop dialogs
Shows one HTML page in a window, lets the page call a native plug-in of the
product synchronously, and writes the page's answer to a file: for PIN entry,
enrolment, signing and set-up dialogs.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME tovik-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "tovik (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEV_DESCRIPTION "web-application host for desktop dialogs - development files
Headers, CMake and pkg-config files, typings, page scripts and templates for
the authors of plug-ins, pages and calling programs, the checker, the
caller and the tracer of plug-ins, and the tools that try pages and make a
product of another brand.")

# Copyright and changelog stand where Debian looks for them.
set(changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)
add_custom_command(OUTPUT ${changelog}
  COMMAND gzip -9nc ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog > ${changelog}
  DEPENDS debian/changelog VERBATIM)
add_custom_target(changelog ALL DEPENDS ${changelog})
install(FILES debian/copyright ${changelog}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tovik COMPONENT runtime)
install(FILES debian/copyright ${changelog}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tovik-dev COMPONENT dev)
include(CPack)
