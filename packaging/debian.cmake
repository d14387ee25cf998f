# `cpack -G DEB` in the build folder: one package with everything, trl20_VERSION-1_ARCHITECTURE.deb.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "trl20 developers <developers@trl20.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME trl20)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "run OpenGL ES 1.1 programs on an OpenGL ES 2.0 driver")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Runs unmodified programs that were written for OpenGL ES 1.1 on machines whose
driver offers only OpenGL ES 2.0 or later. Every state of the fixed functions
becomes a shader program of its own, and the program is cached.

The command trl20 puts a private pair of libEGL and libGLESv1_CM before the
machine's for the one program that it starts; other programs never meet it.")
# The driver's libraries are opened by name while a program runs, so no file shows the need of them.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libegl1, libgles2")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libegl-dev, libgles-dev, pkgconf")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

# Debian's own list of changes, which no other installation has.
file(TIMESTAMP ${CMAKE_SOURCE_DIR}/CHANGELOG.md package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(CONFIGURE OUTPUT changelog.Debian @ONLY CONTENT
"trl20 (@PROJECT_VERSION@-@CPACK_DEBIAN_PACKAGE_RELEASE@) unstable; urgency=medium

  * Version @PROJECT_VERSION@; changelog.gz tells what is new.

 -- @CPACK_PACKAGE_CONTACT@  @package_date@
")
compress(${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian changelog.Debian.gz)
file(CONFIGURE OUTPUT add_changelog.cmake @ONLY CONTENT
"file(COPY \"@CMAKE_CURRENT_BINARY_DIR@/changelog.Debian.gz\"
  DESTINATION \"\${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/@CMAKE_INSTALL_DOCDIR@\")
")
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/add_changelog.cmake)

include(CPack)
