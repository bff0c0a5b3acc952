# Capstan as an installed program and a Debian package (`make package`, build/capstan_*.deb).
# Install rules: the data files' in resources/, the program's in src/app, the library's in
# src/mediaencoder.
include(GNUInstallDirs)

# The installed program finds libMediaEncoder.so in its own prefix's lib folder, wherever the
# prefix is; in the build tree it keeps its build RUNPATH.
set_target_properties(capstan PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
# `capstan --version` says the project's version, the one the package carries.
target_compile_definitions(capstan PRIVATE CAPSTAN_VERSION="${PROJECT_VERSION}")
# Building the program alone (`ninja capstan`) still leaves all that `cmake --install` takes.
add_dependencies(capstan capstan_icons)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME capstan)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Capstan developers")
set(CPACK_PACKAGE_CONTACT "Capstan developers <dev@capstan.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Screen recorder with sound")
set(CPACK_PACKAGE_DESCRIPTION "Capstan records a whole screen, a window or an area, or sound \
alone, with the microphone and the computer's own sound, on X11 with PulseAudio or PipeWire.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# RelWithDebInfo's debug information would make the package ten times its size.
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://capstan.org)
# The libraries the program and libMediaEncoder.so link against, by dpkg-shlibdeps...
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# ...and what Qt loads at run time: the images and icons are SVG, drawn by QtSvg's image
# and icon plugins (the X11 platform plugin comes with libqt6gui6, which the program links).
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6 (>= 6.4.0)")
# Files open through xdg-open; sound is recorded from a PulseAudio or PipeWire server.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, pulseaudio | pipewire-pulse")
include(CPack)
