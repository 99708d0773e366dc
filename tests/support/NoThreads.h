#pragma once

#include <cstddef>
#include <pthread.h>

namespace ondavia::testing {

/// As long as it lives, no thread can be had by who asks for none in particular: each would need a stack
/// larger than any memory.
class NoThreads final {
public:
    NoThreads() {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t huge;
        pthread_getattr_default_np(&huge);
        pthread_attr_setstacksize(&huge, std::size_t{1} << 47);
        pthread_setattr_default_np(&huge);
        pthread_attr_destroy(&huge);
    }
    ~NoThreads() {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

private:
    pthread_attr_t m_before{};
};

} // namespace ondavia::testing
