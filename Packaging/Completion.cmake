# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors

# What the shells offer behind the tab key, where each looks for it.
set(zsh_folder zsh/site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(zsh_folder zsh/vendor-completions)
endif()
file(READ completion/help-words.awk BILDKURIER_HELP_WORDS)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS completion/help-words.awk)
foreach(shell bash zsh fish)
    set(made ${CMAKE_CURRENT_BINARY_DIR}/completion/bildkurier-cli.${shell})
    configure_file(completion/bildkurier-cli.${shell}.in ${made} @ONLY)
    find_program(SHELL_${shell} ${shell})
    if(BUILD_TESTING AND SHELL_${shell})
        add_test(NAME Packaging.CompletionKnowsAllCommandsIn-${shell}
            COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/check-completion ${shell} ${made}
                $<TARGET_FILE:bildkurier-cli>)
        set_tests_properties(Packaging.CompletionKnowsAllCommandsIn-${shell} PROPERTIES
            ENVIRONMENT LC_ALL=C.UTF-8 TIMEOUT 60)
    endif()
    foreach(program IN LISTS programs)
        set(from completion/bildkurier.${shell})
        if(program STREQUAL "bildkurier-cli")
            set(from ${made})
        endif()
        if(shell STREQUAL "bash")
            install(FILES ${from} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
                RENAME ${program})
        elseif(shell STREQUAL "zsh")
            install(FILES ${from} DESTINATION ${CMAKE_INSTALL_DATADIR}/${zsh_folder}
                RENAME _${program})
        else()
            install(FILES ${from} DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
                RENAME ${program}.fish)
        endif()
    endforeach()
endforeach()
