#include "failing_new.h"

#include <cstdlib>
#include <new>

thread_local int ZelkTest::g_allocationsLeft = -1;

void* operator new(size_t size)
{
    if (ZelkTest::g_allocationsLeft == 0) {
        throw std::bad_alloc();
    }
    if (ZelkTest::g_allocationsLeft > 0) {
        --ZelkTest::g_allocationsLeft;
    }
    void* memory = std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept
{
    std::free(memory);
}
