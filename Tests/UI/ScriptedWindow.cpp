// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ScriptedWindow.h"

#include <QUrl>
#include <QVariant>
#include <stdexcept>

namespace bildkurier {

ScriptedWindow::ScriptedWindow(WindowScript& script, int height) {
    engine_.addImportPath(QStringLiteral("qrc:/qml"));
    engine_.setInitialProperties({{"model", QVariant::fromValue(script.model())},
                                  {"keys", QVariant::fromValue(script.keys())},
                                  {"support", QUrl()},
                                  {"privacy", QUrl()},
                                  {"height", height}});
    engine_.loadData("import Bildkurier\nMainWindow {}");
    window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().value(0));
    if (window_ == nullptr) throw std::runtime_error("the window does not open");
}

}  // namespace bildkurier
