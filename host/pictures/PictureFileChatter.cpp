#include <cstdio>
#include <mutex>

#include <fcntl.h>
#include <unistd.h>

#include "host/pictures/PictureFileOpen.h"

namespace vblur::host {

namespace {

struct Silence {
  std::mutex lock;
  int holders = 0;
  int kept = -1;  // what the standard error stream was
};

Silence& TheSilence() {
  static Silence silence;
  return silence;
}

}  // namespace

PictureFileChatter::PictureFileChatter() {
  Silence& silence = TheSilence();
  const std::lock_guard hold(silence.lock);
  if (silence.holders++ > 0) return;
  std::fflush(stderr);
  silence.kept = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  ::dup2(nowhere, STDERR_FILENO);
  ::close(nowhere);
}

PictureFileChatter::~PictureFileChatter() {
  Silence& silence = TheSilence();
  const std::lock_guard hold(silence.lock);
  if (--silence.holders > 0) return;
  std::fflush(stderr);
  if (silence.kept < 0) return;
  ::dup2(silence.kept, STDERR_FILENO);
  ::close(silence.kept);
  silence.kept = -1;
}

}  // namespace vblur::host
