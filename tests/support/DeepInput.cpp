#include "support/DeepInput.h"

#include <gtest/gtest.h>

#include <pthread.h>

namespace {

#ifdef __SANITIZE_THREAD__
constexpr std::size_t sanitizersPart =
    772 * 1024; // of each thread's stack: thread-local variables of its own
#else
constexpr std::size_t sanitizersPart = 0;
#endif

constexpr std::size_t smallStack = 1024 * 1024 + sanitizersPart;

} // namespace

void runOnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, smallStack));
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(0, pthread_create(&thread, &attributes, start, &work));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::u16string repeat(std::u16string_view piece, std::size_t count) {
    std::u16string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}
