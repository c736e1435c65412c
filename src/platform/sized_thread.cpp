#include "platform/sized_thread.h"

#include <pthread.h>

#include <stdexcept>
#include <system_error>

namespace zorvane {

struct SizedThread::Handle {
    pthread_t thread;
};

namespace {

void* runBody(void* body) {
    (*static_cast<std::function<void()>*>(body))();
    return nullptr;
}

} // namespace

SizedThread::~SizedThread() {
    Join();
    delete m_handle;
}

void SizedThread::Start(std::size_t stackBytes, std::function<void()> body) {
    if (m_started) throw std::logic_error("SizedThread started twice without a join");
    if (!m_handle) m_handle = new Handle{};
    m_body = std::move(body);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    // Below the system's minimum the size is refused: take at least that.
    const std::size_t size =
        stackBytes < static_cast<std::size_t>(PTHREAD_STACK_MIN) ? PTHREAD_STACK_MIN : stackBytes;
    int error = pthread_attr_setstacksize(&attributes, size);
    if (!error) error = pthread_create(&m_handle->thread, &attributes, runBody, &m_body);
    pthread_attr_destroy(&attributes);
    if (error) throw std::system_error(error, std::generic_category(), "cannot start a solve thread");
    m_started = true;
}

void SizedThread::Join() {
    if (!m_started) return;
    pthread_join(m_handle->thread, nullptr);
    m_started = false;
}

} // namespace zorvane
