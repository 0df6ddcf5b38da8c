# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors

# What a Debian package has to tell of itself.
set(changelog ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog)
configure_file(debian/changelog.in ${changelog} @ONLY)
add_custom_command(OUTPUT ${changelog}.gz
    COMMAND ${GZIP} --best --no-name --keep --force ${changelog}
    DEPENDS ${changelog})
add_custom_target(debian ALL DEPENDS ${changelog}.gz)
install(FILES ${changelog}.gz debian/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
