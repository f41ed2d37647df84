#include "plot.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "colours.h"
#include "common/check.h"

namespace examples::speech {
namespace {

constexpr double kRangeDb = 80;      // from the maximum down to the darkest colour
constexpr double kHighestHz = 8000;  // speech holds little above

// In pixels.
constexpr double kPanelHeight = 560, kLeft = 110, kTop = 84, kGap = 44, kBottom = 96;
constexpr double kBarGap = 36, kBarWidth = 24, kRight = 130;
constexpr double kBarLeft = kLeft + 2 * kPanelWidth + kGap + kBarGap;
constexpr double kWidth = kBarLeft + kBarWidth + kRight;
constexpr double kHeight = kTop + kPanelHeight + kBottom;
constexpr double kTitleSize = 28, kTextSize = 22, kTick = 7;

using Surface = Owned<cairo_surface_t, cairo_surface_destroy>;
using Context = Owned<cairo_t, cairo_destroy>;

enum class Align { left, centre, right };

class Drawing {
  public:
    Drawing()
        : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(kWidth),
                                              static_cast<int>(kHeight))),
          context_(cairo_create(surface_.get())) {
        cairo_set_source_rgb(cairo(), 1, 1, 1);
        cairo_paint(cairo());
    }

    void save(const std::filesystem::path& file) const {
        const cairo_status_t status = cairo_surface_write_to_png(surface_.get(), file.c_str());
        if (status != CAIRO_STATUS_SUCCESS)
            throw std::runtime_error(file.string() +
                                     ": cannot be written: " + cairo_status_to_string(status));
    }

    // Text whose line is centred on y.
    void text(const std::string& text, double x, double y, Align align, double size = kTextSize,
              bool bold = false) {
        cairo_select_font_face(cairo(), "Open Sans", CAIRO_FONT_SLANT_NORMAL,
                               bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(cairo(), size);
        cairo_text_extents_t extents;
        cairo_text_extents(cairo(), text.c_str(), &extents);
        const double part = align == Align::left ? 0 : align == Align::centre ? 0.5 : 1;
        ink(0.13);
        cairo_move_to(cairo(), x - part * extents.x_advance, y + 0.36 * size);
        cairo_show_text(cairo(), text.c_str());
    }

    // Text that runs upwards, centred on (x, y).
    void upwards(const std::string& words, double x, double y) {
        cairo_save(cairo());
        cairo_translate(cairo(), x, y);
        cairo_rotate(cairo(), -std::acos(-1) / 2);
        text(words, 0, 0, Align::centre);
        cairo_restore(cairo());
    }

    void line(double x1, double y1, double x2, double y2) {
        ink(0.13);
        cairo_set_line_width(cairo(), 1.5);
        cairo_move_to(cairo(), x1, y1);
        cairo_line_to(cairo(), x2, y2);
        cairo_stroke(cairo());
    }

    void dashedWhite(double x1, double x2, double y) {
        const double dashes[] = {9, 7};
        cairo_set_dash(cairo(), dashes, 2, 0);
        cairo_set_source_rgba(cairo(), 1, 1, 1, 0.75);
        cairo_set_line_width(cairo(), 1.5);
        cairo_move_to(cairo(), x1, y);
        cairo_line_to(cairo(), x2, y);
        cairo_stroke(cairo());
        cairo_set_dash(cairo(), nullptr, 0, 0);
    }

    // Fills a rectangle of whole pixels with colour(column, row).
    template <class Colour>
    void image(double left, double top, int width, int height, Colour colour) {
        cairo_surface_flush(surface_.get());
        unsigned char* pixels = cairo_image_surface_get_data(surface_.get());
        const int stride = cairo_image_surface_get_stride(surface_.get());
        for (int row = 0; row < height; ++row) {
            auto* line = reinterpret_cast<uint32_t*>(pixels + (static_cast<int>(top) + row) * stride);
            for (int column = 0; column < width; ++column)
                line[static_cast<int>(left) + column] = colour(column, row);
        }
        cairo_surface_mark_dirty(surface_.get());
    }

  private:
    cairo_t* cairo() const { return context_.get(); }
    void ink(double grey) { cairo_set_source_rgb(cairo(), grey, grey, grey); }

    Surface surface_;
    Context context_;
};

// A round distance between ticks that makes about `wanted` of them.
double tickDistance(double range, int wanted) {
    const double rough = range / wanted;
    const double decade = std::pow(10, std::floor(std::log10(rough)));
    for (const double step : {1.0, 2.0, 5.0})
        if (rough <= step * decade) return step * decade;
    return 10 * decade;
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", std::round(value * 1e6) / 1e6);
    return text;
}

double loudest(const Spectrogram& spectrogram) {
    return *std::max_element(spectrogram.levels.begin(), spectrogram.levels.end());
}

// The level in dB between the columns and bins next to a place that is given in columns and bins.
double levelAt(const Spectrogram& spectrogram, double column, double bin) {
    const double x = std::clamp(column, 0.0, spectrogram.columns - 1.0);
    const double y = std::clamp(bin, 0.0, spectrogram.bins - 1.0);
    const int left = static_cast<int>(x), below = static_cast<int>(y);
    const int right = std::min(left + 1, spectrogram.columns - 1),
              above = std::min(below + 1, spectrogram.bins - 1);
    const auto between = [](double from, double to, double part) { return from + (to - from) * part; };
    const auto alongTime = [&](int row) {
        return between(spectrogram.at(left, row), spectrogram.at(right, row), x - left);
    };
    return between(alongTime(below), alongTime(above), y - below);
}

class Plot {
  public:
    explicit Plot(const Picture& picture)
        : picture_(picture),
          top_(std::min(kHighestHz, picture.sampleRate / 2.0)),
          reference_(std::max(loudest(picture.before), -120.0)) {
        for (size_t i = 0; i < colours_.size(); ++i)
            colours_[i] = colourOf(static_cast<double>(i) / static_cast<double>(colours_.size() - 1));
    }

    void draw(const std::filesystem::path& file) {
        panel(picture_.before, "Recording", kLeft, true);
        const std::string band = number(picture_.band.low) + "–" + number(picture_.band.high) + " Hz";
        const std::string rate = number(picture_.bandRate / 1000.0) + " kHz";
        panel(picture_.after, "Telephone: " + rate + ", " + band, kLeft + kPanelWidth + kGap, false);
        colourBar();
        drawing_.save(file);
    }

  private:
    uint32_t colour(double levelDb) const {
        const double part = std::clamp(1 + (levelDb - reference_) / kRangeDb, 0.0, 1.0);
        return colours_[static_cast<size_t>(part * static_cast<double>(colours_.size() - 1))];
    }

    double yOf(double frequency) const { return kTop + kPanelHeight * (1 - frequency / top_); }

    void panel(const Spectrogram& spectrogram, const std::string& title, double left, bool labelled) {
        const double binsShown = top_ / (picture_.sampleRate / 2.0) * (spectrogram.bins - 1);
        drawing_.image(left, kTop, kPanelWidth, static_cast<int>(kPanelHeight), [&](int column, int row) {
            return colour(levelAt(spectrogram, (column + 0.5) / kPanelWidth * spectrogram.columns - 0.5,
                                  (1 - (row + 0.5) / kPanelHeight) * binsShown));
        });
        drawing_.text(title, left, kTop - 32, Align::left, kTitleSize, true);
        if (!labelled)
            for (const double edge : {picture_.band.low, picture_.band.high})
                drawing_.dashedWhite(left, left + kPanelWidth, yOf(edge));
        timeAxis(left);
        frequencyAxis(left, labelled);
    }

    void timeAxis(double left) {
        const double bottom = kTop + kPanelHeight;
        const double step = tickDistance(picture_.seconds, 6);
        for (double time = 0; time <= picture_.seconds * (1 + 1e-9); time += step) {
            const double x = left + time / picture_.seconds * kPanelWidth;
            drawing_.line(x, bottom, x, bottom + kTick);
            drawing_.text(number(time), x, bottom + 24, Align::centre);
        }
        drawing_.text("time, s", left + kPanelWidth / 2.0, bottom + 62, Align::centre);
    }

    void frequencyAxis(double left, bool labelled) {
        const double step = tickDistance(top_, 8);
        for (double frequency = 0; frequency <= top_ * (1 + 1e-9); frequency += step) {
            drawing_.line(left - kTick, yOf(frequency), left, yOf(frequency));
            if (labelled) drawing_.text(number(frequency / 1000), left - 14, yOf(frequency), Align::right);
        }
        if (labelled) drawing_.upwards("frequency, kHz", 36, kTop + kPanelHeight / 2);
    }

    void colourBar() {
        drawing_.image(
            kBarLeft, kTop, static_cast<int>(kBarWidth), static_cast<int>(kPanelHeight),
            [&](int, int row) { return colour(reference_ - (row + 0.5) / kPanelHeight * kRangeDb); });
        const double right = kBarLeft + kBarWidth;
        for (double level = 0; level <= kRangeDb; level += 20) {
            const double y = kTop + level / kRangeDb * kPanelHeight;
            drawing_.line(right, y, right + kTick, y);
            drawing_.text(level == 0 ? "0" : "−" + number(level), right + 14, y, Align::left);
        }
        drawing_.upwards("level, dB re maximum", kWidth - 30, kTop + kPanelHeight / 2);
    }

    const Picture& picture_;
    const double top_;        // highest frequency shown
    const double reference_;  // the level of 0 dB
    std::array<uint32_t, 1024> colours_;
    Drawing drawing_;
};

}  // namespace

void drawPicture(const Picture& picture, const std::filesystem::path& file) { Plot(picture).draw(file); }

}  // namespace examples::speech
