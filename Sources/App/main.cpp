// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppContainer.h"
#include "DesktopWorkspace.h"
#include "DialogFolderPicker.h"
#include "DisplayCheck.h"
#include "Farewell.h"
#include "Fassung.h"
#include "ImportBridge.h"
#include "InterruptSignals.h"
#include "KeyBridge.h"
#include "ProcessStart.h"
#include "QtMainQueue.h"
#include "SingleInstance.h"
#include "SystemAdapters.h"
#include "SystemAppearance.h"
#include "ThreadPool.h"
#include "UserFolders.h"
#include "WindowArguments.h"

#include <QtQml/qqmlextensionplugin.h>

#include <QAccessible>
#include <QApplication>
#include <QByteArray>
#include <QIcon>
#include <QLibraryInfo>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTranslator>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

Q_IMPORT_QML_PLUGIN(BildkurierPlugin)

namespace {

using namespace bildkurier;

/// Says what there is to say instead of opening a window.
int say(const WindowAnswer& answer) {
    std::fprintf(answer.exitStatus == 0 ? stdout : stderr, "%s\n", answer.text.c_str());
    return answer.exitStatus;
}

/// What the desktop gives a program that it starts, so that its window may come to the front; to be
/// taken before the toolkit does so.
std::string activationToken() {
    const auto token = qgetenv("XDG_ACTIVATION_TOKEN");
    return (token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token).toStdString();
}

void bringToFront(const QQmlApplicationEngine& engine, const std::string& token) {
    // Where the toolkit looks for it, and no other display does.
    const bool isPassedOn =
        !token.empty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    if (isPassedOn) qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
    for (QObject* root : engine.rootObjects()) {
        auto* window = qobject_cast<QQuickWindow*>(root);
        if (window == nullptr) continue;
        // As large as it was.
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
        window->raise();
        window->requestActivate();
    }
    if (isPassedOn) qunsetenv("XDG_ACTIVATION_TOKEN");
}

QUrl webPage(const std::string& address) { return QUrl(QString::fromStdString(address)); }

/// Shows the window until it is closed, or the program is asked to end.
int show(const AppContainer::Parts& parts, SingleInstance& instance, MainQueue& main) {
    const auto model = std::make_unique<ImportBridge>(parts.model);
    const auto keys = std::make_unique<KeyBridge>(parts.keys);
    Farewell farewell(parts.model, [] { QApplication::exit(); });
    const InterruptSignals interrupts(main, [&farewell] { farewell.ask(); });
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qml"));
    engine.setInitialProperties({{"model", QVariant::fromValue(model.get())},
                                 {"keys", QVariant::fromValue(keys.get())},
                                 {"support", webPage(Fassung::support())},
                                 {"privacy", webPage(Fassung::datenschutz())}});
    engine.loadData("import Bildkurier\nMainWindow {}");
    if (engine.rootObjects().isEmpty()) return 1;
    instance.onAnother = [&engine](const std::string& token) { bringToFront(engine, token); };
    const int status = QApplication::exec();
    // To end can take as long as a slow folder takes to answer. Meanwhile another window may open.
    instance.letGo();
    // With a screen reader listening, the toolkit crashes over items that tell of their own end.
    QAccessible::installUpdateHandler([](QAccessibleEvent*) {});
    return status;
}

/// The system's own dialogs, or else the toolkit's.
std::shared_ptr<FolderPicker> folderPicker() {
    auto picker = systemFolderPicker();
    return picker ? picker : std::make_shared<DialogFolderPicker>();
}

/// What is left to do where the window is open already.
int leaveToFirst(const SingleInstance& instance, const WindowArguments& arguments) {
    const auto answer = answerOfSecond(arguments, instance.hasToldFirst());
    return answer ? say(*answer) : 0;
}

int run(SingleInstance& instance, const WindowArguments& arguments) {
    const SystemAppearance appearance;
    QtMainQueue main;
    std::optional<ThreadPool> pool(std::in_place);
    auto parts = AppContainer::make(main, *pool,
                                    {.cards = arguments.cards,
                                     .defaults = nullptr,
                                     .folderPicker = folderPicker(),
                                     .workspace = std::make_shared<DesktopWorkspace>(),
                                     .trusted = {}});
    const int status = show(parts, instance, main);
    AppContainer::end(std::move(parts), pool);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    prepareProcess();
    const auto arguments = parseWindowArguments(std::span(argv, static_cast<std::size_t>(argc)));
    if (!arguments) return say(arguments.error());
    const auto token = activationToken();
    // The window is drawn by the processor: it comes up sooner, with a fraction of the memory.
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    std::optional<DisplayCheck> displayCheck(std::in_place);
    const QApplication app(argc, argv);
    displayCheck.reset();
    QApplication::setApplicationName(QStringLiteral("Bildkurier"));
    QApplication::setDesktopFileName(QStringLiteral("local.quarzfeld.bildkurier"));
    QApplication::setWindowIcon(
        QIcon(QStringLiteral(":/bildkurier/local.quarzfeld.bildkurier.svg")));
    QTranslator dialogs;
    if (dialogs.load(QStringLiteral("qtbase_de"),
                     QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&dialogs);
    SingleInstance instance(runtimeFolder(), token);
    return instance.isFirst() ? run(instance, *arguments) : leaveToFirst(instance, *arguments);
}
