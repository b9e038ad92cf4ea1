// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

// A file descriptor that is closed with its owner.
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

// A new pair; neither end is open when the system has none left.
SocketPair socketPair();

// One message, and the descriptors that came with it.
struct Received {
    enum class Kind { Message, Nothing, End };

    Kind kind = Kind::End;
    std::string bytes;
    std::vector<Descriptor> descriptors;
};

constexpr std::size_t kLargestMessage = 65'536; // bytes
constexpr std::size_t kMostDescriptors = 16;    // in one message

// Sends a message as a whole. False when the other end is gone, or takes no more while `socket` does not wait.
bool sendMessage(int socket, const std::string &bytes, const std::vector<int> &descriptors = {});

// The next message; Nothing when there is none yet and `socket` does not wait, End when there will be none.
Received receiveMessage(int socket);

// `bytes` in memory that nobody can change any more; not open when there is no room for them.
Descriptor sealedMemory(const char *name, const void *bytes, std::size_t size);

// Whether `descriptor` is such memory of exactly `size` bytes. Asks no file system.
bool isSealedMemory(int descriptor, std::size_t size);
