// SPDX-License-Identifier: MIT
#include "platform/PathSpelling.h"

#include <QStringDecoder>

// The file system takes a composed letter and its parts for the same, and so a file has two names. Qt composes what is
// copied or dropped; a folder lists names as they were given.
QByteArray canonicalSpelling(const QByteArray &path)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(path);
    return decode.hasError() ? path : text.normalized(QString::NormalizationForm_C).toUtf8();
}
