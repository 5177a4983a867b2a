// Writes charts as PNG by cairo, for viewers that do not show SVG.
#include <cairo.h>
#include <memory>

#include "chart/chart_plugin.h"

namespace {

// Pixels per unit. Two make the picture sharp on a screen of high resolution.
constexpr int SCALE = 2;

struct Destroy {
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
    void operator()(cairo_t* cairo) const noexcept { cairo_destroy(cairo); }
};

class Painter {
public:
    Painter(cairo_t* cairo, MonitorChartScene const& scene) noexcept
        : cairo_(cairo),
          palette_(scene.palettes[scene.theme == MONITOR_CHART_DARK ? MONITOR_CHART_DARK
                                                                    : MONITOR_CHART_LIGHT]) {
        cairo_scale(cairo, SCALE, SCALE);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    }

    void paintBackground() noexcept {
        choose(MONITOR_CHART_BACKGROUND, 1);
        cairo_paint(cairo_);
    }

    void paint(MonitorChartArea const& area) noexcept {
        choose(area.role, area.opacity);
        follow(area.points, area.count);
        cairo_fill(cairo_);
    }

    void paint(MonitorChartLine const& line) noexcept {
        choose(line.role, 1);
        cairo_set_line_width(cairo_, line.width);
        double const dashes[] = {line.dash, line.gap};
        cairo_set_dash(cairo_, dashes, line.gap > 0 ? 2 : 0, 0);
        follow(line.points, line.count);
        cairo_stroke(cairo_);
    }

    void paint(MonitorChartText const& text) noexcept {
        choose(text.role, 1);
        cairo_select_font_face(cairo_, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                               text.bold != 0 ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(cairo_, text.size);
        cairo_text_extents_t extents;
        cairo_text_extents(cairo_, text.text, &extents);
        // The part of the width that is to the left of the place: none, half or all of it.
        constexpr double WHOLE = static_cast<double>(MONITOR_CHART_END);
        double const before = extents.x_advance * text.anchor / WHOLE;
        cairo_move_to(cairo_, text.place.x - before, text.place.y);
        cairo_show_text(cairo_, text.text);
        cairo_new_path(cairo_);
    }

private:
    void choose(unsigned int role, double opacity) noexcept {
        unsigned int const colour = palette_[role];
        auto const part = [colour](unsigned int shift) {
            return (colour >> shift & 0xFFU) / 255.0;
        };
        cairo_set_source_rgba(cairo_, part(16), part(8), part(0), opacity);
    }

    void follow(MonitorChartPoint const* points, size_t count) noexcept {
        for (size_t i = 0; i < count; ++i)
            cairo_line_to(cairo_, points[i].x, points[i].y);  // the first call begins a path
    }

    cairo_t* cairo_;
    unsigned int const (&palette_)[MONITOR_CHART_ROLES];
};

struct Receiver {
    MonitorChartSink sink;
    void* context;
};

cairo_status_t receive(void* closure, unsigned char const* bytes, unsigned int count) noexcept {
    auto const& receiver = *static_cast<Receiver*>(closure);
    int const answer = receiver.sink(receiver.context, reinterpret_cast<char const*>(bytes), count);
    return answer == 0 ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

char const* write(MonitorChartScene const* scene, MonitorChartSink sink, void* context) noexcept {
    // After a failure cairo ignores all calls, and its status tells the reason in the end.
    std::unique_ptr<cairo_surface_t, Destroy> const surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(scene->width * SCALE),
                                   static_cast<int>(scene->height * SCALE)));
    std::unique_ptr<cairo_t, Destroy> const cairo(cairo_create(surface.get()));
    Painter painter(cairo.get(), *scene);
    painter.paintBackground();
    for (size_t i = 0; i < scene->areaCount; ++i)
        painter.paint(scene->areas[i]);
    for (size_t i = 0; i < scene->lineCount; ++i)
        painter.paint(scene->lines[i]);
    for (size_t i = 0; i < scene->textCount; ++i)
        painter.paint(scene->texts[i]);
    cairo_status_t status = cairo_status(cairo.get());
    Receiver receiver = {sink, context};
    if (status == CAIRO_STATUS_SUCCESS) {
        status = cairo_surface_write_to_png_stream(surface.get(), receive, &receiver);
    }
    return status == CAIRO_STATUS_SUCCESS ? nullptr : cairo_status_to_string(status);
}

constexpr MonitorChartWriter WRITER = {MONITOR_CHART_ABI, write};

}  // namespace

MonitorChartWriter const* monitorChartWriter() { return &WRITER; }
