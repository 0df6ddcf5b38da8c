// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // A display that nobody sees.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
