// SPDX-License-Identifier: MIT
#include "platform/linux/files/JsonUserDefaults.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kData = QStringLiteral("base64");
constexpr qint64 kLongestFile = 16 << 20; // bytes

// File systems date changes by a clock of some milliseconds: two changes in one tick have the same date.
constexpr qint64 kClockTick = 100'000'000;     // nanoseconds
constexpr qint64 kEditingTime = 1'000'000'000; // nanoseconds
constexpr int kEditingWaits = 10;              // times
constexpr unsigned long kEditingWait = 5;      // milliseconds
constexpr unsigned long kLockWait = 10;        // milliseconds between two attempts
// A setting is an array or less; what is nested deeper than this is not laid out in lines, whose indents would be many
// times the text.
constexpr int kDeepestInLines = 8;

qint64 wallClock()
{
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

// Nanoseconds since the file's last change. Negative when the clock was set back.
qint64 age(const FileIdentity &identity)
{
    return wallClock() - identity.changed;
}

// An exclusive lock on a folder. A file system without locks counts as locked. Not locked when another program holds it
// for too long.
class FolderLock {
public:
    // Attempts to lock as long as they are fewer than `attempts`, which may change meanwhile. Counts those in `failed`.
    FolderLock(const QByteArray &folder, const std::atomic<int> &attempts, std::atomic<int> &failed)
        : descriptor(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (descriptor < 0)
            return;
        for (int i = 0; i < attempts; ++i) {
            locked = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR);
            if (locked)
                return;
            failed = i + 1;
            if (i + 1 < attempts)
                QThread::msleep(kLockWait);
        }
    }
    ~FolderLock()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    bool isLocked() const { return locked; }

private:
    int descriptor;
    bool locked = false;
};

bool isDeeperThan(int depth, const QJsonValue &value)
{
    const auto anyDeeper = [depth](const auto &container) {
        return std::any_of(container.begin(), container.end(),
                           [depth](const QJsonValue &entry) { return isDeeperThan(depth - 1, entry); });
    };
    if (value.isArray())
        return depth == 0 || anyDeeper(value.toArray());
    return value.isObject() && (depth == 0 || anyDeeper(value.toObject()));
}

QVariant fromJson(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool();
    case QJsonValue::Double:
        return value.toDouble();
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array: {
        QVariantList list;
        const QJsonArray array = value.toArray();
        for (const auto &entry : array)
            list.append(fromJson(entry));
        return list;
    }
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        if (object.size() == 1 && object.value(kData).isString()) {
            const auto data = QByteArray::fromBase64Encoding(object.value(kData).toString().toUtf8(),
                                                             QByteArray::AbortOnBase64DecodingErrors);
            if (data)
                return *data;
        }
        return object.toVariantMap();
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return {};
}

std::optional<QJsonValue> toJson(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return QJsonValue(value.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return QJsonValue(value.toLongLong());
    case QMetaType::Float:
    case QMetaType::Double: {
        // JSON knows no infinity.
        if (!std::isfinite(value.toDouble()))
            return {};
        return QJsonValue(value.toDouble());
    }
    case QMetaType::QString:
        return QJsonValue(value.toString());
    case QMetaType::QByteArray:
        return QJsonValue(QJsonObject{{kData, QString::fromLatin1(value.toByteArray().toBase64())}});
    case QMetaType::QStringList:
        return QJsonValue(QJsonArray::fromStringList(value.toStringList()));
    case QMetaType::QVariantList: {
        QJsonArray array;
        const QVariantList list = value.toList();
        for (const QVariant &entry : list) {
            const auto json = toJson(entry);
            if (!json)
                return {};
            array.append(*json);
        }
        return QJsonValue(array);
    }
    default:
        return {};
    }
}

} // namespace

QString JsonUserDefaults::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/parklet/settings.json");
}

JsonUserDefaults::JsonUserDefaults(const QString &file)
    : path(QFile::encodeName(QFileInfo(file).absoluteFilePath()))
{
}

QVariant JsonUserDefaults::object(const QString &key) const
{
    refresh();
    return lastObject(key);
}

QVariant JsonUserDefaults::lastObject(const QString &key) const
{
    return fromJson(values.value(key));
}

bool JsonUserDefaults::set(const QString &key, const QVariant &value)
{
    if (!value.isValid())
        return remove(key);
    const auto json = toJson(value);
    if (!json)
        return false;
    return change([&key, &json](QJsonObject &object) { object.insert(key, *json); });
}

bool JsonUserDefaults::remove(const QString &key)
{
    return change([&key](QJsonObject &object) { object.remove(key); });
}

bool JsonUserDefaults::set(const QHash<QString, QVariant> &changes)
{
    return change([&changes](QJsonObject &object) {
        for (auto change = changes.begin(); change != changes.end(); ++change) {
            if (const auto json = toJson(*change))
                object.insert(change.key(), *json);
            else
                object.remove(change.key());
        }
    });
}

QVariant JsonUserDefaults::asStored(const QVariant &value)
{
    const auto json = toJson(value);
    return json ? fromJson(*json) : QVariant();
}

bool JsonUserDefaults::change(const std::function<void(QJsonObject &)> &edit)
{
    const QByteArray target = linkTarget(path);
    if (target.isEmpty() || !makePrivateFolder(folderOf(target)))
        return false;
    const FolderLock lock(folderOf(target), lockAttempts, failedAttempts);
    failedAttempts = 0;
    isLockedOut = !lock.isLocked();
    if (isLockedOut)
        return false;
    refresh();
    // Without a backup the invalid file would be lost.
    if (state == State::Unreadable || state == State::Invalid)
        return false;

    QJsonObject changed = values;
    edit(changed);
    if (changed == values)
        return true;
    const QByteArray text = QJsonDocument(changed).toJson(
        isDeeperThan(kDeepestInLines, changed) ? QJsonDocument::Compact : QJsonDocument::Indented);
    if (!replaceFile(path, text))
        return false;
    contents = text;
    values = changed;
    state = State::Whole;
    struct stat status {};
    identity.reset();
    if (::stat(path.constData(), &status) == 0)
        identity = fileIdentity(status);
    settled = false;
    return true;
}

void JsonUserDefaults::removeUnfinished() const
{
    const QByteArray target = linkTarget(path);
    if (target.isEmpty() || !hasUnfinished(target))
        return;
    const std::atomic<int> once = 1;
    std::atomic<int> failed = 0;
    const FolderLock lock(folderOf(target), once, failed);
    // Another program may be writing it right now.
    if (lock.isLocked())
        ::removeUnfinished(target);
}

void JsonUserDefaults::refresh() const
{
    struct stat status {};
    if (::stat(path.constData(), &status) != 0) {
        contents.clear();
        values = {};
        identity.reset();
        state = errno == ENOENT || errno == ENOTDIR ? State::Absent : State::Unreadable;
        return;
    }
    FileIdentity now = fileIdentity(status);
    if (identity == now && settled)
        return;

    settled = age(now) > kClockTick;
    state = read();
    // An editor may have emptied the file before writing it.
    for (int i = 0; state == State::Invalid && i < kEditingWaits && age(now) < kEditingTime; ++i) {
        QThread::msleep(kEditingWait);
        state = read();
        settled = false;
    }
    if (state == State::Invalid && keepInvalidAside()) {
        state = State::Absent;
        identity.reset();
        return;
    }
    identity = now;
}

// Reads the file into `values`. Leaves them empty unless the file is valid.
JsonUserDefaults::State JsonUserDefaults::read() const
{
    struct stat status {};
    const bool exists = ::stat(path.constData(), &status) == 0;
    const State absence = errno == ENOENT ? State::Absent : State::Unreadable;
    const bool tooLong = exists && S_ISREG(status.st_mode) && status.st_size > kLongestFile;
    const auto now = exists && !tooLong ? readRegularFile(path, kLongestFile) : std::nullopt;
    // Reading a few bytes again costs less than parsing them again.
    if (now && state == State::Whole && *now == contents)
        return State::Whole;

    contents.clear();
    values = {};
    if (!exists)
        return absence;
    if (tooLong)
        return State::Invalid;
    if (!now)
        return State::Unreadable;
    const QJsonDocument document = QJsonDocument::fromJson(*now);
    if (!document.isObject())
        return State::Invalid;
    contents = *now;
    values = document.object();
    return State::Whole;
}

bool JsonUserDefaults::keepInvalidAside() const
{
    const QByteArray target = linkTarget(path);
    return !target.isEmpty() && ::rename(target.constData(), (target + ".invalid").constData()) == 0;
}
