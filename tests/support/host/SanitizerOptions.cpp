// Sanitizer options for the picture library, which is built without sanitizers.
// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers' own names.
extern "C" {
const char* __asan_default_options();
const char* __lsan_default_suppressions();
const char* __tsan_default_suppressions();

// The library has no frame pointers: suppressions need the unwind tables.
const char* __asan_default_options() {
  return "fast_unwind_on_malloc=0";
}

// Its PNG reader leaves a truncated file by longjmp and leaks its message.
const char* __lsan_default_suppressions() {
  return "leak:OpenImageIO";
}

// The sanitizer does not see the locks of its thread pool.
const char* __tsan_default_suppressions() {
  return "race:libOpenImageIO\ncalled_from_lib:libOpenImageIO.so\ncalled_from_lib:libOpenImageIO_Util.so";
}
}
// NOLINTEND(bugprone-reserved-identifier)
