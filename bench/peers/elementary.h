// The elementary functions of other libraries, an element at a time.
#pragma once

#include <span>

namespace zpp::bench {

struct ElementaryPeer {
    const char *who, *function;
    double (*of1)(double x);
    double (*of2)(double x, double y) = nullptr;
};

std::span<const ElementaryPeer> elementaryPeers();

}  // namespace zpp::bench
