#include "host/print/svg_pdf.h"

#include <cairo-pdf.h>
#include <librsvg/rsvg.h>

#include <memory>

namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr const char* kNoDate = "2000-01-01T00:00:00Z";  // else the bytes would hang on the clock

cairo_status_t Append(void* text, const unsigned char* bytes, unsigned length) {
    static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), length);
    return CAIRO_STATUS_SUCCESS;
}

struct Free {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};

std::string ReasonOf(GError* error) {
    const std::string reason = error ? error->message : "it can't be drawn";
    g_clear_error(&error);
    return reason;
}

}  // namespace

std::string PdfOfSvg(const std::string& svg, double width, double height, std::string& pdf) {
    GError* error = nullptr;
    const auto* const bytes = reinterpret_cast<const guint8*>(svg.data());
    // Big drawings are not refused for their size.
    const std::unique_ptr<GInputStream, void (*)(GInputStream*)> stream(
        g_memory_input_stream_new_from_data(bytes, static_cast<gssize>(svg.size()), nullptr), [](GInputStream* s) { g_object_unref(s); });
    const std::unique_ptr<RsvgHandle, Free> handle(
        rsvg_handle_new_from_stream_sync(stream.get(), nullptr, RSVG_HANDLE_FLAG_UNLIMITED, nullptr, &error));
    if (!handle) return ReasonOf(error);
    const double wide = width * kPointsPerMillimetre, high = height * kPointsPerMillimetre;
    const std::unique_ptr<cairo_surface_t, Free> surface(cairo_pdf_surface_create_for_stream(Append, &pdf, wide, high));
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, kNoDate);
    const std::unique_ptr<cairo_t, Free> cairo(cairo_create(surface.get()));
    const RsvgRectangle page{0, 0, wide, high};
    if (!rsvg_handle_render_document(handle.get(), cairo.get(), &page, &error)) return ReasonOf(error);
    cairo_show_page(cairo.get());
    cairo_surface_finish(surface.get());
    const cairo_status_t status = cairo_surface_status(surface.get());
    return status == CAIRO_STATUS_SUCCESS ? "" : cairo_status_to_string(status);
}
