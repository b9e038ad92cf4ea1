// SPDX-License-Identifier: MIT
#include "platform/linux/helpers/Channel.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL;

} // namespace

Descriptor::~Descriptor()
{
    if (fd >= 0)
        ::close(fd);
}

SocketPair socketPair()
{
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return {};
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

bool sendMessage(int socket, const std::string &bytes, const std::vector<int> &descriptors)
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * kMostDescriptors)> control{};
    if (bytes.size() > kLargestMessage || descriptors.size() > kMostDescriptors)
        return false;
    // The type of iov_base is not const, but sending does not change the bytes.
    iovec part{const_cast<char *>(bytes.data()), bytes.size()};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (!descriptors.empty()) {
        const size_t size = sizeof(int) * descriptors.size();
        message.msg_control = control.data();
        message.msg_controllen = CMSG_SPACE(size);
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(size);
        std::memcpy(CMSG_DATA(header), descriptors.data(), size);
    }
    ssize_t sent = 0;
    do
        sent = ::sendmsg(socket, &message, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(bytes.size());
}

Received receiveMessage(int socket)
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * kMostDescriptors)> control{};
    static thread_local std::array<char, kLargestMessage> buffer;
    iovec part{buffer.data(), buffer.size()};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    ssize_t count = 0;
    do
        count = ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    while (count < 0 && errno == EINTR);

    Received received;
    if (count < 0)
        received.kind = errno == EAGAIN ? Received::Kind::Nothing : Received::Kind::End;
    for (cmsghdr *header = count < 0 ? nullptr : CMSG_FIRSTHDR(&message); header;
         header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS)
            continue;
        const size_t descriptors = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < descriptors; ++i) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(header) + i * sizeof(int), sizeof descriptor);
            received.descriptors.emplace_back(descriptor);
        }
    }
    // No message of this program is empty. An empty message means that the other end is closed.
    if (count > 0 && (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) == 0) {
        received.kind = Received::Kind::Message;
        received.bytes.assign(buffer.data(), static_cast<size_t>(count));
    }
    return received;
}

Descriptor sealedMemory(const char *name, const void *bytes, size_t size)
{
    Descriptor memory(::memfd_create(name, MFD_CLOEXEC | MFD_ALLOW_SEALING));
    size_t written = 0;
    while (memory.isOpen() && written < size) {
        const ssize_t count = ::write(memory.get(), static_cast<const char *>(bytes) + written, size - written);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return Descriptor();
        written += static_cast<size_t>(count);
    }
    if (memory.isOpen() && ::fcntl(memory.get(), F_ADD_SEALS, kSeals) != 0)
        return Descriptor();
    return memory;
}

bool isSealedMemory(int descriptor, size_t size)
{
    // Only memory files have seals. Check them first, so that fstat() never accesses a real file system.
    struct stat info {};
    return ::fcntl(descriptor, F_GET_SEALS) == kSeals && ::fstat(descriptor, &info) == 0 &&
           info.st_size == static_cast<off_t>(size);
}
