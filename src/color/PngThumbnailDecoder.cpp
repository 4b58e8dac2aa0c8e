// PNG through libpng, one row at a time into the thumbnail's sums: memory stays at one row
// however large the picture. Interlaced files are read pass by pass without libpng's
// de-interlacing (which needs the whole picture): the seven passes hold every pixel exactly
// once, at known columns and rows, and an area average doesn't care in which order its pixels
// arrive.
//
// libpng reports failure by longjmp to the jump buffer set in runGuarded. Between there and
// libpng no frame owns anything; the session, owned by the caller, holds all state.

#include "color/ThumbnailAccumulator.h"
#include "color/ThumbnailDecoders.h"

#include <csetjmp>
#include <memory>
#include <png.h>
#include <vector>

namespace hueshelf::ThumbnailDecoders {

namespace {

// libpng's own default; wider rows are refused before anything is allocated for them.
constexpr png_uint_32 kMaxSide = 1'000'000;
// Ancillary chunks (text, profiles) are of no use here and may claim to be huge.
constexpr png_alloc_size_t kMaxChunkBytes = 8 * 1024 * 1024;
constexpr png_uint_32 kMaxCachedChunks = 128;

struct PngSession {
    png_structp png = nullptr;
    png_infop info = nullptr;
    QFile* file = nullptr;
    const ThumbnailLimits* limits = nullptr;
    std::vector<png_byte> row;
    std::optional<ThumbnailAccumulator> accumulator;
};

[[noreturn]] void failPng(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignorePngWarning(png_structp, png_const_charp) {}

void readFromFile(png_structp png, png_bytep data, std::size_t length) {
    auto* file = static_cast<QFile*>(png_get_io_ptr(png));
    if (file->read(reinterpret_cast<char*>(data), static_cast<qint64>(length)) !=
        static_cast<qint64>(length)) {
        png_error(png, "truncated");
    }
}

bool decodeRows(PngSession& s) {
    png_structp png = s.png;
    png_infop info = s.info;
    png_set_read_fn(png, s.file, readFromFile);
    png_set_user_limits(png, kMaxSide, kMaxSide);
    png_set_chunk_malloc_max(png, kMaxChunkBytes);
    png_set_chunk_cache_max(png, kMaxCachedChunks);
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);

    png_read_info(png, info);
    const png_uint_32 width = png_get_image_width(png, info);
    const png_uint_32 height = png_get_image_height(png, info);
    if (width < 1 || height < 1 || qint64{width} * qint64{height} > s.limits->maxSourcePixels) {
        return false;
    }
    // Every colour type to 8-bit RGBA: palettes and low bit depths expanded, tRNS to alpha,
    // 16 bits scaled with rounding, grey to RGB, opaque alpha where there is none.
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_read_update_info(png, info);
    if (png_get_bit_depth(png, info) != 8 || png_get_channels(png, info) != 4) {
        return false;
    }
    s.row.resize(png_get_rowbytes(png, info));
    s.accumulator.emplace(static_cast<int>(width), static_cast<int>(height));
    png_bytep row = s.row.data();
    constexpr auto straight = ThumbnailAccumulator::Alpha::straight;

    if (png_get_interlace_type(png, info) != PNG_INTERLACE_ADAM7) {
        for (png_uint_32 y = 0; y < height; ++y) {
            png_read_row(png, row, nullptr);
            s.accumulator->addRow(static_cast<int>(y), row, static_cast<int>(width), straight);
        }
        return true;
    }
    // Without png_set_interlace_handling, libpng hands over each pass's own rows in order,
    // skipping passes that are empty for this size, just as this loop does.
    for (int pass = 0; pass < 7; ++pass) {
        const png_uint_32 columns = PNG_PASS_COLS(width, pass);
        const png_uint_32 rows = PNG_PASS_ROWS(height, pass);
        if (columns == 0 || rows == 0) {
            continue;
        }
        for (png_uint_32 passRow = 0; passRow < rows; ++passRow) {
            png_read_row(png, row, nullptr);
            s.accumulator->addRow(static_cast<int>(PNG_ROW_FROM_PASS_ROW(passRow, pass)), row,
                                  static_cast<int>(columns), straight,
                                  static_cast<int>(PNG_PASS_START_COL(pass)),
                                  static_cast<int>(PNG_PASS_COL_OFFSET(pass)));
        }
    }
    return true;
}

// The one place libpng's failures land.
bool runGuarded(PngSession& s, bool (*step)(PngSession&)) {
    if (setjmp(png_jmpbuf(s.png)) != 0) {
        return false;
    }
    return step(s);
}

struct PngSessionRelease {
    void operator()(PngSession* s) const {
        if (s->png) {
            png_destroy_read_struct(&s->png, s->info ? &s->info : nullptr, nullptr);
        }
        delete s;
    }
};

} // namespace

std::optional<QImage> decodePng(QFile& file, const ThumbnailLimits& limits) {
    const std::unique_ptr<PngSession, PngSessionRelease> s(new PngSession);
    s->file = &file;
    s->limits = &limits;
    s->png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, failPng, ignorePngWarning);
    if (!s->png) {
        return std::nullopt;
    }
    s->info = png_create_info_struct(s->png);
    if (!s->info || !runGuarded(*s, decodeRows)) {
        return std::nullopt;
    }
    return s->accumulator->image();
}

} // namespace hueshelf::ThumbnailDecoders
