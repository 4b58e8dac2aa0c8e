// Image files arrive by drops from anywhere. Every decoder behind the thumbnail reader gets the
// bytes as a file (the readers take paths); an anonymous in-memory file keeps the disk out of
// the loop. Tight limits keep each run short while still walking every decoder's refusal of
// sizes it can't afford.

#include "color/ImageThumbnailReader.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const int fd = memfd_create("hueshelf-fuzz-image", 0);
    if (fd < 0)
        return 0;
    std::size_t written = 0;
    while (written < size) {
        const ssize_t n = write(fd, data + written, size - written);
        if (n <= 0)
            break;
        written += static_cast<std::size_t>(n);
    }
    hueshelf::ThumbnailLimits limits;
    limits.maxSourcePixels = 4'000'000;
    limits.maxDecodedBytes = 32 * 1024 * 1024;
    const auto thumbnail = hueshelf::ImageThumbnailReader::read(
        QStringLiteral("/proc/self/fd/") + QString::number(fd), limits);
    if (thumbnail && (thumbnail->width() != 50 || thumbnail->height() != 50))
        __builtin_trap(); // a thumbnail is always the square
    close(fd);
    return 0;
}
