// A failed call of the library becomes an exception, with the library's own message.
#pragma once

#include <zpp.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace examples {

inline void check(ZppStatus status, const char* what) {
    if (status < zppStatusOk) throw std::runtime_error(std::string(what) + ": " + zppGetStatusString(status));
}

// Owns an object of the library that its function `Free` releases.
template <auto Free>
struct Release {
    template <class T>
    void operator()(T* object) const {
        Free(object);
    }
};
template <class T, auto Free>
using Owned = std::unique_ptr<T, Release<Free>>;

}  // namespace examples
