// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include <gtest/gtest.h>

#include <QFile>
#include <QXmlStreamReader>
#include <map>
#include <string>

namespace bildkurier {
namespace {

/// The texts of a property list, by key.
std::map<std::string, std::string> texts(QIODevice& list) {
    std::map<std::string, std::string> found;
    std::string key;
    QXmlStreamReader reader(&list);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        if (reader.name() == u"key")
            key = reader.readElementText().toStdString();
        else if (reader.name() == u"string")
            found[key] = reader.readElementText().toStdString();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return found;
}

TEST(InfoPlist, NamesTheBundleAndSaysWhatTheCameraIsFor) {
    QFile file(INFO_PLIST);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    auto told = texts(file);
    EXPECT_EQ(told["CFBundleIdentifier"], "local.quarzfeld.bildkurier");
    EXPECT_EQ(told["CFBundleExecutable"], "bildkurier");
    EXPECT_NE(told["NSCameraUsageDescription"], "");
}

}  // namespace
}  // namespace bildkurier
