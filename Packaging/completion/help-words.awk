# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors
#
# What can be typed next, out of the text of --help: a word, what it takes ("-" for nothing) and
# what it means, a tab between them.
function told() {
    if (word != "") print word "\t" value "\t" meaning
    word = ""
}
/^$/ || /:$/ { told(); section = $0; next }
section !~ /^(Angaben|Befehle|Einstellungen.*):$/ { next }
/^  [^ ]/ {
    told()
    entry = substr($0, 3)
    gap = match(entry, /  +/)
    meaning = gap ? substr(entry, gap + RLENGTH) : ""
    count = split(gap ? substr(entry, 1, gap - 1) : entry, parts, " ")
    word = parts[1]
    sub(/^-.,/, "", word)
    value = count > 1 && parts[2] != "nicht" ? parts[2] : "-"
    next
}
/^   / && meaning == "" { meaning = $0; sub(/^ +/, "", meaning) }
END { told() }
