// SPDX-License-Identifier: MIT
#include "platform/common/ComposedSpelling.h"

#include <QStringDecoder>

QByteArray composedSpelling(const QByteArray &path)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(path);
    return decode.hasError() ? path : text.normalized(QString::NormalizationForm_C).toUtf8();
}
