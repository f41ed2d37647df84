// What holds of every kind of object: one that is not made leaves the caller's pointer as it was.
#pragma once

#include <gtest/gtest.h>

#include <climits>

#include "tests/support/heap.h"
#include "zpp/status.h"

namespace zpp::test {

// init(&object) gives `expected`, an error, with the library's allocation number `failing` failing.
template <class Object, class Init>
void expectRefused(ZppStatus expected, Init init, int failing = INT_MAX) {
    int storage;
    auto* const unset = reinterpret_cast<Object*>(&storage);
    Object* object = unset;
    const long before = liveBlocks();
    const FailingHeap heap(failing);
    EXPECT_EQ(init(&object), expected) << "allocation " << failing << " fails";
    EXPECT_EQ(object, unset) << "allocation " << failing << " fails";
    EXPECT_EQ(liveBlocks(), before) << "allocation " << failing << " fails";
}

// init(&object) makes `allocations` of them, without any of which there is no object; free(object) takes its
// identifier away before its memory.
template <class Object, class Init, class Free>
void expectAllOrNothing(int allocations, Init init, Free free) {
    for (int i = 0; i < allocations; ++i) expectRefused<Object>(zppStatusAllocationFailed, init, i);
    Object* object = nullptr;
    const FailingHeap heap(allocations);
    ASSERT_EQ(init(&object), zppStatusOk);
    EXPECT_EQ(free(object), zppStatusOk);
    EXPECT_EQ(lastReleasedIdentifier(), 0);
}

}  // namespace zpp::test
