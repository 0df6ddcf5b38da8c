// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
pragma ComponentBehavior: Bound
import QtQuick
import Bildkurier

/// The speed of an import as a row of lights.
Rectangle {
    id: gauge

    required property speedGauge reading

    Accessible.name: reading.label
    Accessible.role: Accessible.Indicator
    color: Qt.rgba(0, 0, 0, 0.85)
    implicitHeight: content.implicitHeight + 16
    radius: 8

    component Readout: BodyText {
        Accessible.ignored: true
        font.family: Theme.monospace
        font.pixelSize: 10
        font.weight: Font.DemiBold
        wrapMode: Text.NoWrap
    }

    component ScaleText: BodyText {
        Accessible.ignored: true
        color: Qt.rgba(1, 1, 1, 0.45)
        font.pixelSize: 9
        wrapMode: Text.NoWrap
    }

    Column {
        id: content

        spacing: 4
        width: parent.width - 16
        x: 8
        y: 8

        Item {
            implicitHeight: current.implicitHeight
            width: parent.width

            Readout {
                id: current

                color: gauge.reading.currentColor
                font.pixelSize: 17
                objectName: "current"
                text: gauge.reading.current

                Behavior on color {
                    ColorAnimation {
                        duration: 200
                        easing.type: Easing.OutCubic
                    }
                }
            }

            Readout {
                anchors.right: peak.left
                anchors.rightMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                color: gauge.reading.averageColor
                objectName: "average"
                text: "Ø " + gauge.reading.average
            }

            Readout {
                id: peak

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                color: Qt.rgba(1, 1, 1, 0.55)
                objectName: "peak"
                text: qsTr("Spitze %1").arg(gauge.reading.peak)
            }
        }

        Row {
            id: segments

            readonly property real segmentWidth: (width - (gauge.reading.segments - 1) * spacing) / gauge.reading.segments

            spacing: 2
            width: parent.width

            Repeater {
                model: gauge.reading.segments

                Rectangle {
                    id: segment

                    required property int index

                    color: gauge.reading.segmentColor(index)
                    height: 14
                    objectName: "segment"
                    radius: 2
                    width: segments.segmentWidth

                    Behavior on color {
                        ColorAnimation {
                            duration: 200
                            easing.type: Easing.OutCubic
                        }
                    }

                    Rectangle {
                        anchors.fill: parent
                        anchors.margins: -1
                        color: Qt.alpha(segment.color, 0.28 * segment.color.a)
                        objectName: "glow"
                        radius: 3
                        z: -1
                    }

                    Rectangle {
                        color: "#ffffff"
                        height: 2
                        objectName: "peakBar"
                        opacity: gauge.reading.showsPeak(segment.index) ? 0.9 : 0
                        visible: opacity > 0
                        width: parent.width

                        Behavior on opacity {
                            NumberAnimation {
                                duration: 200
                                easing.type: Easing.OutCubic
                            }
                        }
                    }
                }
            }
        }

        Item {
            implicitHeight: unit.implicitHeight
            width: parent.width
            objectName: "scaleRow"

            Repeater {
                model: gauge.reading.scale

                ScaleText {
                    required property scaleLabel modelData

                    objectName: "scaleLabel"
                    text: modelData.text
                    x: modelData.position * (parent.width - 14) + 5
                }
            }

            ScaleText {
                id: unit

                anchors.right: parent.right
                objectName: "unit"
                //: Einheit der Skala; französisch Mo/s
                text: qsTr("MB/s")
            }
        }
    }
}
