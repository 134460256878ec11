// A file as the stream that the imaging component reads and writes. Keeps the first system error.
#pragma once

#include <atomic>
#include <filesystem>

#include "host/files/PictureFile.h"
#include "host/wic/ImagingFactory.h"

namespace vblur::host {

// The system counts references and never deletes through a base.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

class FileStream final : public IStream {
 public:
  enum class Use { Read, Write, Scratch };  // a scratch file is gone when it is closed

  // With a null `file` there was an error, which SystemError has. `stop` is borrowed; null: nothing stops it. Once it
  // is true nothing more is written, and no error is reported.
  static ComPtr<FileStream> Open(const std::filesystem::path& path, Use use, const StopTest* stop);

  // 0, or the system's number of the first error.
  DWORD SystemError() const { return systemError_; }
  // Writes what the system has not written, and closes the file. False: an error.
  bool Close();

  ::HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  ::HRESULT STDMETHODCALLTYPE Read(void* bytes, ULONG count, ULONG* read) override;
  ::HRESULT STDMETHODCALLTYPE Write(const void* bytes, ULONG count, ULONG* written) override;
  ::HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* place) override;
  ::HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override;
  ::HRESULT STDMETHODCALLTYPE CopyTo(IStream* to, ULARGE_INTEGER count, ULARGE_INTEGER* read,
                                     ULARGE_INTEGER* written) override;
  ::HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override;
  ::HRESULT STDMETHODCALLTYPE Revert() override;
  ::HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD type) override;
  ::HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD type) override;
  ::HRESULT STDMETHODCALLTYPE Stat(STATSTG* status, DWORD flags) override;
  ::HRESULT STDMETHODCALLTYPE Clone(IStream** stream) override;

 private:
  FileStream(HANDLE file, const StopTest* stop) : file_(file), stop_(stop) {}
  ~FileStream();
  // Notes the last error of a call that failed.
  bool Succeeds(BOOL result);
  bool IsOver() const { return systemError_ != 0 || (stop_ != nullptr && *stop_ && (*stop_)()); }

  std::atomic<ULONG> references_{1};
  HANDLE file_;
  const StopTest* stop_;
  DWORD systemError_ = 0;
};

#pragma GCC diagnostic pop

}  // namespace vblur::host
