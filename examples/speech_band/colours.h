#pragma once

#include <cstdint>

namespace examples::speech {

// The colour of a level from 0 (near black) to 1 (near white) as 0xRRGGBB. Equal steps look equal: lightness
// rises evenly, in the Oklab space, while the hue turns from blue through red to yellow.
uint32_t colourOf(double level);

}  // namespace examples::speech
