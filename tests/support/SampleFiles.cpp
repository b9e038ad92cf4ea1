// SPDX-License-Identifier: MIT
#include "tests/support/SampleFiles.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QtEndian>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kLongAgo = 1'600'000'000;

QByteArray encoded(const char *format, const QSize &size, bool progressive, QImageIOHandler::Transformations turn)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QPainter(&image).fillRect(0, 0, size.width() / 2, size.height(), Qt::red);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(progressive);
    if (turn != QImageIOHandler::TransformationNone)
        writer.setTransformation(turn);
    if (!writer.write(image))
        qFatal("A sample picture cannot be written.");
    return buffer.data();
}

} // namespace

SampleFiles::SampleFiles()
    : folder(QFile::encodeName(QDir::tempPath()) + "/parklet-samples.XXXXXX")
{
    if (!::mkdtemp(folder.data()))
        qFatal("A folder for sample files cannot be made.");
}

SampleFiles::~SampleFiles()
{
    // QTemporaryDir cannot remove files whose names are not UTF-8.
    std::error_code error;
    std::filesystem::remove_all(folder.toStdString(), error);
}

QByteArray SampleFiles::path(const QByteArray &name) const
{
    return folder + '/' + name;
}

QByteArray SampleFiles::file(const QByteArray &name, const QByteArray &contents) const
{
    const QByteArray result = path(name);
    ::unlink(result.constData());
    // QFile cannot be used because the name need not be UTF-8.
    const int fd = ::open(result.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0 || ::write(fd, contents.constData(), size_t(contents.size())) != contents.size())
        qFatal("A sample file cannot be written.");
    ::close(fd);
    setModified(result, kLongAgo);
    return result;
}

QUrl SampleFiles::url(const QByteArray &path)
{
    return QUrl::fromEncoded("file://" + path.toPercentEncoding("/"));
}

void SampleFiles::setModified(const QByteArray &path, qint64 seconds, long nanoseconds)
{
    const timespec times[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    if (::utimensat(AT_FDCWD, path.constData(), times, 0) != 0)
        qFatal("A sample file cannot be dated.");
}

QByteArray SampleFiles::picture(const char *format, const QSize &size)
{
    return encoded(format, size, false, QImageIOHandler::TransformationNone);
}

QByteArray SampleFiles::progressiveJpeg(const QSize &size)
{
    return encoded("jpeg", size, true, QImageIOHandler::TransformationNone);
}

QByteArray SampleFiles::turnedJpeg(const QSize &size, char orientation)
{
    // The EXIF data have the orientation only: a big-endian directory with one entry.
    QByteArray exif("\0\0Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0", 34);
    exif[27] = orientation;
    qToBigEndian(quint16(exif.size()), exif.data());
    QByteArray jpeg = picture("jpeg", size);
    jpeg.insert(2, QByteArray("\xff\xe1") + exif);
    return jpeg;
}

QByteArray SampleFiles::pngHeader(const QSize &size)
{
    QByteArray header("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\0\0\0\0\0\x08\x02\0\0\0\0\0\0\0", 33);
    qToBigEndian(quint32(size.width()), header.data() + 16);
    qToBigEndian(quint32(size.height()), header.data() + 20);
    return header;
}
