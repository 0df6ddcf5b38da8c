#compdef bildkurier
# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors
_arguments \
    '*--card[Nimmt den Ordner als Kamera]:ORDNER:_directories' \
    '--help[Zeigt die Hilfe]' \
    '--version[Zeigt die Version]'
