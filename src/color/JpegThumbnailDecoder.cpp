// JPEG through libjpeg(-turbo) at reduced size: the scaled IDCT gives up to one output pixel per
// 8x8 block, so a 24-megapixel photo costs a few hundred kilobytes instead of 96 megabytes.
// Scanlines go straight into the thumbnail's sums; the picture is never held whole.
//
// libjpeg reports failure by calling error_exit, which must not return. It jumps back with
// longjmp rather than throwing: unwinding through C frames is not something every platform's
// libjpeg was built for. Only runGuarded calls setjmp, and between it and libjpeg no frame owns
// anything: all state lives in the session, which the caller owns and releases.

#include "color/ThumbnailAccumulator.h"
#include "color/ThumbnailDecoders.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <memory>
#include <vector>

// jpeglib.h expects size_t and FILE to be declared already.
#include <jerror.h>
#include <jpeglib.h>

namespace hueshelf::ThumbnailDecoders {

namespace {

constexpr std::size_t kInputChunk = 64 * 1024;
// A progressive file has about ten scans; thousands of tiny ones are a way to make a small
// file cost minutes.
constexpr int kMaxScans = 200;

struct JpegErrors {
    jpeg_error_mgr manager; // first, so that libjpeg's pointer is also ours
    std::jmp_buf jump;
};

struct JpegSource {
    jpeg_source_mgr manager; // first, as above
    QFile* file = nullptr;
    JOCTET* buffer = nullptr;
    bool reachedEnd = false;
};

struct JpegSession {
    jpeg_decompress_struct info{};
    JpegErrors errors{};
    JpegSource source{};
    jpeg_progress_mgr progress{};
    bool created = false;
    const ThumbnailLimits* limits = nullptr;
    std::vector<JOCTET> input;
    std::vector<JSAMPLE> scanline;
    std::optional<ThumbnailAccumulator> accumulator;
};

[[noreturn]] void failJpeg(j_common_ptr info) {
    std::longjmp(reinterpret_cast<JpegErrors*>(info->err)->jump, 1);
}

// Warnings stay quiet, except those that say the data ran out: a truncated file would
// otherwise come out with its missing part painted grey.
void onJpegMessage(j_common_ptr info, int level) {
    if (level < 0 &&
        (info->err->msg_code == JWRN_HIT_MARKER || info->err->msg_code == JWRN_JPEG_EOF)) {
        failJpeg(info);
    }
}

void ignoreJpegOutput(j_common_ptr) {}

void watchScans(j_common_ptr info) {
    if (info->is_decompressor &&
        reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > kMaxScans) {
        failJpeg(info);
    }
}

void initSource(j_decompress_ptr) {}
void termSource(j_decompress_ptr) {}

boolean fillInput(j_decompress_ptr info) {
    auto* source = reinterpret_cast<JpegSource*>(info->src);
    qint64 count = source->file->read(reinterpret_cast<char*>(source->buffer),
                                      static_cast<qint64>(kInputChunk));
    if (count <= 0) {
        // Past the end: an end marker lets libjpeg stop; it warns if it still needed data.
        source->buffer[0] = 0xFF;
        source->buffer[1] = JPEG_EOI;
        count = 2;
        source->reachedEnd = true;
    }
    source->manager.next_input_byte = source->buffer;
    source->manager.bytes_in_buffer = static_cast<std::size_t>(count);
    return TRUE;
}

void skipInput(j_decompress_ptr info, long count) {
    if (count <= 0) {
        return;
    }
    auto* source = reinterpret_cast<JpegSource*>(info->src);
    const auto wanted = static_cast<std::size_t>(count);
    if (wanted <= source->manager.bytes_in_buffer) {
        source->manager.next_input_byte += wanted;
        source->manager.bytes_in_buffer -= wanted;
        return;
    }
    // Past the end the next fill brings the end marker.
    source->file->skip(static_cast<qint64>(wanted - source->manager.bytes_in_buffer));
    source->manager.bytes_in_buffer = 0;
}

bool createDecoder(JpegSession& s) {
    jpeg_create_decompress(&s.info);
    s.created = true;
    s.info.src = &s.source.manager;
    s.source.manager.init_source = initSource;
    s.source.manager.fill_input_buffer = fillInput;
    s.source.manager.skip_input_data = skipInput;
    s.source.manager.resync_to_restart = jpeg_resync_to_restart;
    s.source.manager.term_source = termSource;
    s.progress.progress_monitor = watchScans;
    s.info.progress = &s.progress;
    return true;
}

// Adobe's CMYK JPEGs store the inks inverted (255 is no ink), others plainly.
void cmykToRgba(JSAMPLE* pixels, JDIMENSION count, bool inverted) {
    for (JDIMENSION i = 0; i < count; ++i) {
        JSAMPLE* px = pixels + 4 * static_cast<std::size_t>(i);
        const int c = inverted ? px[0] : 255 - px[0];
        const int m = inverted ? px[1] : 255 - px[1];
        const int y = inverted ? px[2] : 255 - px[2];
        const int k = inverted ? px[3] : 255 - px[3];
        px[0] = static_cast<JSAMPLE>(c * k / 255);
        px[1] = static_cast<JSAMPLE>(m * k / 255);
        px[2] = static_cast<JSAMPLE>(y * k / 255);
        px[3] = 255;
    }
}

bool decodeScaled(JpegSession& s) {
    jpeg_decompress_struct& info = s.info;
    jpeg_read_header(&info, TRUE);
    const JDIMENSION width = info.image_width;
    const JDIMENSION height = info.image_height;
    if (width < 1 || height < 1 || qint64{width} * qint64{height} > s.limits->maxSourcePixels) {
        return false;
    }
    const bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    // libjpeg-turbo turns greyscale, YCbCr and RGB into RGBA itself.
    info.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_RGBA;

    // The smallest eighth that keeps at least a thumbnail's side each way (all of a smaller
    // picture): the area average then sees every part of the picture.
    const auto wantedWidth = std::min<JDIMENSION>(width, ThumbnailAccumulator::side);
    const auto wantedHeight = std::min<JDIMENSION>(height, ThumbnailAccumulator::side);
    info.scale_denom = 8;
    for (unsigned int eighths = 1; eighths <= 8; ++eighths) {
        info.scale_num = eighths;
        jpeg_calc_output_dimensions(&info);
        if (info.output_width >= wantedWidth && info.output_height >= wantedHeight) {
            break;
        }
    }
    // A progressive file keeps all its coefficients; without a backing store, libjpeg fails
    // cleanly when they would pass this.
    info.mem->max_memory_to_use = static_cast<long>(s.limits->maxDecodedBytes);

    jpeg_start_decompress(&info);
    // A file of several scans has been read to its end marker by now; if that marker was the
    // one made up past the end of the file, scans are missing.
    if (jpeg_has_multiple_scans(&info) && s.source.reachedEnd) {
        return false;
    }
    if (info.output_components != 4) {
        return false;
    }
    const JDIMENSION outWidth = info.output_width;
    s.scanline.resize(static_cast<std::size_t>(outWidth) * 4);
    s.accumulator.emplace(static_cast<int>(outWidth), static_cast<int>(info.output_height));
    while (info.output_scanline < info.output_height) {
        const auto y = static_cast<int>(info.output_scanline);
        JSAMPROW row = s.scanline.data();
        if (jpeg_read_scanlines(&info, &row, 1) != 1) {
            return false;
        }
        if (cmyk) {
            cmykToRgba(row, outWidth, info.saw_Adobe_marker);
        }
        s.accumulator->addRow(y, row, static_cast<int>(outWidth),
                              ThumbnailAccumulator::Alpha::straight);
    }
    return true;
}

// The one place libjpeg's failures land.
bool runGuarded(JpegSession& s, bool (*step)(JpegSession&)) {
    if (setjmp(s.errors.jump) != 0) {
        return false;
    }
    return step(s);
}

struct JpegSessionRelease {
    void operator()(JpegSession* s) const {
        if (s->created) {
            jpeg_destroy_decompress(&s->info);
        }
        delete s;
    }
};

} // namespace

std::optional<QImage> decodeJpeg(QFile& file, const ThumbnailLimits& limits) {
    const std::unique_ptr<JpegSession, JpegSessionRelease> s(new JpegSession);
    s->limits = &limits;
    s->input.resize(kInputChunk);
    s->source.file = &file;
    s->source.buffer = s->input.data();
    s->info.err = jpeg_std_error(&s->errors.manager);
    s->errors.manager.error_exit = failJpeg;
    s->errors.manager.emit_message = onJpegMessage;
    s->errors.manager.output_message = ignoreJpegOutput;

    if (!runGuarded(*s, createDecoder) || !runGuarded(*s, decodeScaled)) {
        return std::nullopt;
    }
    return s->accumulator->image();
}

} // namespace hueshelf::ThumbnailDecoders
