// SPDX-License-Identifier: MIT
#include "platform/FileURLs.h"

#include "platform/PathSpelling.h"

#include <QMimeData>
#include <QStringDecoder>
#include <QSysInfo>

#include <optional>

namespace {

const QString kUriListType = QStringLiteral("text/uri-list");

// The characters, beside letters, digits and "-._~", that QUrl does not percent-encode in a path.
const QByteArray kPlainInPath = QByteArrayLiteral("/!$&'()*+,:;=@[]");

// The URL of a file on this machine, in one spelling. Nothing for a file elsewhere, or for no file.
std::optional<QUrl> localFileURL(const QUrl &url)
{
    if (!url.isLocalFile() || !url.path().startsWith(QLatin1Char('/')))
        return {};
    const QString host = url.host();
    if (!host.isEmpty() && host != QLatin1String("localhost") &&
        host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) != 0)
        return {};
    // Some programs encode parentheses or semicolons, others do not: both spellings are the same file.
    return fileURL(fileSystemPath(url));
}

} // namespace

QList<QUrl> fileURLs(const QByteArray &uriList)
{
    QList<QUrl> urls;
    for (const QByteArray &line : uriList.split('\n')) {
        const QByteArray text = line.trimmed();
        if (text.isEmpty() || text.startsWith('#') || text == QByteArray(1, '\0'))
            continue;
        const auto url = localFileURL(QUrl::fromEncoded(text));
        if (!url)
            return {};
        urls.append(*url);
    }
    return urls;
}

QList<QUrl> fileURLs(const QMimeData *data)
{
    if (!data || !data->hasUrls())
        return {};
    QList<QUrl> urls;
    for (const QUrl &candidate : data->urls()) {
        const auto url = localFileURL(candidate);
        if (!url)
            return {};
        urls.append(*url);
    }
    return urls;
}

QList<QUrl> linkedFileURLs(const QByteArray &link)
{
    QStringDecoder decode(QStringDecoder::Utf16);
    const QString text = decode(link);
    return fileURLs(text.section(QLatin1Char('\n'), 0, 0).toUtf8());
}

QByteArray fileSystemPath(const QUrl &fileURL)
{
    return QByteArray::fromPercentEncoding(fileURL.path(QUrl::FullyEncoded).toLatin1());
}

QUrl fileURL(const QByteArray &path)
{
    return QUrl::fromEncoded("file://" + canonicalSpelling(path).toPercentEncoding(kPlainInPath), QUrl::StrictMode);
}

QString lastPathComponent(const QUrl &fileURL)
{
    return fileURL.adjusted(QUrl::StripTrailingSlash).fileName(QUrl::FullyDecoded);
}
