// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

namespace bildkurier {

/// The keys of the user defaults database.
struct SettingsKey {
    static constexpr auto destination = "dest";
    static constexpr auto destinationBookmark = "destBookmark";
    static constexpr auto destinationKind = "destinationKind";
    static constexpr auto sftpUser = "sftpUser";
    static constexpr auto sftpHost = "sftpHost";
    static constexpr auto sftpPath = "sftpPath";
    static constexpr auto byDate = "byDate";
    static constexpr auto byType = "byType";
    static constexpr auto useFromDate = "useFromDate";
    static constexpr auto fromDay = "fromDay";
    static constexpr auto autoImportEnabled = "autoImportEnabled";
    static constexpr auto autoImportCameraIdentity = "autoImportCameraIdentity";
    static constexpr auto autoImportCameraName = "autoImportCameraName";
};

}  // namespace bildkurier
