// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/references.h"

#include "benchmarks/stopwatch.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <jpeglib.h>
#include <png.h>

namespace complexion::bench {

namespace {

constexpr std::size_t kFramePixels = 1920UL * 1200;

struct Closer {
    void operator()(std::FILE* file) const { (void)std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

void require(bool condition, const char* what) {
    if (condition)
        return;
    std::perror(what);
    std::exit(1);
}

/// Uninitialised pixels, as when a program decodes into a newly allocated picture.
std::unique_ptr<RGBA32[]> newPixels(PixelSize size) {
    return std::make_unique_for_overwrite<RGBA32[]>(static_cast<std::size_t>(size.area()));
}

void decodeWithLibjpeg(const std::filesystem::path& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    require(file != nullptr, path.c_str());
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file.get());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_EXT_XBGR;
    jpeg_start_decompress(&info);
    const PixelSize size{static_cast<int>(info.output_width), static_cast<int>(info.output_height)};
    const auto pixels = newPixels(size);
    while (info.output_scanline < info.output_height) {
        auto* row =
            reinterpret_cast<JSAMPROW>(pixels.get() + std::size_t{info.output_scanline} * info.output_width);
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
}

void decodeWithLibpng(const std::filesystem::path& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    require(file != nullptr, path.c_str());
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file.get());
    png_read_info(png, info);
    png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
    png_read_update_info(png, info);
    const PixelSize size{static_cast<int>(png_get_image_width(png, info)),
                         static_cast<int>(png_get_image_height(png, info))};
    const auto pixels = newPixels(size);
    for (int y = 0; y < size.height; ++y)
        png_read_row(png, reinterpret_cast<png_bytep>(pixels.get() + std::ptrdiff_t{y} * size.width),
                     nullptr);
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
}

/// Encodes and calls `use(data, length)`.
template <class Use>
void encodeJpeg(const PlainPicture& picture, Scans scans, const Use& use) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* data = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&info, &data, &length);
    info.image_width = static_cast<JDIMENSION>(picture.size.width);
    info.image_height = static_cast<JDIMENSION>(picture.size.height);
    info.input_components = 4;
    info.in_color_space = JCS_EXT_XBGR;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, TRUE);
    for (int i = 0; i < info.num_components; ++i)
        info.comp_info[i].h_samp_factor = info.comp_info[i].v_samp_factor = 1;
    if (scans == Scans::Progressive)
        jpeg_simple_progression(&info);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        auto* row = reinterpret_cast<JSAMPROW>(
            const_cast<RGBA32*>(picture.pixels.data() + std::size_t{info.next_scanline} * info.image_width));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    use(data, length);
    std::free(data);
}

} // namespace

CopyReference::CopyReference(int megapixels)
    : m_from(static_cast<std::size_t>(portraitSize(megapixels).area()), RGBA32(0x01020304)), m_to(m_from) {}

double CopyReference::operator()() {
    return secondsOf([this] { std::memcpy(m_to.data(), m_from.data(), m_from.size() * sizeof(RGBA32)); });
}

FrameReference::FrameReference() : m_from(kFramePixels, 1), m_to(m_from) {}

double FrameReference::operator()() {
    return secondsOf(
        [this] { std::memcpy(m_to.data(), m_from.data(), m_from.size() * sizeof(std::uint32_t)); });
}

double decodeJpegSeconds(const std::filesystem::path& file) {
    return secondsOf([&] { decodeWithLibjpeg(file); });
}

double decodePngSeconds(const std::filesystem::path& file) {
    return secondsOf([&] { decodeWithLibpng(file); });
}

Bytes encodeWithLibjpeg(const PlainPicture& picture, Scans scans) {
    Bytes file;
    encodeJpeg(picture, scans,
               [&](const unsigned char* data, unsigned long length) { file.assign(data, data + length); });
    return file;
}

double encodeJpegSeconds(const PlainPicture& picture) {
    return secondsOf(
        [&] { encodeJpeg(picture, Scans::Sequential, [](const unsigned char*, unsigned long) {}); });
}

Bytes encodeWithLibpng(const PlainPicture& picture, int level) {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep data, std::size_t length) {
            auto& out = *static_cast<Bytes*>(png_get_io_ptr(writer));
            out.insert(out.end(), data, data + length);
        },
        [](png_structp) {});
    if (level >= 0)
        png_set_compression_level(png, level);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.size.width),
                 static_cast<png_uint_32>(picture.size.height), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_bgr(png);
    png_set_filler(png, 0, PNG_FILLER_BEFORE);
    for (int y = 0; y < picture.size.height; ++y)
        png_write_row(png, reinterpret_cast<png_const_bytep>(picture.pixels.data() +
                                                             std::ptrdiff_t{y} * picture.size.width));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

double writeSeconds(const Bytes& bytes, Flush flush) {
    const std::filesystem::path target = folder() / "written";
    const std::filesystem::path unfinished = folder() / "written.part";
    const double seconds = secondsOf([&] {
        const int file = ::open(unfinished.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
        require(file >= 0, unfinished.c_str());
        require(::write(file, bytes.data(), bytes.size()) == std::ssize(bytes), unfinished.c_str());
        require(flush == Flush::No || ::fsync(file) == 0, unfinished.c_str());
        ::close(file);
        require(::rename(unfinished.c_str(), target.c_str()) == 0, target.c_str());
    });
    std::filesystem::remove(target);
    return seconds;
}

Bytes bytesOf(const std::filesystem::path& file) {
    Result<Bytes> bytes = readFile(file);
    require(static_cast<bool>(bytes), file.c_str());
    return *std::move(bytes);
}

} // namespace complexion::bench
