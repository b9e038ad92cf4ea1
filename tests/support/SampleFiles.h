// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSize>
#include <QUrl>

// Files that tests are about, made in a folder of their own.
class SampleFiles {
public:
    SampleFiles();
    ~SampleFiles();
    Q_DISABLE_COPY_MOVE(SampleFiles)

    // The path of a file of that name with these contents, last changed long ago.
    QByteArray file(const QByteArray &name, const QByteArray &contents) const;

    QByteArray path(const QByteArray &name) const;

    static QUrl url(const QByteArray &path);

    // Says when a file was last changed, in seconds since the epoch.
    static void setModified(const QByteArray &path, qint64 seconds, long nanoseconds = 0);

    // A picture whose left half is red and right half blue, as a file of that format ("png", "jpeg", "bmp").
    static QByteArray picture(const char *format, const QSize &size);

    // The same as a JPEG whose EXIF says how it is to be turned.
    static QByteArray turnedJpeg(const QSize &size, char orientation);

    // The same as a JPEG that comes in scans of growing detail.
    static QByteArray progressiveJpeg(const QSize &size);

    // The start of a PNG of that size, and nothing that could be decoded.
    static QByteArray pngHeader(const QSize &size);

private:
    QByteArray folder;
};
