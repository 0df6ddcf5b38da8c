// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

/// The keys of the user defaults database.
namespace bildkurier::settingsKeys {

inline constexpr auto destination = "dest";
inline constexpr auto destinationBookmark = "destBookmark";
inline constexpr auto destinationKind = "destinationKind";
inline constexpr auto sftpUser = "sftpUser";
inline constexpr auto sftpHost = "sftpHost";
inline constexpr auto sftpPath = "sftpPath";
inline constexpr auto byDate = "byDate";
inline constexpr auto byType = "byType";
inline constexpr auto useFromDate = "useFromDate";
inline constexpr auto fromDay = "fromDay";
inline constexpr auto autoImportEnabled = "autoImportEnabled";
inline constexpr auto autoImportCameraIdentity = "autoImportCameraIdentity";
inline constexpr auto autoImportCameraName = "autoImportCameraName";

}  // namespace bildkurier::settingsKeys
