// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FakeCamera.h"
#include "FakeCameraFile.h"
#include "FakeFileAccess.h"
#include "FakeFolderAccess.h"
#include "FakeFolderPicker.h"
#include "FakeRunLock.h"
#include "FakeSSHKeyring.h"
#include "FakeServer.h"
#include "FakeSleepBlocker.h"
#include "FakeWorkspace.h"
#include "ImportBridge.h"
#include "KeyBridge.h"
#include "ManualRunLoop.h"
#include "MemoryFileStore.h"
#include "MemorySettings.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace bildkurier {

/// What happens to a window, told by a test: the models behind it are the real ones, all that
/// they work with is fake, and time passes only when the test says so. Set the properties before
/// `begin`. Cameras count from 0 in the order in which they were made, files likewise.
class WindowScript : public QObject {
    Q_OBJECT
    Q_PROPERTY(bildkurier::ImportBridge* model READ model NOTIFY begun)
    Q_PROPERTY(bildkurier::KeyBridge* keys READ keys NOTIFY begun)

    Q_PROPERTY(bool granted MEMBER granted_)
    Q_PROPERTY(bool onNetwork MEMBER onNetwork_)
    Q_PROPERTY(bool keyRequired MEMBER keyRequired_)
    Q_PROPERTY(QString publicKey MEMBER publicKey_)
    Q_PROPERTY(QString fingerprint MEMBER fingerprint_)
    Q_PROPERTY(bool publicKeyReadable MEMBER publicKeyReadable_)
    Q_PROPERTY(bool startsWithServer MEMBER startsWithServer_)
    Q_PROPERTY(QString serverName MEMBER serverName_)

    Q_PROPERTY(QStringList shownFolders READ shownFolders)
    Q_PROPERTY(int dialogs READ dialogs)
    Q_PROPERTY(int keysMade READ keysMade)
    Q_PROPERTY(QString clipboard READ clipboard WRITE setClipboard)
    /// The desktop's look, which outlives this.
    Q_PROPERTY(bool dark READ isDark WRITE setDark)

public:
    ImportBridge* model() const { return model_.get(); }
    KeyBridge* keys() const { return keys_.get(); }
    QStringList shownFolders() const;
    /// How often a folder or a file was asked for.
    int dialogs() const { return static_cast<int>(picker_->starts.size()); }
    int keysMade() const { return keyring_->generated; }
    static QString clipboard();
    static void setClipboard(const QString& text);
    static bool isDark();
    static void setDark(bool dark);

    Q_INVOKABLE void begin();

    /// A camera that is not there yet; its number.
    Q_INVOKABLE int camera(const QString& name, const QString& identity = {});
    /// `day` as in "2024-05-09", or empty. Arrives when `deliver` says so.
    Q_INVOKABLE void file(int camera, const QString& name, double size, const QString& day = {});
    /// It does not say yet who it is.
    Q_INVOKABLE void keepIdentityOpen(int camera);
    Q_INVOKABLE void plugIn(int camera);
    Q_INVOKABLE void unplug(int camera);
    Q_INVOKABLE void openSession(int camera);
    Q_INVOKABLE void refuseSession(int camera, const QString& why);
    /// Its files are known; the destination is checked by `settle`.
    Q_INVOKABLE void readCard(int camera);
    /// All of these, up to the files that are new.
    Q_INVOKABLE void connectCamera(int camera);

    Q_INVOKABLE void startImport();
    Q_INVOKABLE void grow(int camera, int file, int bytes);
    Q_INVOKABLE void deliver(int camera, int file);
    /// The same for an import's last file, but nothing happens after the import's end.
    Q_INVOKABLE void deliverLast(int camera, int file);
    /// Lets everything happen that needs no time.
    Q_INVOKABLE void settle();
    Q_INVOKABLE void advance(int milliseconds);
    /// Lets the speed be measured by a clock that goes faster or slower.
    Q_INVOKABLE void scaleClock(double factor);

    Q_INVOKABLE void choose(const QString& path);
    Q_INVOKABLE void showServerKey(const QString& fingerprint);
    Q_INVOKABLE void refuseServer(const QString& why);
    Q_INVOKABLE void failKeys(const QString& why);
    Q_INVOKABLE void log(const QString& line);
    Q_INVOKABLE void log(const QStringList& lines);

    /// What the settings hold.
    Q_INVOKABLE QString stored(const QString& key) const;
    /// Bytes per second.
    Q_INVOKABLE bildkurier::SpeedGauge gauge(double current, double average, double peak) const;
    /// Of two files of 1 MB.
    Q_INVOKABLE bildkurier::TypeTile tile(const QString& extension) const;

signals:
    void begun();

private:
    void send(int camera, int file) const;
    FakeCameraFile& fileOf(int camera, int file) const;
    FakeCamera& at(int camera) const { return *cameras_.at(static_cast<std::size_t>(camera)); }

    ManualRunLoop loop_;
    std::shared_ptr<MemoryFileStore> store_ = std::make_shared<MemoryFileStore>();
    std::shared_ptr<FakeSSHKeyring> keyring_ = std::make_shared<FakeSSHKeyring>();
    std::shared_ptr<FakeServer> server_ = std::make_shared<FakeServer>(store_, keyring_);
    std::shared_ptr<MemorySettings> settings_ = std::make_shared<MemorySettings>();
    std::shared_ptr<FakeFolderPicker> picker_ = std::make_shared<FakeFolderPicker>();
    std::shared_ptr<FakeFolderAccess> access_ = std::make_shared<FakeFolderAccess>();
    std::shared_ptr<FakeWorkspace> workspace_ = std::make_shared<FakeWorkspace>();
    std::shared_ptr<ImportModel> import_;
    std::unique_ptr<ImportBridge> model_;
    std::unique_ptr<KeyBridge> keys_;
    std::vector<std::shared_ptr<FakeCamera>> cameras_;

    bool granted_ = true;
    bool onNetwork_ = false;
    bool keyRequired_ = false;
    QString publicKey_;
    QString fingerprint_;
    bool publicKeyReadable_ = true;
    bool startsWithServer_ = false;
    QString serverName_ = QStringLiteral("nas.local:2222");
};

}  // namespace bildkurier
