# The Debian package: `cpack -G DEB` in a build folder, or scripts/package.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora-albuma)
set(CPACK_PACKAGE_VENDOR VELMORA)
set(CPACK_PACKAGE_CONTACT "VELMORA project <velmora@velmora.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "photo books, and a service that proposes them")
# A release candidate comes before the release: Debian writes that with a tilde.
string(REPLACE "-" "~" debian_suffix "${NY_VERSION_SUFFIX}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}${debian_suffix}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_MONOLITHIC_INSTALL ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"VELMORA ALBUMA shows photo books made from your pictures.
A service in the background, which each user switches on for themselves, finds
the photos that came to the machine during the past year, works out which
folders are events, has a photo book made of the event with the most new
photos, and offers it with a desktop notification.
.
Everything happens on the machine, and pictures are only ever read.")

# What the libraries' own dependencies say is computed; the private folder holds libraries of ours, which no package provides.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}/lib")
find_package(ONNXRuntime QUIET)
if(ONNXRuntime_IS_PRIVATE)
    cmake_path(GET ONNXRuntime_LIBRARY PARENT_PATH onnxruntime_folder)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${onnxruntime_folder}")
elseif(ONNXRuntime_FOUND)
    # Loaded when the first model is, so nothing links it either.
    file(REAL_PATH "${ONNXRuntime_LIBRARY}" onnxruntime_file)
    execute_process(COMMAND dpkg-query --search "${onnxruntime_file}" OUTPUT_VARIABLE onnxruntime_owner ERROR_QUIET)
    string(REGEX MATCH "^[^:]+" onnxruntime_package "${onnxruntime_owner}")
endif()
# Qt loads these when they are needed, so nothing links them: photo lists are in SQLite, icons are SVG.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, libqt6svg6")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "qt6-image-formats-plugins, qt6-translations-l10n, qt6-wayland, default-dbus-session-bus | dbus-session-bus, notification-daemon")
if(onnxruntime_package)
    string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS ", ${onnxruntime_package}")
endif()

set(documents "${CMAKE_INSTALL_DATADIR}/doc/${CPACK_PACKAGE_NAME}")
install(FILES "${CMAKE_CURRENT_LIST_DIR}/copyright" DESTINATION "${documents}")
string(TIMESTAMP NY_DEBIAN_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(NY_DEBIAN_VERSION "${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/changelog.in" debian/changelog @ONLY)
ny_add_compressed("${CMAKE_CURRENT_BINARY_DIR}/debian/changelog" changelog.Debian.gz)
ny_add_compressed("${CMAKE_SOURCE_DIR}/CHANGELOG.md" changelog.gz)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz" "${CMAKE_CURRENT_BINARY_DIR}/changelog.gz" DESTINATION "${documents}")
install(FILES "${CMAKE_SOURCE_DIR}/README.md" DESTINATION "${documents}")
install(FILES "${CMAKE_CURRENT_LIST_DIR}/lintian-overrides"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME ${CPACK_PACKAGE_NAME})

include(CPack)
