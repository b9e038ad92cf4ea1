// SPDX-License-Identifier: MIT
//
// Gives the parser of image headers whatever libFuzzer thinks of.

#include "platform/linux/thumbnailer/ImageHeader.h"

#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    const int memory = ::memfd_create("image", 0);
    if (memory < 0 || ::write(memory, bytes, size) != static_cast<ssize_t>(size))
        std::abort();
    const auto file = RegularFile::adopt(memory);
    const auto header = readImageHeader(*file);
    if (header && (header->size.width() < 0 || header->size.height() < 0 || header->format.isEmpty()))
        std::abort();
    return 0;
}
