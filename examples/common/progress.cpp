#include "common/progress.h"

#include <cstdio>

namespace examples {

void ProgressBar::show(const char* what, double part) {
    constexpr int width = 40;
    const int percent = static_cast<int>(100 * part);
    if (!shown_ || (percent == percent_ && what == what_)) return;
    percent_ = percent;
    what_ = what;
    const int filled = static_cast<int>(width * part);
    std::fprintf(stderr, "\r%-10s [%.*s%*s] %3d %%", what, filled, "########################################",
                 width - filled, "", percent);
    std::fflush(stderr);
}

ProgressBar::~ProgressBar() {
    if (percent_ >= 0) std::fprintf(stderr, "\r\033[K");
}

}  // namespace examples
