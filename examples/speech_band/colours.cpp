#include "colours.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace examples::speech {
namespace {

struct Rgb {
    double red, green, blue;  // linear light
};

// B. Ottosson, "A perceptual color space for image processing", 2020.
Rgb fromOklab(double lightness, double a, double b) {
    const double l = std::pow(lightness + 0.3963377774 * a + 0.2158037573 * b, 3);
    const double m = std::pow(lightness - 0.1055613458 * a - 0.0638541728 * b, 3);
    const double s = std::pow(lightness - 0.0894841775 * a - 1.2914855480 * b, 3);
    return {4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
            -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
            -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s};
}

bool displayable(Rgb colour) {
    const auto [least, greatest] = std::minmax({colour.red, colour.green, colour.blue});
    return least >= 0 && greatest <= 1;
}

// IEC 61966-2-1.
uint32_t encoded(double linear) {
    const double value = linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    return static_cast<uint32_t>(std::lround(255 * std::clamp(value, 0.0, 1.0)));
}

}  // namespace

uint32_t colourOf(double level) {
    const double x = std::clamp(level, 0.0, 1.0);
    const double lightness = 0.13 + 0.84 * x;
    const double hue = (285 + 180 * x) * std::numbers::pi / 180;
    // As much colour as a screen can show at this lightness, but not garish; less at the dark and the bright
    // end.
    double chroma = 0.19 * std::min(1.0, 4 * std::sqrt(x * (1 - x)) + 0.25);
    Rgb colour = fromOklab(lightness, chroma * std::cos(hue), chroma * std::sin(hue));
    while (!displayable(colour) && chroma > 0) {
        chroma -= 0.002;
        colour = fromOklab(lightness, chroma * std::cos(hue), chroma * std::sin(hue));
    }
    return encoded(colour.red) << 16 | encoded(colour.green) << 8 | encoded(colour.blue);
}

}  // namespace examples::speech
