// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

// Writes values one after the other, for messages between this program and its helpers. Both are built together, so the
// format needs no version.
class MessageWriter {
public:
    template<typename Value>
    MessageWriter &add(Value value)
    {
        static_assert(std::is_trivially_copyable_v<Value> && !std::is_pointer_v<Value>);
        char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        content.append(bytes, sizeof value);
        return *this;
    }

    MessageWriter &addBytes(std::string_view bytes)
    {
        add(static_cast<std::uint32_t>(bytes.size()));
        content.append(bytes);
        return *this;
    }

    const std::string &bytes() const { return content; }

private:
    std::string content;
};

// Reads what a MessageWriter has written. A hostile file may control the sender: past the end, values are 0 and the
// reader has failed.
class MessageReader {
public:
    explicit MessageReader(std::string_view message)
        : content(message)
    {
    }

    template<typename Value>
    Value take()
    {
        static_assert(std::is_trivially_copyable_v<Value> && !std::is_pointer_v<Value>);
        Value value{};
        if (failed || sizeof value > content.size() - position) {
            failed = true;
            return value;
        }
        std::memcpy(&value, content.data() + position, sizeof value);
        position += sizeof value;
        return value;
    }

    std::string takeBytes()
    {
        const auto size = take<std::uint32_t>();
        if (failed || size > content.size() - position) {
            failed = true;
            return {};
        }
        position += size;
        return content.substr(position - size, size);
    }

    std::string rest() const { return failed ? std::string() : content.substr(position); }
    bool hasFailed() const { return failed; }

private:
    std::string content;
    std::size_t position = 0;
    bool failed = false;
};
