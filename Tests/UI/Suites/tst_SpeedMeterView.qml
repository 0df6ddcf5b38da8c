// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier
import Bildkurier.Test

TestCase {
    id: test

    readonly property color green: Qt.rgba(0.2, 0.95, 0.3, 1)
    readonly property color yellow: Qt.rgba(1, 0.85, 0.1, 1)
    readonly property color red: Qt.rgba(1, 0.25, 0.2, 1)
    readonly property color cyan: Qt.rgba(0.2, 0.9, 1, 1)

    height: 200
    name: "SpeedMeterView"
    visible: true
    when: windowShown
    width: 648

    function init() {
        failOnWarning(/.?/);
    }

    function show(current, average, peak) {
        return createTemporaryObject(gauges, test, {
            reading: script.gauge(current, average, peak)
        });
    }

    function all(item, name, found = []) {
        for (let i = 0; i < item.children.length; ++i) {
            const child = item.children[i];
            if (child.objectName === name)
                found.push(child);
            all(child, name, found);
        }
        return found;
    }

    function zone(segment) {
        return segment < 22 ? green : segment < 31 ? yellow : red;
    }

    function isColor(actual, wanted, opacity) {
        fuzzyCompare(actual, Qt.rgba(wanted.r, wanted.g, wanted.b, opacity), 1);
        fuzzyCompare(actual.a, opacity, 0.004);
    }

    function test_lightsSegments_data() {
        return [
            {
                tag: "nothing",
                current: 0,
                lit: 0
            },
            {
                tag: "the floor",
                current: 500000,
                lit: 0
            },
            {
                tag: "rounds up",
                current: 1000000,
                lit: 4
            },
            {
                tag: "rounds down",
                current: 10000000,
                lit: 16
            },
            {
                tag: "a third",
                current: 5000000,
                lit: 12
            },
            {
                tag: "the top",
                current: 500000000,
                lit: 36
            },
            {
                tag: "beyond",
                current: 5e12,
                lit: 36
            }
        ];
    }

    function test_lightsSegments(row) {
        const segments = all(show(row.current, 0, 0), "segment");
        compare(segments.length, 36);
        for (let i = 0; i < 36; ++i)
            isColor(segments[i].color, zone(i), i < row.lit ? 1 : 0.14);
    }

    function test_marksAverageAndPeak_data() {
        return [
            {
                tag: "none",
                average: 0,
                peak: 0,
                cyan: -1,
                white: -1
            },
            {
                tag: "the floor",
                average: 500000,
                peak: 500000,
                cyan: -1,
                white: -1
            },
            {
                tag: "truncates",
                average: 1000000,
                peak: 10000000,
                cyan: 3,
                white: 15
            },
            {
                tag: "just above the floor",
                average: 500001,
                peak: 1e7,
                cyan: 0,
                white: 15
            },
            {
                tag: "the top",
                average: 1e6,
                peak: 500000000,
                cyan: 3,
                white: 35
            },
            {
                tag: "beyond",
                average: 9e12,
                peak: 1e6,
                cyan: 35,
                white: 3
            },
            {
                tag: "the same segment",
                average: 1000000,
                peak: 1010000,
                cyan: 3,
                white: -1
            }
        ];
    }

    function test_marksAverageAndPeak(row) {
        const gauge = show(0, row.average, row.peak);
        const segments = all(gauge, "segment");
        for (let i = 0; i < 36; ++i)
            isColor(segments[i].color, i === row.cyan ? cyan : zone(i), i === row.cyan ? 1 : 0.14);
        const bars = all(gauge, "peakBar");
        for (let i = 0; i < 36; ++i) {
            compare(bars[i].visible, i === row.white, i);
            compare([bars[i].height, bars[i].y, bars[i].width], [2, 0, segments[i].width]);
            compare(bars[i].opacity, i === row.white ? 0.9 : 0);
            compare(bars[i].color, "#ffffff");
        }
    }

    function test_coversLitSegmentsWithTheAverage() {
        const segments = all(show(500000000, 1000000, 0), "segment");
        isColor(segments[3].color, cyan, 1);
        isColor(segments[4].color, green, 1);
    }

    function test_glowsInTheColorOfEachSegment() {
        const gauge = show(5e6, 100e6, 0);
        const segments = all(gauge, "segment");
        all(gauge, "glow").forEach((glow, i) => {
            isColor(glow.color, segments[i].color, 0.28 * segments[i].color.a);
            verify(glow.width > segments[i].width && glow.height > segments[i].height);
        });
    }

    function test_readsOutSpeeds_data() {
        return [
            {
                tag: "green",
                current: 5e6,
                text: "5 MB/s",
                color: green
            },
            {
                tag: "yellow",
                current: 38.5e6,
                text: "38,5 MB/s",
                color: yellow
            },
            {
                tag: "red",
                current: 300e6,
                text: "300 MB/s",
                color: red
            },
            {
                tag: "below the scale",
                current: 0,
                text: "0 MB/s",
                color: green
            }
        ];
    }

    function test_readsOutSpeeds(row) {
        const gauge = show(row.current, 34.1e6, 61.2e6);
        const current = all(gauge, "current")[0];
        compare(current.text, row.text);
        isColor(current.color, row.color, 1);
        compare([current.font.pixelSize, current.font.weight, current.font.family], [17, Font.DemiBold, Theme.monospace]);
        const peak = all(gauge, "peak")[0];
        compare(peak.text, "Spitze 61,2 MB/s");
        compare([peak.font.pixelSize, peak.font.weight], [10, Font.DemiBold]);
        isColor(peak.color, Qt.rgba(1, 1, 1, 1), 0.55);
        compare(all(gauge, "average")[0].text, "Ø 34,1 MB/s");
    }

    function test_labelsTheScale() {
        const gauge = show(0, 0, 0);
        const labels = all(gauge, "scaleLabel");
        const width = all(gauge, "scaleRow")[0].width;
        compare(width, 648 - 16);
        compare(labels.map(label => label.text), ["1", "10", "100"]);
        [1e6, 1e7, 1e8].forEach((speed, i) => {
            const position = Math.log10(speed / 500000) / 3;
            fuzzyCompare(labels[i].x, position * (width - 14) + 5, 0.01);
            compare(labels[i].font.pixelSize, 9);
            isColor(labels[i].color, Qt.rgba(1, 1, 1, 1), 0.45);
        });
        compare(all(gauge, "unit")[0].text, "MB/s");
    }

    function test_measuresItsSegments() {
        const gauge = show(0, 0, 0);
        waitForRendering(gauge);
        const segments = all(gauge, "segment");
        segments.forEach((segment, i) => {
            compare([segment.height, segment.radius], [14, 2]);
            if (i > 0)
                fuzzyCompare(segment.x - segments[i - 1].x, segment.width + 2, 0.01);
        });
        compare(segments[0].mapToItem(gauge, 0, 0).x, 8);
        fuzzyCompare(segments[35].mapToItem(gauge, segments[35].width, 0).x, gauge.width - 8, 0.01);
        isColor(gauge.color, Qt.rgba(0, 0, 0, 1), 0.85);
    }

    function test_isOneThingToThoseWhoHearIt() {
        const gauge = show(38.5e6, 34.1e6, 61.2e6);
        const told = tree.told(gauge, "Indicator", "Geschwindigkeit 38,5 MB/s, Durchschnitt 34,1 MB/s");
        compare(told.children, 0);
    }

    function test_changesGently() {
        const gauge = show(0, 0, 0);
        const segment = all(gauge, "segment")[0];
        const bar = all(gauge, "peakBar")[35];
        gauge.reading = script.gauge(500000000, 0, 500000000);
        verify(segment.color.a < 0.5);
        verify(bar.opacity < 0.5);
        tryVerify(() => segment.color.a === 1, 2000);
        tryCompare(bar, "opacity", 0.9);
    }

    WindowScript {
        id: script
    }

    AccessibleTree {
        id: tree
    }

    Component {
        id: gauges

        SpeedMeterView {
            width: test.width
        }
    }
}
