// Loaded before the C library: the Nth thread that the process starts, and every later one, fails. N is FAILING_THREAD.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdlib.h>

static atomic_int started;

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*), void* argument) {
  typedef int Create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  const char* const failing = getenv("FAILING_THREAD");
  if (failing != NULL && atomic_fetch_add(&started, 1) + 1 >= atoi(failing)) return EAGAIN;
  Create* const create = (Create*)dlsym(RTLD_NEXT, "pthread_create");
  return create(thread, attributes, function, argument);
}
