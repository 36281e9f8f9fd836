# What is installed where, and the Debian package, which scripts/package makes.
include(GNUInstallDirs)

install(TARGETS quillmere quillmere-render RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS quillmere-engine quillmere-network LIBRARY DESTINATION ${QUILLMERE_MODULE_FOLDER})
install(FILES packaging/quillmere.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
configure_file(packaging/org.quillmere.Quillmere.metainfo.xml.in org.quillmere.Quillmere.metainfo.xml @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/org.quillmere.Quillmere.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/quillmere.1 packaging/quillmere-render.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/copyright README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quillmere)
foreach(size 16 24 32 48 64 128 256 512)
  install(FILES resources/images/app_quillmere_${size}.png RENAME quillmere.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The Quillmere authors <quillmere@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
# The libraries of programs and modules are found by themselves. Beside them: whom to trust when the update server is
# asked; and for what is missing without the others: the font of the design, Wayland, media keys, screen readers, and
# what opens the web site.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ca-certificates")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "fonts-inter, qt6-wayland, default-dbus-session-bus | dbus-session-bus, at-spi2-core, xdg-utils")
include(CPack)
