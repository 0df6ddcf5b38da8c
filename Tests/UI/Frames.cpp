// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ScriptedWindow.h"
#include "UserAtTheWindow.h"
#include "WindowScript.h"

#include <QtQml/qqmlextensionplugin.h>

#include <QApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTextStream>
#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>

Q_IMPORT_QML_PLUGIN(BildkurierPlugin)

namespace {

using namespace bildkurier;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int manyFiles = 100'000;
constexpr Milliseconds limit{50};

/// What this thread, which also draws, has worked so far: other programs do not count.
Milliseconds worked() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// The longest that the window worked at one go until it had come to rest after `act`.
Milliseconds longestFrame(QQuickWindow& window, const std::function<void()>& act) {
    Milliseconds longest{0};
    const auto time = [&](const std::function<void()>& step) {
        const auto before = worked();
        step();
        longest = std::max(longest, worked() - before);
    };
    // What is new is told in the first, at the latest, and shown in the second.
    int drawn = 0;
    const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] {
        ++drawn;
        window.update();
    });
    time(act);
    window.update();
    while (drawn < 2) time([] { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); });
    QObject::disconnect(connection);
    return longest;
}

class Frames {
public:
    explicit Frames(QQuickWindow& window) : window_(window) {}

    /// `act` is called with 0, 1, 2 …
    void measure(const QString& name, int times, const std::function<void(int)>& act) {
        Milliseconds longest{0};
        for (int i = 0; i < times; ++i)
            longest = std::max(longest, longestFrame(window_, [&] { act(i); }));
        const bool isFast = longest <= limit;
        allFast_ = allFast_ && isFast;
        QTextStream(stdout) << "longest frame, " << name << ": " << qRound(longest.count()) << " ms"
                            << (isFast ? "" : "  OVER 50") << '\n';
    }

    bool allFast() const { return allFast_; }

private:
    QQuickWindow& window_;
    bool allFast_ = true;
};

void fillCamera(WindowScript& script) {
    const int camera = script.camera("Canon EOS R6 Mark II", "r6");
    for (int i = 0; i < manyFiles; ++i)
        script.file(camera, QString("IMG_%1.%2").arg(i).arg(i % 3 ? "JPG" : "CR3"), 8e6,
                    QString("2024-05-%1").arg(1 + i % 28, 2, 10, QChar('0')));
    script.connectCamera(camera);
}

bool isFast(QQuickWindow& window, WindowScript& script) {
    Frames frames(window);
    fillCamera(script);
    auto& model = *script.model();
    frames.measure("the filter on and off", 10, [&](int i) { model.setUseFromDate(i % 2 == 0); });
    model.setUseFromDate(true);
    frames.measure("a day after the other", 28, [&](int i) { model.setFromDayIndex(27 - i); });
    for (int i = 0; i < 500; ++i)
        script.log(QString("✓ 2024-05-09/CR3/IMG_%1.CR3  (29,6 MB)").arg(i));
    frames.measure("the log opened", 1, [&](int) { window.setProperty("showsLog", true); });
    auto* log = window.findChild<QQuickItem*>("logView");
    auto* form = window.findChild<QQuickItem*>("form");
    if (log == nullptr || form == nullptr) return false;
    frames.measure("the log scrolled", 50, [&](int i) { log->setProperty("contentY", 100 * i); });
    frames.measure("a line more", 50, [&](int i) { script.log(QString("✓ %1").arg(i)); });
    window.setHeight(600);
    frames.measure("the form scrolled", 50, [&](int i) { form->setProperty("contentY", 10 * i); });
    return frames.allFast();
}

}  // namespace

/// Measures how long the window with 100,000 new files and a full log keeps its user waiting.
int main(int argc, char** argv) {
    bildkurier::becomeUserInBerlin();
    const QApplication app(argc, argv);
    WindowScript script;
    script.begin();
    const ScriptedWindow window(script, 1100);
    return isFast(*window, script) ? 0 : 1;
}
