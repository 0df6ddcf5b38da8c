// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AccessibleTree.h"
#include "OpenedPages.h"
#include "UserAtTheWindow.h"
#include "WindowScript.h"

#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

#include <QQmlEngine>

Q_IMPORT_QML_PLUGIN(BildkurierPlugin)

namespace bildkurier {

/// What the suites find: the application's parts, and the script.
class Stage : public QObject {
    Q_OBJECT

public slots:
    static void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qml"));
        qmlRegisterType<WindowScript>("Bildkurier.Test", 1, 0, "WindowScript");
        qmlRegisterType<OpenedPages>("Bildkurier.Test", 1, 0, "OpenedPages");
        qmlRegisterType<AccessibleTree>("Bildkurier.Test", 1, 0, "AccessibleTree");
    }
};

}  // namespace bildkurier

int main(int argc, char** argv) {
    bildkurier::becomeUserInBerlin();
    bildkurier::Stage stage;
    return quick_test_main_with_setup(argc, argv, "UI", SUITES, &stage);
}

#include "main.moc"
