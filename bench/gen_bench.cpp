// Generators.
#include "bench/generators.h"

namespace zpp::bench {
namespace {

[[maybe_unused]] const Jobs signals = {
    {"Tone_Direct_64f", 8, timedTone<Zpp64f, zppsTone_Direct_64f>},
    {"Tone_Direct_64fc", 16, timedTone<Zpp64fc, zppsTone_Direct_64fc>},
    {"Triangle_Direct_64f", 8, timedTriangle<Zpp64f, zppsTriangle_Direct_64f>},
    {"Triangle_Direct_64fc", 16, timedTriangle<Zpp64fc, zppsTriangle_Direct_64fc>},
    {"VectorJaehne_64f", 8, timed<zppsVectorJaehne_64f>},
    {"VectorJaehne_32s", 4, timed<zppsVectorJaehne_32s, 1000000>},
    {"VectorRamp_64f", 8, timed<zppsVectorRamp_64f>},
    {"VectorRamp_32s", 4, timed<zppsVectorRamp_32s>},
};

}  // namespace
}  // namespace zpp::bench
