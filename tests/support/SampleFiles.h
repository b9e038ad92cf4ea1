// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSize>
#include <QUrl>

// Files for tests, in a temporary folder.
class SampleFiles {
public:
    SampleFiles();
    ~SampleFiles();
    Q_DISABLE_COPY_MOVE(SampleFiles)

    // Makes a file with this name and contents, last changed long ago. Returns its path.
    QByteArray file(const QByteArray &name, const QByteArray &contents) const;

    QByteArray path(const QByteArray &name) const;

    static QUrl url(const QByteArray &path);

    // Sets the modification time of a file, in seconds since the epoch.
    static void setModified(const QByteArray &path, qint64 seconds, long nanoseconds = 0);

    // A picture with a red left half and a blue right half, in the given format ("png", "jpeg", "bmp").
    static QByteArray picture(const char *format, const QSize &size);

    // The same as a JPEG with an EXIF orientation.
    static QByteArray turnedJpeg(const QSize &size, char orientation);

    // The same as a progressive JPEG.
    static QByteArray progressiveJpeg(const QSize &size);

    // The beginning of a PNG of that size, without pixels.
    static QByteArray pngHeader(const QSize &size);

private:
    QByteArray folder;
};
