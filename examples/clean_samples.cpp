// Takes a whine off 16-bit samples, block by block, in C++20: prints 10 35 100 200 300 400 500 600.
#include <zpp.h>

#include <array>
#include <cstdio>
#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

namespace {

void check(ZppStatus status) {
    if (status < zppStatusOk) throw std::runtime_error(zppGetStatusString(status));
}

// A filter of samples, which remembers the end of each block for the next.
class SampleFilter {
  public:
    explicit SampleFilter(std::span<const Zpp64f> taps) {
        ZppsFIRState* state = nullptr;
        check(zppsFIRInitAlloc64f_32f(&state, taps.data(), static_cast<int>(taps.size()), nullptr));
        state_.reset(state);
    }

    void operator()(std::span<Zpp16s> samples) {
        const int len = static_cast<int>(samples.size());
        std::vector<Zpp32f> signal(samples.size());
        check(zppsConvert_16s32f(samples.data(), signal.data(), len));
        check(zppsFIR64f_32f_I(signal.data(), len, state_.get()));
        check(zppsConvert_32f16s_Sfs(signal.data(), samples.data(), len, zppRoundNear, 0));
    }

  private:
    using Release = decltype([](ZppsFIRState* state) { zppsFIRFree64f_32f(state); });
    std::unique_ptr<ZppsFIRState, Release> state_;
};

}  // namespace

int main() try {
    // A ramp of 100 a sample under a whine of 40 at the highest frequency: the ramp remains, a sample later.
    std::array<Zpp16s, 8> samples = {40, 60, 240, 260, 440, 460, 640, 660};
    SampleFilter filter(std::array<Zpp64f, 3>{0.25, 0.5, 0.25});
    const std::span all(samples);
    filter(all.first(3));
    filter(all.subspan(3));
    for (const Zpp16s& sample : samples) std::printf("%d%c", sample, &sample < &samples.back() ? ' ' : '\n');
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
