// Tests request more memory than there is; a sanitizer's allocator then returns null, as the system's does.
// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers' own names.
extern "C" {
const char* __asan_default_options();
const char* __tsan_default_options();

const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}

const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}
}
// NOLINTEND(bugprone-reserved-identifier)
