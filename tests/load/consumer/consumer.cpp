// C++20; a header of one family may be named too.
#include <zpp.h>
#include <zpp/arith.h>

#include <array>
#include <cstdio>
#include <span>

int main() {
    std::array<Zpp64f, 9> x{};
    const std::span<Zpp64f> part(x.data() + 1, 7);
    const bool right = zppsAddC_64f_I(2.5, part.data(), static_cast<int>(part.size())) == zppStatusOk &&
                       x.front() == 0.0 && part.front() == 2.5 && part.back() == 2.5 && x.back() == 0.0;
    std::printf("consumer: %s %s\n", right ? "right" : "wrong", zppsGetLibVersion()->Version);
    return right ? 0 : 1;
}
