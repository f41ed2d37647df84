// Windows, beside the product with a table of their weights.
#include "bench/jobs.h"
#include "zpp/gen.h"

namespace zpp::bench {
namespace {

// Exponentials of up to 8, at every length.
ZppStatus kaiser(const Zpp64f* src, Zpp64f* dst, int len) {
    return zppsWinKaiser_64f(src, dst, len, 16 / static_cast<Zpp32f>(len));
}

[[maybe_unused]] const Jobs jobs = {
    {"WinBartlett_64f", 16, timed<zppsWinBartlett_64f>},
    {"WinHann_64f", 16, timed<zppsWinHann_64f>, true},
    {"WinHann_64fc", 32, timed<zppsWinHann_64fc>},
    {"WinHamming_64f", 16, timed<zppsWinHamming_64f>},
    {"WinBlackman_64f", 16, timed<zppsWinBlackman_64f>},
    {"WinBlackmanStd_64f", 16, timed<zppsWinBlackmanStd_64f>},
    {"WinBlackmanOpt_64f", 16, timed<zppsWinBlackmanOpt_64f>},
    {"WinKaiser_64f", 16, timed<kaiser>},
};

}  // namespace
}  // namespace zpp::bench
