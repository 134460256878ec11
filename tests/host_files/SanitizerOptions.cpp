// The PNG reader of the picture library jumps out of its own frames when a file ends early, and leaves
// its message behind.
extern "C" {
const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
  return "leak:OpenImageIO";
}
}
