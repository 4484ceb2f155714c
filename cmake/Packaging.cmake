# Installation and the Debian package. `cmake --install` puts KSManCMD and
# KSManUtil in bin/ and their manual pages in share/man/man1/; `cpack -G DEB`
# in a build folder wraps the same files in a .deb whose library dependencies
# dpkg-shlibdeps works out from the built programs.
include(GNUInstallDirs)

install(TARGETS KSManCMD KSManUtil RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/man/KSManCMD.1 ${PROJECT_SOURCE_DIR}/man/KSManUtil.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

set(KSMAN_DEB_MAINTAINER "KSManCMD maintainers <ksmancmd@example.org>"
    CACHE STRING "Maintainer field of the Debian package")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ksmancmd)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Kestrin tool set")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keeps a target's type database up to date from C signal headers")
# Debian wants the long description in lines of under 80 characters.
string(CONCAT CPACK_PACKAGE_DESCRIPTION
  "KSManCMD loads the type database file of a target's software, parses a C\n"
  "header of signal definitions (structures, enumerations, unions, #define,\n"
  "conditional compilation, constant expressions, sizeof) and writes the file\n"
  "back with what it found. KSManUtil merges an Init database with a\n"
  "predefined one, generates a packed C header from a signals header and\n"
  "updates the exports section of a module-definition file.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${KSMAN_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
include(CPack)
