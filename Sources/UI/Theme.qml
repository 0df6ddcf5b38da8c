// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
pragma Singleton
import QtQuick

/// Colours and measures. Light or dark is what the system's palette is.
QtObject {
    readonly property SystemPalette system: SystemPalette {
    }
    readonly property bool dark: system.window.hslLightness < 0.5

    readonly property color window: dark ? "#1e1e20" : "#f2f2f5"
    readonly property color card: dark ? "#2a2a2d" : "#ffffff"
    readonly property color line: dark ? "#3a3a3e" : "#e4e4e9"
    readonly property color text: dark ? "#f3f3f5" : "#1c1c1e"
    readonly property color secondary: dark ? "#aeaeb6" : "#64646c"
    readonly property color accent: dark ? "#4a9bff" : "#0a6cdf"
    readonly property color accentTint: dark ? "#2e3a4b" : "#dceafa"
    readonly property color prominent: dark ? "#1b6fd8" : "#0a6cdf"
    readonly property color good: dark ? "#45cf93" : "#14764c"
    readonly property color bad: dark ? "#ffa79f" : "#b3261e"
    readonly property color warning: dark ? "#f0b35a" : "#8a5200"
    readonly property color warningTint: dark ? "#3d3325" : "#fdf3e1"
    readonly property color control: dark ? "#3b3b3f" : "#ffffff"
    readonly property color controlLine: dark ? "#4b4b50" : "#d5d5da"
    readonly property color pressed: dark ? "#4b4b50" : "#e9e9ee"
    readonly property color groove: dark ? "#3b3b3f" : "#e9e9ee"
    readonly property color chosen: dark ? "#606066" : "#ffffff"
    readonly property color switchedOff: dark ? "#5b5b61" : "#c9c9cf"
    readonly property color field: dark ? "#1e1e20" : "#ffffff"
    readonly property color connected: dark ? "#3ecf6a" : "#34c759"

    readonly property list<color> tileTints: dark ? ["#333957", "#2a463d", "#513e2c", "#433551"] : ["#ebefff", "#e5f4ee", "#faf0e5", "#f2ebf9"]
    readonly property list<color> tileTexts: dark ? ["#a9baff", "#62d6a8", "#f0a85c", "#cfa3f0"] : ["#3a57d6", "#167650", "#99540c", "#7e3fb5"]

    /// The system's font of equally wide letters.
    readonly property string monospace: "monospace"
    readonly property int fontSize: 13
    readonly property int captionSize: 11
    readonly property int margin: 16
    readonly property int inset: 14
    readonly property int radius: 10
    readonly property int controlRadius: 6
}
