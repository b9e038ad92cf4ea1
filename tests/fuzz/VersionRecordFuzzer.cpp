// SPDX-License-Identifier: MIT
//
// Whatever a version record holds, its versions have an order and its alert has a sane length.
#include "platform/Alerts.h"
#include "updates/UpdateAlerts.h"
#include "updates/VersionComparison.h"
#include "updates/VersionRecord.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    constexpr qsizetype kLongestAlert = 5000;
    const auto record = parseVersionRecord(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    if (!record)
        return 0;
    const auto order = compareVersions(record->version, record->notes);
    if ((order < 0) != (compareVersions(record->notes, record->version) > 0) ||
        compareVersions(record->version, record->version) != 0 || !record->url.isValid() ||
        updateAlert(*record).informativeText.size() > kLongestAlert)
        std::abort();
    return 0;
}
