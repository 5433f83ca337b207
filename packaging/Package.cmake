# What is installed beside the program, and the Debian package of it all (packaging/build-deb.sh).
include(GNUInstallDirs)
set(desktop ${PROJECT_SOURCE_DIR}/packaging/desktop)
install(FILES ${desktop}/lumisort.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${desktop}/org.lumisort.Lumisort.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${PROJECT_SOURCE_DIR}/src/ui/icons/lumisort.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${desktop}/lumisort.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/lumisort RENAME copyright)

# Tests and benchmarks need not be built for it.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumisort)
set(CPACK_PACKAGE_CONTACT "The Lumisort developers <lumisort@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Finds exact copies, near duplicates and photos of the same scene, shows
originals side by side, remembers what to keep, and copies the keepers,
verified, into a dated tree. Source files are never changed.")
# The libraries that the program is linked with are found by dpkg-shlibdeps. QML modules and plugins, which are
# looked up while it runs, are those of the list that name themselves so.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
file(STRINGS ${PROJECT_SOURCE_DIR}/packaging/debian-packages needed REGEX "^qml6-module-")
list(TRANSFORM needed REPLACE "[ #].*" "")
list(JOIN needed ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, qt6-xdgdesktopportal-platformtheme")
include(CPack)
