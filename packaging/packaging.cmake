# What is installed where, and the Debian package, which scripts/package makes.
include(GNUInstallDirs)

set(QUILLMERE_ID org.quillmere.Quillmere)
set(QUILLMERE_WEB_SITE "https://www.quillmere.example" CACHE STRING "Where software centres find pictures of the program")
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)  # whatever the umask of who installs it
include(packaging/guide.cmake)

install(TARGETS quillmere quillmere-render RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS quillmere-engine quillmere-network LIBRARY DESTINATION ${QUILLMERE_MODULE_FOLDER})
install(DIRECTORY ${GUIDE_FOLDER}/ DESTINATION ${QUILLMERE_GUIDE_FOLDER})
install(FILES packaging/${QUILLMERE_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/quillmere.1 packaging/quillmere-render.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/copyright packaging/README DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quillmere)
install(FILES resources/vector/app_quillmere.svg RENAME quillmere.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 24 32 48 64 128 256 512)
  install(FILES resources/images/app_quillmere_${size}.png RENAME quillmere.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

# Software centres are told of the kinds of files that the desktop file names.
file(STRINGS packaging/${QUILLMERE_ID}.desktop QUILLMERE_MEDIA_TYPES REGEX "^MimeType=")
string(REGEX REPLACE "^MimeType=" "" QUILLMERE_MEDIA_TYPES "${QUILLMERE_MEDIA_TYPES}")
string(REGEX REPLACE "([^;]+);" "\n    <mediatype>\\1</mediatype>" QUILLMERE_MEDIA_TYPES "${QUILLMERE_MEDIA_TYPES}")
configure_file(packaging/${QUILLMERE_ID}.metainfo.xml.in ${QUILLMERE_ID}.metainfo.xml @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/${QUILLMERE_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# By this file the bus finds the program, wherever it is installed.
set(QUILLMERE_PREFIX "@QUILLMERE_PREFIX@")  # known when it is installed
configure_file(packaging/${QUILLMERE_ID}.service.in ${QUILLMERE_ID}.service.in @ONLY)
set(QUILLMERE_SERVICE ${CMAKE_INSTALL_DATADIR}/dbus-1/services/${QUILLMERE_ID}.service)
install(CODE "set(QUILLMERE_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
  configure_file(\"${CMAKE_BINARY_DIR}/${QUILLMERE_ID}.service.in\"
                 \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${QUILLMERE_SERVICE}\" @ONLY)")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The Quillmere authors <authors@quillmere.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL ${QUILLMERE_WEB_SITE})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "practice player for musicians who learn by ear")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Open a song, slow it down without changing its pitch, mark the start and the
end of the passage that will not go into your fingers, and let it repeat,
without a gap, until it does.
.
It plays wav, aiff, caf, mp3, m4a, mp4, mov, avi, wmv and dv at any speed from
0.35 to 2.5 times normal, forward and backward, moves the pitch by semitones,
shows films in step with their sound, records, and writes the slow version of
a track to a file.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
# What the programs and modules need is found when the package is made. Beside their libraries: whom to trust when the
# update server is asked; and for what is missing without the others: the font of the design, Wayland, media keys, screen
# readers, and what opens the web site and the guide.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ca-certificates")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "fonts-inter, qt6-wayland, default-dbus-session-bus | dbus-session-bus, at-spi2-core, xdg-utils")
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/debian-version.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian-finish.cmake)
set(CPACK_QUILLMERE_SOURCE ${CMAKE_SOURCE_DIR})
set(CPACK_QUILLMERE_BINARY ${CMAKE_BINARY_DIR})
set(CPACK_QUILLMERE_MODULES ${QUILLMERE_MODULE_FOLDER})
set(CPACK_QUILLMERE_SERVICE ${QUILLMERE_SERVICE})
set(CPACK_QUILLMERE_ID ${QUILLMERE_ID})
include(CPack)
