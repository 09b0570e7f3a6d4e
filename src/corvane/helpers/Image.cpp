#include "corvane/helpers/Image.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

// libjpeg's header needs FILE and size_t declared first.
#include <jpeglib.h>
#include <png.h>

namespace corvane {

namespace {

// Pixels as 8-bit RGB rows, top to bottom.
struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgb;
};

// libjpeg reports errors through a callback that must not return: it jumps back to the call.
struct JPEGErrorManager {
    jpeg_error_mgr base;
    std::jmp_buf jump;
};

void onJPEGError(j_common_ptr info) {
    std::longjmp(reinterpret_cast<JPEGErrorManager*>(info->err)->jump, 1);
}

// Warnings (a corrupt segment libjpeg went past) count as failures: an image that only decodes with
// damage is not passed on as good.
void onJPEGMessage(j_common_ptr info, int level) {
    if (level < 0) std::longjmp(reinterpret_cast<JPEGErrorManager*>(info->err)->jump, 1);
}

// Decodes the JPEG scaled by 1/`reduction` into RGB (`pixels` may be null to only check that it
// decodes). Gives false on any error. No C++ object with a destructor lives across the jumps.
bool decodeJPEG(const std::string& data, int reduction, Pixels* pixels, int& width, int& height) {
    jpeg_decompress_struct info;
    JPEGErrorManager errors;
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = onJPEGError;
    errors.base.emit_message = onJPEGMessage;
    unsigned char* row = nullptr;
    if (setjmp(errors.jump)) {
        std::free(row);
        jpeg_destroy_decompress(&info);
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(data.data()),
                 static_cast<unsigned long>(data.size()));
    jpeg_read_header(&info, TRUE);
    width = static_cast<int>(info.image_width);
    height = static_cast<int>(info.image_height);
    const bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    info.out_color_space = cmyk ? JCS_CMYK : JCS_RGB;
    info.scale_num = 1;
    info.scale_denom = static_cast<unsigned>(reduction);
    jpeg_start_decompress(&info);
    const auto outWidth = info.output_width;
    const auto components = static_cast<unsigned>(info.output_components);
    row = static_cast<unsigned char*>(std::malloc(outWidth * components));
    if (pixels) {
        pixels->width = static_cast<int>(outWidth);
        pixels->height = static_cast<int>(info.output_height);
        pixels->rgb.resize(std::size_t{outWidth} * info.output_height * 3);
    }
    while (info.output_scanline < info.output_height) {
        const auto y = info.output_scanline;
        jpeg_read_scanlines(&info, &row, 1);
        if (!pixels) continue;
        unsigned char* out = pixels->rgb.data() + std::size_t{y} * outWidth * 3;
        for (unsigned x = 0; x < outWidth; ++x) {
            const unsigned char* in = row + x * components;
            if (cmyk) {
                // Such files store inverted CMYK (the Adobe convention libjpeg passes on).
                for (int c = 0; c < 3; ++c)
                    out[x * 3 + c] = static_cast<unsigned char>(in[c] * in[3] / 255);
            } else {
                std::memcpy(out + x * 3, in, 3);
            }
        }
    }
    jpeg_finish_decompress(&info);
    std::free(row);
    row = nullptr;
    jpeg_destroy_decompress(&info);
    return true;
}

// Encodes RGB pixels as a baseline JFIF JPEG into `output`; false on error.
bool encodeJPEGPixels(const Pixels& pixels, int quality, std::string& output) {
    jpeg_compress_struct info;
    JPEGErrorManager errors;
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = onJPEGError;
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    if (setjmp(errors.jump)) {
        jpeg_destroy_compress(&info);
        std::free(buffer);
        return false;
    }
    jpeg_create_compress(&info);
    jpeg_mem_dest(&info, &buffer, &size);
    info.image_width = static_cast<JDIMENSION>(pixels.width);
    info.image_height = static_cast<JDIMENSION>(pixels.height);
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        auto* row = const_cast<unsigned char*>(pixels.rgb.data()) +
                    std::size_t{info.next_scanline} * pixels.width * 3;
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    output.assign(reinterpret_cast<const char*>(buffer), size);
    jpeg_destroy_compress(&info);
    std::free(buffer);
    return true;
}

// Decodes a PNG into RGB, transparent parts over white; false on error.
bool decodePNG(const std::string& data, Pixels* pixels, int& width, int& height) {
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, data.data(), data.size())) return false;
    width = static_cast<int>(image.width);
    height = static_cast<int>(image.height);
    image.format = PNG_FORMAT_RGB;
    std::vector<unsigned char> rgb(PNG_IMAGE_SIZE(image));
    const png_color white{255, 255, 255};
    if (!png_image_finish_read(&image, &white, rgb.data(), 0, nullptr)) {
        png_image_free(&image);
        return false;
    }
    if (pixels) *pixels = Pixels{width, height, std::move(rgb)};
    return true;
}

// The pixels reduced by box averaging, for a PNG that has to shrink.
Pixels reduced(const Pixels& pixels, int reduction) {
    if (reduction <= 1) return pixels;
    Pixels out;
    out.width = std::max(1, pixels.width / reduction);
    out.height = std::max(1, pixels.height / reduction);
    out.rgb.resize(std::size_t(out.width) * out.height * 3);
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x)
            for (int c = 0; c < 3; ++c) {
                unsigned sum = 0, count = 0;
                for (int dy = 0; dy < reduction && y * reduction + dy < pixels.height; ++dy)
                    for (int dx = 0; dx < reduction && x * reduction + dx < pixels.width; ++dx, ++count)
                        sum +=
                            pixels.rgb[(std::size_t(y * reduction + dy) * pixels.width + x * reduction + dx) *
                                           3 +
                                       c];
                out.rgb[(std::size_t(y) * out.width + x) * 3 + c] = static_cast<unsigned char>(sum / count);
            }
    return out;
}

bool startsWith(std::string_view data, std::string_view signature) {
    return data.size() >= signature.size() &&
           std::memcmp(data.data(), signature.data(), signature.size()) == 0;
}

} // namespace

Image::Image(std::string data, Format format, int width, int height)
    : data_(std::move(data)), format_(format), width_(width), height_(height) {}

std::optional<Image> Image::fromData(std::string data) {
    int width = 0, height = 0;
    if (startsWith(data, "\xFF\xD8\xFF")) {
        // An eighth of the size decodes every coefficient, at a fraction of the cost.
        if (!decodeJPEG(data, 8, nullptr, width, height)) return std::nullopt;
        return Image(std::move(data), Format::jpeg, width, height);
    }
    if (startsWith(data, "\x89PNG\r\n\x1A\n")) {
        if (!decodePNG(data, nullptr, width, height)) return std::nullopt;
        return Image(std::move(data), Format::png, width, height);
    }
    return std::nullopt;
}

bool Image::hasImageSignature(std::string_view data) {
    return startsWith(data, "\xFF\xD8\xFF") || startsWith(data, "\x89PNG\r\n\x1A\n");
}

std::optional<Image> Image::fromFile(const std::filesystem::path& url) {
    try {
        return fromData(readFileBytes(url));
    } catch (const std::filesystem::filesystem_error&) {
        return std::nullopt;
    }
}

std::optional<std::string> Image::encodeJPEG(int quality, int reduction) const {
    Pixels pixels;
    int width = 0, height = 0;
    if (format_ == Format::jpeg) {
        // libjpeg scales down by up to 8 while decoding; averaging does the rest.
        const int decoded = std::min(reduction, 8);
        if (!decodeJPEG(data_, decoded, &pixels, width, height)) return std::nullopt;
        pixels = reduced(pixels, reduction / decoded);
    } else {
        if (!decodePNG(data_, &pixels, width, height)) return std::nullopt;
        pixels = reduced(pixels, reduction);
    }
    std::string output;
    if (!encodeJPEGPixels(pixels, quality, output)) return std::nullopt;
    return output;
}

std::optional<std::string> Image::jpegData(int quality) const {
    if (format_ == Format::jpeg) return data_;
    return encodeJPEG(quality, 1);
}

std::optional<std::string> Image::jpegData(std::size_t maxBytes) const {
    if (format_ == Format::jpeg && data_.size() <= maxBytes) return data_;
    for (int reduction = 1;; reduction *= 2) {
        for (int quality : {90, 75, 60}) {
            auto data = encodeJPEG(quality, reduction);
            if (!data) return std::nullopt;
            if (data->size() <= maxBytes) return data;
        }
        if (std::max(width_, height_) / (reduction * 2) < 8) break;
    }
    return std::nullopt;
}

} // namespace corvane
