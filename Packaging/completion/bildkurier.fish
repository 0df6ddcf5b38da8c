# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors
complete -c bildkurier -l card -r -F -d 'Nimmt den Ordner als Kamera'
complete -c bildkurier -l help -f -d 'Zeigt die Hilfe'
complete -c bildkurier -l version -f -d 'Zeigt die Version'
