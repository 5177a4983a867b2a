#pragma once

#include <pthread.h>
#include <system_error>

// Threads that are cancelled while they run.
namespace testing_support {

/// Ends the calling thread by cancellation.
inline void cancelThisThread() {
    pthread_cancel(pthread_self());
    pthread_testcancel();
}

/// Runs `work` in a thread of its own. True if the thread ended by cancellation.
template <typename Work>
bool endsByCancellation(Work work) {
    auto const run = [](void* argument) -> void* {
        (*static_cast<Work*>(argument))();
        return nullptr;
    };
    pthread_t thread{};
    int const error = pthread_create(&thread, nullptr, run, &work);
    if (error != 0) throw std::system_error(error, std::generic_category());
    void* result = nullptr;
    pthread_join(thread, &result);
    return result == PTHREAD_CANCELED;
}

}  // namespace testing_support
