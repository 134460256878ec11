#include "host/light/tiff/TiffHandle.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace vblur::host {

namespace {

// The handlers of the process, which the full library may have set, are not asked.
int Silent(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

class Options {
 public:
  Options() : options_(TIFFOpenOptionsAlloc()) {
    if (options_ == nullptr) return;
    TIFFOpenOptionsSetErrorHandlerExtR(options_, Silent, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options_, Silent, nullptr);
  }
  ~Options() {
    if (options_ != nullptr) TIFFOpenOptionsFree(options_);
  }
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;

  TIFFOpenOptions* Get() const { return options_; }

 private:
  TIFFOpenOptions* options_;
};

}  // namespace

TiffHandle OpenTiffFile(const std::filesystem::path& file) {
  const Options options;
  if (options.Get() == nullptr) return nullptr;
  // Read, not mapped: a file that another program cuts short would end this one.
  return TiffHandle(TIFFOpenExt(file.c_str(), "rm", options.Get()));
}

TiffHandle TiffTarget::Open() {
  const Options options;
  if (options.Get() == nullptr) return nullptr;
  return TiffHandle(TIFFClientOpenExt("", "w", this, Read, Write, Seek, Close, Size, nullptr, nullptr, options.Get()));
}

// Of a file that is written nothing is read.
tmsize_t TiffTarget::Read(thandle_t, void*, tmsize_t) {
  return -1;
}

tmsize_t TiffTarget::Write(thandle_t self, void* bytes, tmsize_t count) {
  auto& target = *static_cast<TiffTarget*>(self);
  target.Put(target.place_, bytes, static_cast<std::size_t>(count));
  target.place_ += static_cast<std::uint64_t>(count);
  target.size_ = std::max(target.size_, target.place_);
  return count;
}

toff_t TiffTarget::Seek(thandle_t self, toff_t place, int from) {
  auto& target = *static_cast<TiffTarget*>(self);
  target.place_ = place + (from == SEEK_CUR ? target.place_ : from == SEEK_END ? target.size_ : 0);
  return target.place_;
}

toff_t TiffTarget::Size(thandle_t self) {
  return static_cast<TiffTarget*>(self)->size_;
}

int TiffTarget::Close(thandle_t) {
  return 0;
}

void TiffMemory::Put(std::uint64_t place, const void* bytes, std::size_t count) {
  bytes_.resize(std::max(bytes_.size(), static_cast<std::size_t>(place) + count));
  std::memcpy(bytes_.data() + place, bytes, count);
}

void TiffOnDisk::Put(std::uint64_t place, const void* bytes, std::size_t count) {
  if (place != next_) file_.Seek(place);
  file_.Put(static_cast<const unsigned char*>(bytes), count);
  next_ = place + count;
}

}  // namespace vblur::host
