// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Handle.h"
#include "ImportModel.h"
#include "SpeedGauge.h"
#include "TypeTile.h"

#include <QtQml/qqmlregistration.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace bildkurier {

/// The import as QML sees it: state to read, choices to write, actions to call. Changes are told
/// once for all that came together. The one who hears of the model's log lines. Main thread.
class ImportBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")

    Q_PROPERTY(bool connected READ connected NOTIFY changed)
    Q_PROPERTY(bool working READ working NOTIFY changed)
    Q_PROPERTY(bool importing READ importing NOTIFY changed)
    Q_PROPERTY(QString cameraTitle READ cameraTitle NOTIFY changed)
    Q_PROPERTY(QString cameraSubtitle READ cameraSubtitle NOTIFY changed)
    Q_PROPERTY(QList<QString> cameraNames READ cameraNames NOTIFY camerasChanged)
    Q_PROPERTY(int selectedCamera READ selectedCamera WRITE setSelectedCamera NOTIFY changed)

    Q_PROPERTY(Destination destination READ destination WRITE setDestination NOTIFY changed)
    Q_PROPERTY(QString destDescription READ destDescription NOTIFY changed)
    Q_PROPERTY(bool destNeedsChoice READ destNeedsChoice NOTIFY changed)
    Q_PROPERTY(bool destOnNetwork READ destOnNetwork NOTIFY changed)
    Q_PROPERTY(QString sftpUser READ sftpUser WRITE setSftpUser NOTIFY changed)
    Q_PROPERTY(QString sftpHost READ sftpHost WRITE setSftpHost NOTIFY changed)
    Q_PROPERTY(QString sftpPath READ sftpPath WRITE setSftpPath NOTIFY changed)
    Q_PROPERTY(QString sftpStatus READ sftpStatus NOTIFY changed)
    Q_PROPERTY(bool sftpConnected READ sftpConnected NOTIFY changed)
    Q_PROPERTY(bool sftpChecking READ sftpChecking NOTIFY changed)
    Q_PROPERTY(QString sftpHostKey READ sftpHostKey NOTIFY changed)
    Q_PROPERTY(bool sftpHostKeyMismatch READ sftpHostKeyMismatch NOTIFY changed)
    Q_PROPERTY(bool byDate READ byDate WRITE setByDate NOTIFY changed)
    Q_PROPERTY(bool byType READ byType WRITE setByType NOTIFY changed)

    Q_PROPERTY(
        bool autoImportEnabled READ autoImportEnabled WRITE setAutoImportEnabled NOTIFY changed)
    Q_PROPERTY(bool mayChangeAutoImport READ mayChangeAutoImport NOTIFY changed)
    Q_PROPERTY(QString autoImportCaption READ autoImportCaption NOTIFY changed)

    Q_PROPERTY(bool useFromDate READ useFromDate WRITE setUseFromDate NOTIFY changed)
    Q_PROPERTY(double fromDayIndex READ fromDayIndex WRITE setFromDayIndex NOTIFY changed)
    Q_PROPERTY(int dayCount READ dayCount NOTIFY changed)
    Q_PROPERTY(QString fromDay READ fromDay NOTIFY changed)

    Q_PROPERTY(Summary summary READ summary NOTIFY changed)
    Q_PROPERTY(QString newCount READ newCount NOTIFY changed)
    Q_PROPERTY(QString newSize READ newSize NOTIFY changed)
    Q_PROPERTY(QList<bildkurier::TypeTile> tiles READ tiles NOTIFY tilesChanged)

    Q_PROPERTY(QString logTitle READ logTitle NOTIFY logChanged)
    Q_PROPERTY(QList<QString> log READ log NOTIFY logChanged)

    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(QString news READ news NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(QString progressCounts READ progressCounts NOTIFY changed)
    Q_PROPERTY(bildkurier::SpeedGauge speed READ speed NOTIFY speedChanged)
    Q_PROPERTY(QString importTitle READ importTitle NOTIFY changed)
    Q_PROPERTY(bool mayImport READ mayImport NOTIFY changed)

public:
    enum class Destination : std::uint8_t { Folder, Server };
    Q_ENUM(Destination)

    /// What the section about new files shows.
    enum class Summary : std::uint8_t {
        NoCamera,
        Working,
        NeedsChoice,
        NoFiles,
        NothingNew,
        NewFiles,
    };
    Q_ENUM(Summary)

    explicit ImportBridge(std::shared_ptr<ImportModel> model);
    ~ImportBridge() override;
    ImportBridge(const ImportBridge&) = delete;
    ImportBridge& operator=(const ImportBridge&) = delete;

    bool connected() const;
    bool working() const;
    bool importing() const;
    QString cameraTitle() const;
    QString cameraSubtitle() const;
    QStringList cameraNames() const;
    /// Which of `cameraNames`; -1 for none.
    int selectedCamera() const;
    void setSelectedCamera(int index);

    Destination destination() const;
    void setDestination(Destination destination);
    QString destDescription() const;
    bool destNeedsChoice() const { return model_->destNeedsChoice(); }
    bool destOnNetwork() const { return model_->destOnNetwork(); }
    QString sftpUser() const;
    void setSftpUser(const QString& user);
    QString sftpHost() const;
    void setSftpHost(const QString& host);
    QString sftpPath() const;
    void setSftpPath(const QString& path);
    QString sftpStatus() const;
    bool sftpConnected() const { return model_->sftpConnected(); }
    bool sftpChecking() const { return model_->sftpChecking(); }
    /// What to say of the server's key; empty when it is not known.
    QString sftpHostKey() const;
    bool sftpHostKeyMismatch() const { return model_->sftpHostKeyMismatch(); }
    bool byDate() const { return model_->byDate(); }
    void setByDate(bool byDate);
    bool byType() const { return model_->byType(); }
    void setByType(bool byType);

    bool autoImportEnabled() const { return model_->autoImportEnabled(); }
    void setAutoImportEnabled(bool enabled);
    bool mayChangeAutoImport() const;
    QString autoImportCaption() const;

    bool useFromDate() const { return model_->useFromDate(); }
    void setUseFromDate(bool useFromDate);
    double fromDayIndex() const { return model_->fromDayIndex(); }
    void setFromDayIndex(double index);
    int dayCount() const;
    /// Empty without dated files.
    QString fromDay() const;

    Summary summary() const;
    QString newCount() const;
    QString newSize() const;
    QList<TypeTile> tiles() const;

    QString logTitle() const;
    /// Oldest first.
    QStringList log() const;

    QString status() const;
    /// The status as long as it is worth hearing: of an import's files, the first only. That one,
    /// and what came of the import, stay for a moment, whatever the status is by then.
    QString news() const { return news_; }
    /// 0 to 1.
    double progress() const { return model_->totalBytesProgress(); }
    QString progressCounts() const;
    SpeedGauge speed() const { return SpeedGauge(shownSpeed_); }
    QString importTitle() const;
    bool mayImport() const;

    Q_INVOKABLE void reload();
    Q_INVOKABLE void startImport();
    Q_INVOKABLE void cancelImport();
    Q_INVOKABLE void chooseDest();
    Q_INVOKABLE void showDestInFinder();
    Q_INVOKABLE void applySFTPDestination();
    Q_INVOKABLE void forgetSFTPHostKey();

signals:
    void changed();
    void camerasChanged();
    void tilesChanged();
    void logChanged();
    void speedChanged();

private:
    void announce();
    void noteImport();
    void tell();
    void tellNews();

    std::shared_ptr<ImportModel> model_;
    QTimer notice_;
    // Lists are told about only when they are others than those told last: QML makes all that
    // shows them anew.
    QStringList shownCameras_;
    std::vector<TypeSummary> shownTypes_;
    std::ptrdiff_t shownLines_ = 0;
    bool hasNewLines_ = false;
    SpeedMeter::Reading shownSpeed_;
    QString news_;
    QStringList mustBeHeard_;
    QTimer hearing_;
    bool wasImporting_ = false;
    bool hasNotedFirst_ = false;
    Handle observation_;
};

}  // namespace bildkurier
