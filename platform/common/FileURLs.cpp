// SPDX-License-Identifier: MIT
#include "platform/FileURLs.h"

#include "platform/PathSpelling.h"

#include <QMimeData>
#include <QStringDecoder>
#include <QSysInfo>

#include <algorithm>
#include <climits>
#include <optional>

namespace {

const QString kUriListType = QStringLiteral("text/uri-list");

// The characters, beside letters, digits and "-._~", that QUrl does not percent-encode in a path.
const QByteArray kPlainInPath = QByteArrayLiteral("/!$&'()*+,:;=@[]");

// The longest address of a file: the scheme, the longest name of a machine, and the longest path with every byte
// percent-encoded.
constexpr qsizetype kEncodedByte = 3;
constexpr qsizetype kLongestAddress = kEncodedByte * PATH_MAX + 7 + 255;

// Whether a file can have this path. File systems limit a name in bytes, or in characters as those of memory sticks do.
// A name never has more characters than bytes.
bool canBePath(const QByteArray &path)
{
    if (path.size() >= PATH_MAX || path.contains('\0'))
        return false;
    for (qsizetype start = 0; start < path.size();) {
        const qsizetype slash = path.indexOf('/', start);
        const qsizetype end = slash < 0 ? path.size() : slash;
        const QByteArrayView name = QByteArrayView(path).sliced(start, end - start);
        if (name.size() > NAME_MAX && QString::fromUtf8(name).size() > NAME_MAX)
            return false;
        start = end + 1;
    }
    return true;
}

// The path in `address` if it has the usual spelling: no machine name, and nothing that must be corrected or is not
// part of the path.
std::optional<QByteArray> plainlySpelledPath(QByteArrayView address)
{
    constexpr QByteArrayView withoutMachine("file:///");
    constexpr QByteArrayView start("file:/");
    if (address.startsWith(withoutMachine))
        address = address.sliced(withoutMachine.size());
    else if (address.startsWith(start) && !address.sliced(start.size()).startsWith('/'))
        address = address.sliced(start.size());
    else
        return {};
    QByteArray path;
    path.reserve(address.size());
    path.append('/');
    const auto hexDigit = [](char c) {
        if (c >= '0' && c <= '9')
            return c - '0';
        const char lower = static_cast<char>(c | 0x20);
        return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
    };
    for (qsizetype i = 0; i < address.size(); ++i) {
        const char c = address[i];
        const bool isLetterOrDigit = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (isLetterOrDigit || c == '-' || c == '.' || c == '_' || c == '~' || kPlainInPath.contains(c)) {
            path.append(c);
            continue;
        }
        const int high = c == '%' && i + 2 < address.size() ? hexDigit(address[i + 1]) : -1;
        const int low = high >= 0 ? hexDigit(address[i + 2]) : -1;
        if (low < 0)
            return {};
        path.append(static_cast<char>(high << 4 | low));
        i += 2;
    }
    return path;
}

// The path of a file on this machine, in any spelling of its URL. Nothing for a file elsewhere, and for anything that
// is no file.
std::optional<QByteArray> localPath(QByteArrayView address)
{
    if (address.size() > kLongestAddress)
        return {};
    if (auto path = plainlySpelledPath(address))
        return path;
    const QUrl url = QUrl::fromEncoded(address.toByteArray());
    if (!url.isLocalFile() || !url.path().startsWith(QLatin1Char('/')))
        return {};
    const QString host = url.host();
    if (!host.isEmpty() && host != QLatin1String("localhost") &&
        host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) != 0)
        return {};
    return fileSystemPath(url);
}

} // namespace

QList<QUrl> fileURLs(const QByteArray &uriList)
{
    QByteArrayView rest(uriList);
    if (rest.size() > kLongestAddressList) {
        rest = rest.first(kLongestAddressList);
        // A line that is cut off is ignored, unless it is too long already.
        const QByteArrayView cutOff = rest.sliced(rest.lastIndexOf('\n') + 1);
        if (cutOff.size() > kLongestAddress && cutOff.front() != '#')
            return {};
        rest.chop(cutOff.size());
    }
    QList<QUrl> urls;
    while (!rest.isEmpty() && urls.size() < kMostAddresses) {
        const qsizetype end = rest.indexOf('\n');
        const QByteArrayView line = (end < 0 ? rest : rest.first(end)).trimmed();
        rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
        if (line.isEmpty() || line.front() == '#' || (line.size() == 1 && line.front() == '\0'))
            continue;
        const auto path = localPath(line);
        if (!path || !canBePath(*path))
            return {};
        // Some programs encode a parenthesis or a semicolon and others do not. Both spellings must give one URL.
        urls.append(fileURL(*path));
    }
    return urls;
}

QList<QUrl> fileURLs(const QMimeData *data)
{
    // Qt itself would make a URL of every line, however many there are.
    return data && data->hasUrls() ? fileURLs(data->data(kUriListType)) : QList<QUrl>();
}

QList<QUrl> linkedFileURLs(const QByteArray &link)
{
    QStringDecoder decode(QStringDecoder::Utf16);
    const QString text = decode(QByteArrayView(link).first(std::min(link.size(), kLongestLink)));
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
    const QString name = fileURL.adjusted(QUrl::StripTrailingSlash).fileName(QUrl::FullyDecoded);
    return name.isEmpty() ? QStringLiteral("/") : name;
}
