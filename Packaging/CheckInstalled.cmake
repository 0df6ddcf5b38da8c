# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors

# Installs BUILD into the folder INTO and fails when what a desktop needs is missing there.
file(REMOVE_RECURSE ${INTO})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${INTO}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
foreach(file
        bin/bildkurier
        bin/bildkurier-cli
        lib/systemd/user/bildkurier-watch.service
        ${DATA}/bash-completion/completions/bildkurier
        ${DATA}/bash-completion/completions/bildkurier-cli
        ${DATA}/fish/vendor_completions.d/bildkurier.fish
        ${DATA}/fish/vendor_completions.d/bildkurier-cli.fish
        ${DATA}/${ZSH}/_bildkurier
        ${DATA}/${ZSH}/_bildkurier-cli
        ${DATA}/man/de/man1/bildkurier.1.gz
        ${DATA}/man/de/man1/bildkurier-cli.1.gz
        ${DATA}/man/man1/bildkurier.1.gz
        ${DATA}/man/man1/bildkurier-cli.1.gz
        ${DATA}/doc/bildkurier/copyright
        ${DATA}/applications/${ID}.desktop
        ${DATA}/metainfo/${ID}.metainfo.xml
        ${DATA}/icons/hicolor/scalable/apps/${ID}.svg
        ${DATA}/icons/hicolor/48x48/apps/${ID}.png
        ${DATA}/icons/hicolor/512x512/apps/${ID}.png)
    if(NOT EXISTS ${INTO}/${file})
        message(SEND_ERROR "${file} is missing")
    endif()
endforeach()
file(REMOVE_RECURSE ${INTO})
