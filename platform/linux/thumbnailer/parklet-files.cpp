// SPDX-License-Identifier: MIT
//
// parklet-files opens the user's files for the shelf, so that only this process waits for a file system that does not
// answer. It passes open files on and does not examine their contents. As "parklet-files --keep FOLDER" it writes
// entries of the thumbnail cache, and nothing else.

#include "platform/linux/helpers/Channel.h"
#include "platform/linux/helpers/Message.h"
#include "platform/linux/helpers/Protocol.h"
#include "platform/linux/thumbnailer/Confinement.h"
#include "platform/linux/thumbnailer/KeptFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::uint64_t kMemory = 16 << 20; // bytes
constexpr size_t kMostFirstBytes = 16'384;
constexpr size_t kProbe = 4'096; // bytes; read before a file is passed on
constexpr std::uint32_t kMostEntries = 8;
// A file that is replaced by a rename loses a link, which changes its attributes.
constexpr std::uint32_t kWriterEvents =
    IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF | IN_ONESHOT | IN_MASK_ADD;

FileKind kindOf(const struct stat &info)
{
    switch (info.st_mode & S_IFMT) {
    case S_IFDIR:
        return FileKind::Folder;
    case S_IFIFO:
        return FileKind::Fifo;
    case S_IFSOCK:
        return FileKind::Socket;
    case S_IFCHR:
        return FileKind::CharacterDevice;
    case S_IFBLK:
        return FileKind::BlockDevice;
    default:
        return FileKind::Regular;
    }
}

FileKind kindOf(const std::string &path)
{
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? kindOf(info) : FileKind::Missing;
}

struct Opened {
    Descriptor file;
    FileStateRecord state;
};

// Opens a regular file. Opening a device can have effects, so the kind is checked before; and because the path may lead
// to another file by then, the open file is checked again.
std::optional<Opened> openRegular(const std::string &path)
{
    struct stat info {};
    if (path.find('\0') != std::string::npos || kindOf(path) != FileKind::Regular)
        return {};
    Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return {};
    return Opened{std::move(file), {info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec}};
}

std::string firstBytes(int file, size_t most)
{
    std::string bytes(std::min(most, kMostFirstBytes), '\0');
    const ssize_t count = ::pread(file, bytes.data(), bytes.size(), 0);
    bytes.resize(static_cast<size_t>(std::max<ssize_t>(count, 0)));
    return bytes;
}

std::string look(MessageReader &question)
{
    const std::string path = question.takeBytes();
    const auto wanted = question.take<std::uint32_t>();
    const FileKind kind = kindOf(path);
    std::string first;
    if (wanted > 0 && kind == FileKind::Regular) {
        if (const auto opened = openRegular(path); opened && opened->state.size > 0)
            first = firstBytes(opened->file.get(), wanted);
    }
    return MessageWriter().add(kind).addBytes(first).bytes();
}

// Opens a file and its cache entries, and passes them to the thumbnailer at the other end of the socket that came with
// the question.
std::string make(MessageReader &question, const std::vector<Descriptor> &descriptors)
{
    const std::string path = question.takeBytes();
    const auto refused = question.take<FileStateRecord>();
    const auto count = std::min(question.take<std::uint32_t>(), kMostEntries);
    std::vector<Opened> entries;
    MessageWriter present;
    present.add(count);
    std::vector<std::string> paths;
    for (std::uint32_t i = 0; i < count; ++i)
        paths.push_back(question.takeBytes());
    const std::string picture = question.rest();
    const auto file = question.hasFailed() || descriptors.size() != 1 ? std::nullopt : openRegular(path);
    if (!file)
        return MessageWriter().add(kindOf(path)).add(FileStateRecord()).add(Passed::No).bytes();
    if (file->state == refused)
        return MessageWriter().add(FileKind::Regular).add(file->state).add(Passed::No).bytes();
    // If the file system opens files but cannot read them, this process waits for it, not the thumbnailer.
    if (file->state.size > 0)
        firstBytes(file->file.get(), kProbe);
    std::vector<int> passed{file->file.get()};
    for (const std::string &entry : paths) {
        auto opened = openRegular(entry);
        present.add(static_cast<std::uint8_t>(opened ? 1 : 0));
        if (!opened)
            continue;
        entries.push_back(std::move(*opened));
        passed.push_back(entries.back().file.get());
    }
    const bool isSent = sendMessage(descriptors.front().get(),
                                    MessageWriter().add(file->state).bytes() + present.bytes() + picture, passed);
    return MessageWriter().add(FileKind::Regular).add(file->state).add(isSent ? Passed::Yes : Passed::Lost).bytes();
}

std::string watch(MessageReader &question, const std::vector<Descriptor> &descriptors)
{
    const std::string path = question.takeBytes();
    int watch = -1;
    if (descriptors.size() == 1)
        watch = ::inotify_add_watch(descriptors.front().get(), path.c_str(), kWriterEvents);
    // Open the file after the watch began, so that no change between the two is lost.
    const auto opened = openRegular(path);
    return MessageWriter()
        .add(watch)
        .add(static_cast<std::uint8_t>(opened ? 1 : 0))
        .add(opened ? opened->state : FileStateRecord())
        .bytes();
}

std::string keep(MessageReader &question, const std::vector<Descriptor> &descriptors)
{
    const std::string path = question.takeBytes();
    const auto size = question.take<std::uint64_t>();
    bool isKept = false;
    if (!question.hasFailed() && descriptors.size() == 1 && isSealedMemory(descriptors.front().get(), size)) {
        std::string bytes(size, '\0');
        const ssize_t count = ::pread(descriptors.front().get(), bytes.data(), bytes.size(), 0);
        isKept = count == static_cast<ssize_t>(size) && keepFile(path, bytes);
    }
    return MessageWriter().add(static_cast<std::uint8_t>(isKept ? 1 : 0)).bytes();
}

std::string answer(MessageReader &question, const std::vector<Descriptor> &descriptors, bool keeps)
{
    switch (question.take<FileQuestion>()) {
    case FileQuestion::Look:
        return keeps ? std::string() : look(question);
    case FileQuestion::Make:
        return keeps ? std::string() : make(question, descriptors);
    case FileQuestion::Watch:
        return keeps ? std::string() : watch(question, descriptors);
    case FileQuestion::Keep:
        return keeps ? keep(question, descriptors) : std::string();
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    const bool keeps = argc == 3 && std::strcmp(argv[1], "--keep") == 0;
    beginHelper(kShelfSocket + 1);
    Confinement confinement;
    confinement.memory = kMemory;
    if (keeps) {
        // The confinement needs a folder that exists.
        if (!makeFolder(argv[2]))
            return 1;
        confinement.writesFiles = true;
        confinement.writable = {argv[2]};
    } else {
        confinement.opensFiles = true;
        confinement.awaitsWriters = true;
        confinement.readsEverywhere = true;
    }
    if (!confineFileSystem(confinement) || !confineProcess(confinement))
        return 1;
    for (;;) {
        const Received received = receiveMessage(kShelfSocket);
        if (received.kind != Received::Kind::Message)
            return 0;
        MessageReader question(received.bytes);
        const std::string reply = answer(question, received.descriptors, keeps);
        if (reply.empty() || !sendMessage(kShelfSocket, reply))
            return 0;
    }
}
