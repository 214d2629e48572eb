# Installing Marlo like a desktop program: the executables in bin, the library template in the
# data folder the program looks in (share/marlo, which src/base/mServices.h names relative to bin),
# the desktop entry and the icon in the XDG places. `cpack -G DEB` makes a Debian package that
# depends on Debian's Qt packages. The PNG icon is rendered from the SVG at commit time:
#   rsvg-convert -w 256 -h 256 data/desktop/marlo.svg -o data/desktop/marlo-256.png
include(GNUInstallDirs)

install(TARGETS marlo marlo-cli marlo-gripsim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_CURRENT_LIST_DIR}/desktop/marlo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/desktop/marlo.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/desktop/marlo-256.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/256x256/apps
        RENAME marlo.png)
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/marlo)

set(CPACK_PACKAGE_NAME marlo)
set(CPACK_PACKAGE_VENDOR "Marlo")
set(CPACK_PACKAGE_CONTACT "Marlo developers <marlo@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configurator for Tolvane paintball-marker grips")
set(CPACK_PACKAGE_DESCRIPTION
    "Marlo gets and puts a Tolvane electronic paintball-marker grip's timing settings, options, ramping and game timers over a serial port, reads its counters, battery and build information, reads, writes and verifies its firmware, and keeps a library of named settings. It comes with the command-line program marlo-cli and a virtual grip, marlo-gripsim.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
# The Qt libraries follow from the executables (dpkg-shlibdeps); the SQLite driver is a plugin
# that no executable links, so it is named.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite (>= 6.4)")
include(CPack)
