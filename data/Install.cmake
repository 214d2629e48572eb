# Installing Marlo like a desktop program: the executables in bin, the library template in the
# data folder the program looks in (share/marlo, which src/base/mServices.h names relative to bin),
# the desktop entry, the icon and the AppStream metainfo in the XDG places, a manual page for each
# executable, and the copyright file and changelog Debian asks for. `cpack -G DEB` makes a
# Debian package that depends on Debian's Qt packages. The PNG icons are rendered from the SVG at
# commit time, the smaller ones drawn down from the largest:
#   rsvg-convert -w 256 -h 256 data/desktop/marlo.svg -o data/desktop/marlo-256.png
#   convert data/desktop/marlo-256.png -filter Lanczos -resize 64x64 -strip PNG32:data/desktop/marlo-64.png
include(GNUInstallDirs)

install(TARGETS marlo marlo-cli marlo-gripsim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_CURRENT_LIST_DIR}/desktop/marlo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/desktop/marlo.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size IN LISTS MARLO_ICON_SIZES)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/desktop/marlo-${size}.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
          RENAME marlo.png)
endforeach()
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/marlo)

# ---- the date of this version ------------------------------------------------------------
# $SOURCE_DATE_EPOCH when set (reproducible builds), else the time of the last commit, else now:
# the same sources give the same changelog, metainfo and manual pages.
set(_marlo_epoch "$ENV{SOURCE_DATE_EPOCH}")
if(NOT _marlo_epoch)
  find_package(Git QUIET)
  if(GIT_FOUND)
    execute_process(COMMAND ${GIT_EXECUTABLE} log -1 --format=%ct WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
                    OUTPUT_VARIABLE _marlo_epoch OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE _marlo_git)
    if(NOT _marlo_git EQUAL 0 OR NOT _marlo_epoch MATCHES "^[0-9]+$")
      set(_marlo_epoch "")
    endif()
  endif()
endif()
set(_marlo_saved_epoch "$ENV{SOURCE_DATE_EPOCH}")
if(_marlo_epoch)
  set(ENV{SOURCE_DATE_EPOCH} ${_marlo_epoch}) # string(TIMESTAMP) formats this time
endif()
string(TIMESTAMP MARLO_RELEASE_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP MARLO_RELEASE_RFC2822 "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(ENV{SOURCE_DATE_EPOCH} "${_marlo_saved_epoch}")

# ---- the maintainer ----------------------------------------------------------------------
# As Debian's tools take it: $DEBFULLNAME and $DEBEMAIL (which may also be "Name <address>"),
# read at configure time; MARLO_DEB_MAINTAINER overrides both. Without them the package names
# the project itself at an address that reaches no one: a real release sets one of the above.
set(MARLO_DEB_MAINTAINER "" CACHE STRING
    "Maintainer of the Debian package, \"Name <address>\" (empty: $DEBFULLNAME <$DEBEMAIL>, else the project)")
set(_marlo_maintainer "${MARLO_DEB_MAINTAINER}")
if(NOT _marlo_maintainer AND NOT "$ENV{DEBEMAIL}" STREQUAL "")
  set(_marlo_name "$ENV{DEBFULLNAME}")
  set(_marlo_address "$ENV{DEBEMAIL}")
  if(_marlo_address MATCHES "^(.*[^ ]) *<([^>]+)>$")
    if(NOT _marlo_name)
      set(_marlo_name "${CMAKE_MATCH_1}")
    endif()
    set(_marlo_address "${CMAKE_MATCH_2}")
  endif()
  if(NOT _marlo_name)
    message(FATAL_ERROR "DEBEMAIL is set but no name goes with it: set DEBFULLNAME too")
  endif()
  set(_marlo_maintainer "${_marlo_name} <${_marlo_address}>")
endif()
if(NOT _marlo_maintainer)
  set(_marlo_maintainer "Marlo developers <maintainers@marlo.invalid>")
  message(STATUS "Debian package maintainer: ${_marlo_maintainer} (set DEBFULLNAME and DEBEMAIL for a real one)")
endif()
if(NOT _marlo_maintainer MATCHES "^[^<>]+ <[^<> ]+@[^<> ]+>$")
  message(FATAL_ERROR "The package maintainer must read \"Name <address>\", not \"${_marlo_maintainer}\"")
endif()
set(MARLO_PACKAGE_MAINTAINER "${_marlo_maintainer}")

set(MARLO_DEB_REVISION 1 CACHE STRING "Debian revision of the package (its version is PROJECT_VERSION-REVISION)")
set(MARLO_DEB_VERSION "${PROJECT_VERSION}-${MARLO_DEB_REVISION}")

find_program(MARLO_GZIP gzip REQUIRED)

# ---- manual pages, made from the programs' own --help --------------------------------------
# Each page is the program's usage (its commands, fields and options come from the same tables)
# turned into roff, with the hand-written sections of data/man added.
add_executable(MakeManPage ${CMAKE_CURRENT_LIST_DIR}/man/MakeManPage.cpp)
target_link_libraries(MakeManPage PRIVATE Qt6::Core)
set_target_properties(MakeManPage PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tools)

set(MARLO_MANUAL_PAGES)
# Rewritten only when they change, so that a new version or date remakes the pages.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/man/version.stamp CONTENT "${PROJECT_VERSION} ${MARLO_RELEASE_DATE}\n")
function(marlo_manual_page program summary)
  set(page ${CMAKE_BINARY_DIR}/man/${program}.1)
  set(extras)
  foreach(extra IN LISTS ARGN)
    list(APPEND extras ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/man/${extra})
  endforeach()
  add_custom_command(
    OUTPUT ${page}.gz
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/man
    COMMAND MakeManPage $<TARGET_FILE:${program}> ${program} ${summary} ${PROJECT_VERSION} ${MARLO_RELEASE_DATE} ${page} ${extras}
    COMMAND ${MARLO_GZIP} -9nf ${page}
    DEPENDS MakeManPage ${program} ${extras} ${CMAKE_BINARY_DIR}/man/version.stamp
    COMMENT "Making the manual page ${program}(1)"
    VERBATIM)
  set(MARLO_MANUAL_PAGES ${MARLO_MANUAL_PAGES} ${page}.gz PARENT_SCOPE)
endfunction()
marlo_manual_page(marlo "configure a Tolvane paintball-marker grip over a serial port"
                  files.1.extra marlo.1.extra)
marlo_manual_page(marlo-cli "configure a Tolvane paintball-marker grip from the command line"
                  files.1.extra marlo-cli.1.extra)
marlo_manual_page(marlo-gripsim "serve a virtual Tolvane grip on a pseudo-terminal"
                  marlo-gripsim.1.extra)
add_custom_target(manual_pages ALL DEPENDS ${MARLO_MANUAL_PAGES})
install(FILES ${MARLO_MANUAL_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# ---- AppStream metainfo ------------------------------------------------------------------
set(MARLO_METAINFO ${CMAKE_BINARY_DIR}/metainfo/io.github.marlo_grip.marlo.metainfo.xml)
configure_file(${CMAKE_CURRENT_LIST_DIR}/desktop/io.github.marlo_grip.marlo.metainfo.xml.in ${MARLO_METAINFO} @ONLY)
install(FILES ${MARLO_METAINFO} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# ---- the copyright file and the changelog of the package -----------------------------------
configure_file(${CMAKE_CURRENT_LIST_DIR}/deb/changelog.in ${CMAKE_BINARY_DIR}/deb/changelog.Debian @ONLY)
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/deb/changelog.Debian.gz
  COMMAND ${MARLO_GZIP} -9nkf ${CMAKE_BINARY_DIR}/deb/changelog.Debian
  DEPENDS ${CMAKE_BINARY_DIR}/deb/changelog.Debian
  VERBATIM)
add_custom_target(package_changelog ALL DEPENDS ${CMAKE_BINARY_DIR}/deb/changelog.Debian.gz)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/deb/copyright ${CMAKE_BINARY_DIR}/deb/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/marlo)

# ---- the Debian package ------------------------------------------------------------------
set(CPACK_PACKAGE_NAME marlo)
set(CPACK_PACKAGE_VENDOR "Marlo")
set(CPACK_PACKAGE_CONTACT "${MARLO_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${MARLO_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configurator for Tolvane paintball-marker grips")
# The long description, in lines of at most 80 characters; cpack puts the summary above it.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Marlo gets and puts a Tolvane electronic paintball-marker grip's timing
settings, options, ramping settings and game timers over a serial port. It
reads the grip's counters, battery and build information, resets its counters,
reads, writes and verifies its firmware, and keeps a library of named settings.

Besides the desktop program marlo, the package holds the command-line program
marlo-cli, for scripts and machines without a display, and a virtual grip,
marlo-gripsim, that serves a grip on a pseudo-terminal so that everything can
be tried without hardware.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${MARLO_DEB_REVISION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Stripped like Debian's packages by data/deb/PrepareDeb.cmake, which also adds the overrides.
set(CPACK_STRIP_FILES OFF)
find_program(MARLO_STRIP NAMES ${CMAKE_STRIP} strip REQUIRED)
set(CPACK_MARLO_STRIP ${MARLO_STRIP})
set(CPACK_MARLO_LINTIAN_OVERRIDES ${CMAKE_CURRENT_LIST_DIR}/deb/lintian-overrides)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/deb/PrepareDeb.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
# The Qt libraries follow from the executables (dpkg-shlibdeps); the SQLite driver is a plugin
# that no executable links, so it is named.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt's own translations (the standard buttons and dialogs in the user's language) come from
# qt6-translations-l10n.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite (>= 6.4), qt6-translations-l10n (>= 6.4)")
include(CPack)
