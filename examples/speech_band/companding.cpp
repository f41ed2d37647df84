#include "companding.h"

#include <algorithm>
#include <cmath>

#include "common/check.h"

namespace examples::speech {
namespace {

constexpr size_t kBlock = 8192;

using Encode = ZppStatus (*)(const Zpp32f*, Zpp8u*, int);
using Decode = ZppStatus (*)(const Zpp8u*, Zpp32f*, int);

double signalToNoise(const std::vector<double>& samples, Encode encode, Decode decode) {
    std::vector<Zpp32f> singles(kBlock);
    std::vector<Zpp8u> codes(kBlock);
    std::vector<double> decoded(kBlock);
    double signal = 0, noise = 0;
    for (size_t done = 0; done < samples.size(); done += kBlock) {
        const double* const block = samples.data() + done;
        const int count = static_cast<int>(std::min(kBlock, samples.size() - done));
        check(zppsConvert_64f32f(block, singles.data(), count), "Converting");
        check(encode(singles.data(), codes.data(), count), "Encoding");
        check(decode(codes.data(), singles.data(), count), "Decoding");
        check(zppsConvert_32f64f(singles.data(), decoded.data(), count), "Converting");
        double norm, difference;
        check(zppsNorm_L2_64f(block, count, &norm), "Measuring");
        check(zppsNormDiff_L2_64f(block, decoded.data(), count, &difference), "Measuring");
        signal += norm * norm;
        noise += difference * difference;
    }
    return 10 * std::log10(signal / noise);
}

}  // namespace

SignalToNoise compandingNoise(const Recording& recording) {
    return {signalToNoise(recording.samples, zppsLinToALaw_32f8u, zppsALawToLin_8u32f),
            signalToNoise(recording.samples, zppsLinToMuLaw_32f8u, zppsMuLawToLin_8u32f)};
}

}  // namespace examples::speech
