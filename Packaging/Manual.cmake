# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors

# The manual pages of the PROGRAMS, with what both have in common. They are German, as the
# programs are; whoever reads in another language finds them, too.
find_program(GZIP gzip REQUIRED)
find_program(MANDOC mandoc)
foreach(text what common)
    file(READ man/${text}.man contents)
    string(STRIP "${contents}" BILDKURIER_${text})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS man/${text}.man)
endforeach()

set(pages)
foreach(program IN LISTS programs)
    set(page ${CMAKE_CURRENT_BINARY_DIR}/man/${program}.1)
    configure_file(man/${program}.1.in ${page} @ONLY)
    add_custom_command(OUTPUT ${page}.gz
        COMMAND ${GZIP} --best --no-name --keep --force ${page}
        DEPENDS ${page})
    list(APPEND pages ${page}.gz)
    if(BUILD_TESTING AND MANDOC)
        add_test(NAME Packaging.ManualTellsOfAllThat-${program}-Can
            COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/check-manual ${page} $<TARGET_FILE:${program}>)
        set_tests_properties(Packaging.ManualTellsOfAllThat-${program}-Can PROPERTIES
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8" TIMEOUT 60)
    endif()
    install(CODE "file(MAKE_DIRECTORY
        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1\")
    file(CREATE_LINK ../de/man1/${program}.1.gz
        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/${program}.1.gz\" SYMBOLIC)")
endforeach()
add_custom_target(manual ALL DEPENDS ${pages})
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/de/man1)
