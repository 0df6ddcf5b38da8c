// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier
import Bildkurier.Test

/// Shows the window's contents for a script. No warning of the engine is forgiven.
TestCase {
    id: test

    property WindowScript script
    property ContentView view
    readonly property AccessibleTree tree: AccessibleTree {
    }

    height: 1700
    visible: true
    when: windowShown
    width: 680

    function init() {
        failOnWarning(/.?/);
        script = createTemporaryObject(scripts, test);
    }

    function cleanup() {
        // The window goes before what it shows.
        if (view) {
            view.destroy();
            wait(0);
        }
    }

    function open(properties = {}) {
        script.begin();
        view = views.createObject(test, Object.assign({
            model: script.model,
            keys: script.keys,
            width: test.width,
            height: test.height
        }, properties));
        view.forceActiveFocus();
    }

    /// Opens with a camera that has these files, and reads it: [[name, size, day], …].
    function openWith(files, name = "EOS R6", identity = "r6") {
        open();
        return connect(files, name, identity);
    }

    function connect(files, name = "EOS R6", identity = "r6") {
        const camera = script.camera(name, identity);
        for (const file of files)
            script.file(camera, ...file);
        script.connectCamera(camera);
        return camera;
    }

    function visit(item, action) {
        if (!item.visible || item.opacity === 0)
            return;
        action(item);
        for (let i = 0; i < item.children.length; ++i)
            visit(item.children[i], action);
    }

    function root() {
        let item = view;
        while (item.parent)
            item = item.parent;
        return item;
    }

    /// All that can be read, in no order.
    function texts() {
        const found = [];
        visit(root(), item => {
            if (typeof item.text === "string")
                found.push(item.text);
        });
        return found;
    }

    function symbols() {
        const found = [];
        visit(root(), item => {
            if (item instanceof Symbol)
                found.push(item.name);
        });
        return found;
    }

    function spinners() {
        let found = 0;
        visit(root(), item => {
            if (item instanceof Spinner)
                ++found;
        });
        return found;
    }

    function shows(text) {
        tryVerify(() => texts().includes(text), 2000, "shows: " + text);
    }

    function hides(text) {
        tryVerify(() => !texts().includes(text), 2000, "hides: " + text);
    }

    function showsSymbol(name) {
        tryVerify(() => symbols().includes(name), 2000, "shows the symbol " + name);
    }

    function hidesSymbol(name) {
        tryVerify(() => !symbols().includes(name), 2000, "hides the symbol " + name);
    }

    function find(role, name) {
        return tree.find(view, role, name);
    }

    function has(role, name) {
        tryVerify(() => find(role, name) !== null, 2000, "has " + role + ": " + name);
        return find(role, name);
    }

    function hasNo(role, name) {
        tryVerify(() => find(role, name) === null, 2000, "has no " + role + ": " + name);
    }

    function told(role, name) {
        has(role, name);
        return tree.told(view, role, name);
    }

    /// Whether everything is where it belongs.
    function isLaidOut() {
        let pending = false;
        visit(root(), item => pending = pending || isPolishScheduled(item));
        return !pending;
    }

    function click(role, name) {
        has(role, name);
        tryVerify(isLaidOut);
        mouseClick(find(role, name));
    }

    function press(name) {
        click("Button", name);
    }

    function isEnabled(role, name, enabled) {
        tryVerify(() => has(role, name).enabled === enabled, 2000, name + (enabled ? " works" : " is disabled"));
    }

    function named(name) {
        let found = null;
        visit(root(), item => {
            if (item.objectName === name)
                found = item;
        });
        return found;
    }

    Component {
        id: scripts

        WindowScript {
        }
    }

    Component {
        id: views

        ContentView {
        }
    }
}
