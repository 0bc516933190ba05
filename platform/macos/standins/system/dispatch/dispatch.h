#pragma once

#include <cstdint>

/// What the adapters use of Dispatch, as the system's own header has it for C++, where there is
/// none.
extern "C" {

struct dispatch_queue_s;
struct dispatch_semaphore_s;
struct dispatch_source_s;
struct dispatch_source_type_s;

typedef dispatch_queue_s* dispatch_queue_t;
typedef dispatch_semaphore_s* dispatch_semaphore_t;
typedef dispatch_source_s* dispatch_source_t;
typedef const dispatch_source_type_s* dispatch_source_type_t;
typedef void (*dispatch_function_t)(void* context);
typedef std::uint64_t dispatch_time_t;

extern dispatch_queue_s _dispatch_main_q;
extern const dispatch_source_type_s _dispatch_source_type_signal;
extern const dispatch_source_type_s _dispatch_source_type_timer;
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)
#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)
#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)

inline dispatch_queue_t dispatch_get_main_queue() { return &_dispatch_main_q; }
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta);

dispatch_semaphore_t dispatch_semaphore_create(std::intptr_t value);
std::intptr_t dispatch_semaphore_signal(dispatch_semaphore_t semaphore);
std::intptr_t dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout);

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle,
                                         std::uintptr_t mask, dispatch_queue_t queue);
void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler);
void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start,
                               std::uint64_t interval, std::uint64_t leeway);
std::uintptr_t dispatch_source_get_data(dispatch_source_t source);
void dispatch_source_cancel(dispatch_source_t source);

void dispatch_set_context(dispatch_source_t object, void* context);
void dispatch_set_finalizer_f(dispatch_source_t object, dispatch_function_t finalizer);
void dispatch_activate(dispatch_source_t object);
void dispatch_release(dispatch_source_t object);
}
