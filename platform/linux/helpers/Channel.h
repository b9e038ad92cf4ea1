// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

// Owns a file descriptor and closes it.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor)
        : fd(descriptor)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : fd(std::exchange(other.fd, -1))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(fd, other.fd);
        return *this;
    }
    ~Descriptor();

    int get() const { return fd; }
    int release() { return std::exchange(fd, -1); }
    bool isOpen() const { return fd >= 0; }

private:
    int fd = -1;
};

// The two ends of a socket that keeps messages apart.
struct SocketPair {
    Descriptor ours;
    Descriptor theirs;
};

// Makes a new pair. Neither end is open when the system grants no socket.
SocketPair socketPair();

// One message, with the descriptors that came with it.
struct Received {
    enum class Kind { Message, Nothing, End };

    Kind kind = Kind::End;
    std::string bytes;
    std::vector<Descriptor> descriptors;
};

constexpr std::size_t kLargestMessage = 65'536; // bytes
constexpr std::size_t kMostDescriptors = 16;    // in one message

// Sends one whole message. False when the other end is closed, or when `socket` is non-blocking and its buffer is full.
bool sendMessage(int socket, const std::string &bytes, const std::vector<int> &descriptors = {});

// The next message. Nothing when `socket` is non-blocking and there is no message yet; End when the other end is
// closed.
Received receiveMessage(int socket);

// Puts `bytes` into sealed memory: no process can change it any more. Not open when there is no room for it.
Descriptor sealedMemory(const char *name, const void *bytes, std::size_t size);

// Whether `descriptor` is sealed memory of exactly `size` bytes. Does not access any file system.
bool isSealedMemory(int descriptor, std::size_t size);
