// Which lock guards what, in a form that Clang's thread-safety analysis checks in `make device`. Elsewhere they are
// comments. The analysis follows std::lock_guard and a mutex's own functions, but not std::unique_lock.
#ifndef HOST_UTILS_THREAD_SAFETY_H
#define HOST_UTILS_THREAD_SAFETY_H

#ifdef __clang__
#define ZELK_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define ZELK_THREAD_SAFETY(attribute)
#endif

// Of a member: used with this lock held.
#define ZELK_GUARDED_BY(lock) ZELK_THREAD_SAFETY(guarded_by(lock))

// Of a function: called with these locks held; takes them; releases them; takes them when it returns its first
// argument. Where no lock is named, the object itself is one.
#define ZELK_REQUIRES(...) ZELK_THREAD_SAFETY(requires_capability(__VA_ARGS__))
#define ZELK_ACQUIRE(...) ZELK_THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define ZELK_RELEASE(...) ZELK_THREAD_SAFETY(release_capability(__VA_ARGS__))
#define ZELK_TRY_ACQUIRE(...) ZELK_THREAD_SAFETY(try_acquire_capability(__VA_ARGS__))

// Of a class: it is a lock.
#define ZELK_LOCK ZELK_THREAD_SAFETY(capability("mutex"))

// Of a function: what it does with locks cannot be followed.
#define ZELK_NOT_ANALYZED ZELK_THREAD_SAFETY(no_thread_safety_analysis)

#endif // HOST_UTILS_THREAD_SAFETY_H
