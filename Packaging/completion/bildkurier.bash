# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors
complete -o default -W '--card --help --version' bildkurier
