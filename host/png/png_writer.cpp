#include "host/png/png_writer.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// libpng leaves a failed call by longjmp; the message is kept here for the caller.
struct Failure {
    char message[256] = {};
};
[[noreturn]] void OnError(png_structp png, png_const_charp message) {
    auto* failure = static_cast<Failure*>(png_get_error_ptr(png));
    std::snprintf(failure->message, sizeof failure->message, "%s", message);
    png_longjmp(png, 1);
}
void OnWarning(png_structp, png_const_charp) {}

void UnpackRow(const std::uint32_t* pixel, int width, png_byte* out) {
    for (int x = 0; x < width; ++x) {
        for (unsigned shift : {16u, 8u, 0u}) *out++ = static_cast<png_byte>(pixel[x] >> shift & 0xFF);
    }
}

/// `transparent` is a pixel, or null. Nothing with a destructor lives in here, since longjmp would pass it by.
bool Encode(const CSurface& surface, const std::uint32_t* transparent, std::FILE* file, png_byte* row, Failure& failure) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &failure, OnError, OnWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (info == nullptr) {
        std::snprintf(failure.message, sizeof failure.message, "out of memory");
        png_destroy_write_struct(&png, &info);
        return false;
    }
    if (setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(surface.Width()),
                 static_cast<png_uint_32>(surface.Height()), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 6);
    if (transparent != nullptr) {
        png_color_16 color{};
        color.red = static_cast<png_uint_16>(*transparent >> 16 & 0xFF);
        color.green = static_cast<png_uint_16>(*transparent >> 8 & 0xFF);
        color.blue = static_cast<png_uint_16>(*transparent & 0xFF);
        png_set_tRNS(png, info, nullptr, 0, &color);
    }
    png_write_info(png, info);
    for (int y = 0; y < surface.Height(); ++y) {
        UnpackRow(surface.Row(y), surface.Width(), row);
        png_write_row(png, row);
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

bool WritePng(const CSurface& surface, const std::string& file, std::string& error) {
    if (surface.Width() < 1 || surface.Height() < 1) {
        error = file + ": a picture without pixels cannot be written";
        return false;
    }
    std::unique_ptr<std::FILE, Close> out(std::fopen(file.c_str(), "wb"));
    if (out == nullptr) {
        error = file + ": " + std::strerror(errno);
        return false;
    }
    std::vector<png_byte> row(static_cast<std::size_t>(surface.Width()) * 3);
    Failure failure;
    errno = 0;
    bool good = Encode(surface, nullptr, out.get(), row.data(), failure);
    std::string reason = good ? "" : errno != 0 ? std::strerror(errno) : failure.message;
    if (good && std::fflush(out.get()) != 0) {
        good = false;
        reason = std::strerror(errno);
    }
    if (std::fclose(out.release()) != 0 && good) {
        good = false;
        reason = std::strerror(errno);
    }
    if (!good) {
        std::error_code none;
        if (std::filesystem::is_regular_file(file, none))
            std::filesystem::remove(file, none);  // never a device
        error = file + ": " + reason;
    }
    return good;
}

std::string PngBytes(const CSurface& surface, std::uint32_t transparent) {
    if (surface.Width() < 1 || surface.Height() < 1) return "";
    char* bytes = nullptr;
    std::size_t size = 0;
    std::unique_ptr<std::FILE, Close> out(::open_memstream(&bytes, &size));
    if (out == nullptr) return "";
    std::vector<png_byte> row(static_cast<std::size_t>(surface.Width()) * 3);
    Failure failure;
    const bool good = Encode(surface, &transparent, out.get(), row.data(), failure) && std::fflush(out.get()) == 0;
    out.reset();
    std::string text = good ? std::string(bytes, size) : "";
    std::free(bytes);
    return text;
}
