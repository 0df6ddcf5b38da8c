# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors

# What cpack makes of an installation: a Debian package, or on macOS a disk image with the bundle.
set(CPACK_PACKAGE_NAME bildkurier)
set(CPACK_PACKAGE_VENDOR "The Bildkurier authors")
set(CPACK_PACKAGE_CONTACT "The Bildkurier authors <authors@bildkurier.example>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

if(APPLE)
    set(CPACK_GENERATOR DragNDrop)
    set(CPACK_DMG_VOLUME_NAME Bildkurier)
    set(CPACK_DMG_SLA_USE_RESOURCE_FILE_LICENSE OFF)
else()
    set(CPACK_GENERATOR DEB)
endif()

set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"copy from a camera or memory card what the destination lacks
Bildkurier copies the photos, videos and sound files of a camera or memory
card to a folder or an SFTP server. It compares the card with what is there
already and loads only what is missing. Every file is staged, checked for its
exact size and only then given its final name.
.
There is a window, a command line, and a service that imports a trusted
camera whenever it is connected. All of them speak German.")
# Besides the libraries that the programs are linked with: what the window's parts are made of,
# what draws on a display and words the dialogs, and the programs that talk to servers.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(packages
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-layouts qml6-module-qtquick-templates
    qml6-module-qtquick-window qt6-qpa-plugins qt6-translations-l10n
    fonts-dejavu-core hicolor-icon-theme openssh-client)
list(JOIN packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
include(CPack)
