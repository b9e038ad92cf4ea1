// SPDX-License-Identifier: MIT
#pragma once

struct Alert;
struct VersionRecord;

// The alert that tells the user that `record` is newer than the running version. Its first button is the download.
Alert updateAlert(const VersionRecord &record);

// The alert that tells the user that there is no newer version.
Alert upToDateAlert();
