// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ScriptedWindow.h"
#include "SystemAppearance.h"
#include "UserAtTheWindow.h"
#include "WindowScript.h"

#include <QtQml/qqmlextensionplugin.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QQuickWindow>
#include <QTextStream>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

Q_IMPORT_QML_PLUGIN(BildkurierPlugin)

namespace {

using namespace bildkurier;

int warnings = 0;

void countWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg && type != QtInfoMsg) ++warnings;
    QTextStream(stderr) << text << '\n';
}

/// A state of the window: what is known before it opens, and what happens then.
struct State {
    QString name;
    std::function<void(WindowScript&)> before;
    std::function<void(WindowScript&)> after;
    bool showsLog = false;
    bool asks = false;
};

/// Of a type, and what they weigh together.
struct Shots {
    QString type;
    int count = 0;
    double bytes = 0;
};
const std::vector<Shots> newShots{
    {"JPG", 98, 812e6}, {"CR3", 98, 2.9e9}, {"MP4", 14, 10.5e9}, {"WAV", 2, 3.1e6}};
constexpr int oldShots = 1072;

/// The camera of all pictures: 1,284 files of 38 GB and six days, of which 212 were shot on the
/// two days since the one that is chosen. What is new may weigh less.
int camera(WindowScript& script, double share = 1) {
    const int made = script.camera("Canon EOS R6 Mark II", "r6");
    const QStringList days{"2024-05-04", "2024-05-05", "2024-05-06", "2024-05-09", "2024-05-10"};
    for (int i = 0; i < oldShots; ++i) {
        script.file(made, QString("ALT_%1.CR3").arg(i, 4, 10, QChar('0')), 22.4e6,
                    i % 2 ? "2024-05-03" : days[i % 3]);
    }
    for (const auto& [type, count, bytes] : newShots) {
        for (int i = 0; i < count; ++i) {
            script.file(made, QString("IMG_%1.%2").arg(314 + i, 4, 10, QChar('0')).arg(type),
                        share * bytes / count, days[3 + i % 2]);
        }
    }
    return made;
}

void filter(WindowScript& script) {
    script.model()->setUseFromDate(true);
    script.model()->setFromDayIndex(4);
    script.model()->setByDate(true);
}

void ready(WindowScript& script, int made) {
    script.connectCamera(made);
    script.model()->setAutoImportEnabled(true);
    filter(script);
}

/// The first of the two days is loaded. Little enough for memory.
void importing(WindowScript& script) {
    constexpr double share = 0.01;
    constexpr double bytesPerSecond = 34e6;
    constexpr double slower = 10;
    ready(script, camera(script, share));
    script.scaleClock(1 / slower);
    script.startImport();
    int first = oldShots;
    for (const auto& [type, count, bytes] : newShots) {
        const double seconds = share * bytes / count / bytesPerSecond;
        for (int i = 0; i < count; i += 2) {
            script.advance(static_cast<int>(slower * 1000 * seconds * (i % 9 == 0 ? 0.6 : 1)));
            script.deliver(0, first + i);
        }
        first += count;
    }
}

const QStringList log{
    "✗ 14:01:38 Kamera getrennt, 2 von 5 geladen.",
    "↻ 14:02:11 Fortsetzung nach Trennung: noch 3 Dateien.",
    "✓ CR3/IMG_0412.CR3  (29,6 MB)",
    "ℹ︎ IMG_0412.JPG existiert schon mit anderem Inhalt → gespeichert als IMG_0412_1.JPG",
    "✓ JPG/IMG_0412_1.JPG  (8,3 MB)",
    "✗ IMG_0413.MP4: Größe stimmt nicht (750000000 statt 752000000 Bytes)",
    "Fertig: 2 geladen (38 MB), Ø 34,1 MB/s, 1 fehlgeschlagen"};

void server(WindowScript& script) {
    script.setProperty("startsWithServer", true);
    script.setProperty("publicKey",
                       "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIGq2Xw0rT8n0yVfL0y2wFv8mB1kQ3r5uT7wXz "
                       "bildkurier");
    script.setProperty("fingerprint",
                       "SHA256:m0Z8bq1vJtq3T1v2Qk9y7xqYF0uXnJrW5c6H2sLd4aE bildkurier (ED25519)");
}

void check(WindowScript& script) {
    script.showServerKey("SHA256:3Yc0nq2uVb8Qy1mRz7Zt8xVQm0d7k1bq5R2yWnC4eHs (ED25519)");
    script.model()->applySFTPDestination();
    script.settle();
}

std::vector<State> states() {
    const auto nothing = [](WindowScript&) {};
    return {
        {"keine-kamera", nothing, nothing},
        {"verbinden", nothing, [](auto& script) { script.plugIn(camera(script)); }},
        {"lesen", nothing,
         [](auto& script) {
             const int made = camera(script);
             script.plugIn(made);
             script.openSession(made);
         }},
        {"pruefen", nothing,
         [](auto& script) {
             const int made = camera(script);
             script.plugIn(made);
             script.openSession(made);
             script.readCard(made);
         }},
        {"bereit", nothing, [](auto& script) { ready(script, camera(script)); }},
        {"import", nothing, importing},
        {"fertig", nothing,
         [](auto& script) {
             const int made = script.camera("Canon EOS R6 Mark II", "r6");
             script.file(made, "IMG_0001.JPG", 8000, "2024-05-09");
             script.file(made, "IMG_0002.JPG", 8000, "2024-05-09");
             script.connectCamera(made);
             script.startImport();
             script.deliver(made, 0);
             script.deliverLast(made, 1);
         },
         true},
        {"nichts-neues", nothing,
         [](auto& script) {
             const int made = script.camera("Canon EOS R6 Mark II", "r6");
             script.file(made, "IMG_0001.JPG", 8000, "2024-05-09");
             script.connectCamera(made);
             script.startImport();
             script.deliver(made, 0);
         }},
        {"ordner-waehlen", [](auto& script) { script.setProperty("granted", false); },
         [](auto& script) { script.connectCamera(camera(script)); }},
        {"sftp-neuer-server", server,
         [](auto& script) {
             check(script);
             ready(script, camera(script));
         }},
        {"sftp-anderer-schluessel", server,
         [](auto& script) {
             check(script);
             script.showServerKey("SHA256:anderer");
             ready(script, camera(script));
             script.model()->applySFTPDestination();
             script.settle();
         }},
        {"sftp-ohne-schluessel", [](auto& script) { script.setProperty("startsWithServer", true); },
         nothing},
        {"neuer-schluessel", server, nothing, false, true},
        {"zwei-kameras", nothing,
         [](auto& script) {
             script.connectCamera(camera(script));
             script.connectCamera(script.camera("X100VI", "x100"));
         }},
        {"ein-tag", nothing,
         [](auto& script) {
             const int made = script.camera("Canon EOS R6 Mark II", "r6");
             script.file(made, "IMG_0001.JPG", 8e6, "2024-05-09");
             script.connectCamera(made);
             script.model()->setUseFromDate(true);
         }},
        {"protokoll", [](auto& script) { script.setProperty("onNetwork", true); },
         [](auto& script) {
             script.connectCamera(camera(script));
             script.log(log);
         },
         true},
    };
}

/// Lets the window come to rest.
void settle(QQuickWindow& window) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 350) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    window.update();
}

bool take(const State& state, const QString& path) {
    WindowScript script;
    state.before(script);
    script.begin();
    const ScriptedWindow window(script, 1000);
    state.after(script);
    if (state.showsLog) window->setProperty("showsLog", true);
    if (state.asks) window->setProperty("confirmsNewKey", true);
    settle(*window);
    return window->grabWindow().save(path);
}

}  // namespace

/// Takes pictures of the window in many states: UIScreenshots FOLDER. Fails when one cannot be
/// taken, or when anything warns.
int main(int argc, char** argv) {
    bildkurier::becomeUserInBerlin();
    const QApplication app(argc, argv);
    if (argc != 2) return 2;
    qInstallMessageHandler(countWarnings);
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    folder.mkpath(".");
    int missing = 0;
    for (const auto& [look, preference] :
         {std::pair("hell", SystemAppearance::Preference::light),
          std::pair("dunkel", SystemAppearance::Preference::dark)}) {
        SystemAppearance::apply(preference);
        for (const auto& state : states())
            if (!take(state, folder.filePath(state.name + "-" + look + ".png"))) ++missing;
    }
    return missing + warnings == 0 ? 0 : 1;
}
