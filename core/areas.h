// Objects: a header, which begins with the identifier word, and the areas that it points at, in one block.
//
// An object says once what areas it has, as a callable `layOut(areas, header)` that takes them one after the
// other, by the numbers in the header, and puts their addresses there. The same callable counts the bytes of
// a block and carves it, so that the two agree:
//
//     const auto layOut = [](Areas& areas, Filter& filter) { filter.taps = areas.take<double>(filter.len); };
//     GetStateSize  objectBytes(header, kBufferAlignment, layOut), and room to align the object
//     Init          placeObject(header, kBufferAlignment, pBuffer, layOut)
//     InitAlloc     allocateObject(header, layOut)
//     Free          releaseObject(filter)
#pragma once

#include "core/checks.h"
#include "frame/memory.h"

namespace zpp::ZPP_ISA {

// In a caller's buffer areas begin on multiples of this; in an allocated block, of kBlockAlignment.
inline constexpr size_t kBufferAlignment = 16;

// Hands out the areas of a block; without a block it only counts what they need.
class Areas {
  public:
    // The first area begins at the first multiple of the alignment in the block.
    explicit Areas(size_t alignment, void* block = nullptr)
        : alignment_(alignment), next_(static_cast<Zpp8u*>(block)) {
        next_ += -reinterpret_cast<uintptr_t>(block) & (alignment - 1);
    }

    // An area of `count` elements. Null for none, and where areas are only counted.
    template <class T>
    T* take(uint64_t count) {
        const uint64_t bytes = (count * sizeof(T) + alignment_ - 1) & ~uint64_t{alignment_ - 1};
        bytes_ += bytes;
        if (next_ == nullptr || count == 0) return nullptr;
        Zpp8u* area = next_;
        next_ += bytes;
        return reinterpret_cast<T*>(area);
    }

    uint64_t bytes() const { return bytes_; }

  private:
    uint64_t alignment_;
    Zpp8u* next_;
    uint64_t bytes_ = 0;
};

// The bytes of an object with the numbers of `header`, from a multiple of the alignment on.
template <class Object, class LayOut>
inline uint64_t objectBytes(Object header, size_t alignment, LayOut layOut) {
    Areas areas(alignment);
    areas.take<Object>(1);
    layOut(areas, header);
    return areas.bytes();
}

// Carves a block for an object with the numbers of `header`. The areas hold what the block held.
template <class Object, class LayOut>
inline Object* placeObject(Object header, size_t alignment, void* block, LayOut layOut) {
    Areas areas(alignment, block);
    Object* object = areas.take<Object>(1);
    layOut(areas, header);
    *object = header;
    return object;
}

// The same in a block of its own, or null where memory is short.
template <class Object, class LayOut>
inline Object* allocateObject(const Object& header, LayOut layOut) {
    void* block = allocateAligned(objectBytes(header, kBlockAlignment, layOut));
    return block != nullptr ? placeObject(header, kBlockAlignment, block, layOut) : nullptr;
}

// Releases an object of allocateObject, or nothing. Its identifier goes first, so that who still holds the
// object is refused as long as the memory is not used again; through volatile, or a compiler that sees into
// the release could drop the store.
template <class Object>
inline void releaseObject(Object* object) {
    if (object == nullptr) return;
    *const_cast<volatile int32_t*>(&object->id) = 0;
    freeAligned(object);
}

// The work buffer of a call: the caller's, or where it gives none one of its own, if `bytes` are needed. They
// include the room to align it.
class WorkBuffer {
  public:
    WorkBuffer(Zpp8u* caller, int bytes)
        : own_(caller == nullptr && bytes > 0 ? allocateAligned(static_cast<uint64_t>(bytes)) : nullptr),
          block_(caller != nullptr ? caller : own_) {}
    ~WorkBuffer() {
        if (own_ != nullptr) freeAligned(own_);
    }
    WorkBuffer(const WorkBuffer&) = delete;
    WorkBuffer& operator=(const WorkBuffer&) = delete;

    void* block() const { return block_; }
    // Where it begins. Null where there is none.
    template <class T>
    T* from(size_t alignment) const {
        return Areas(alignment, block_).take<T>(1);
    }

  private:
    void* own_;
    void* block_;
};

}  // namespace zpp::ZPP_ISA
