#include "host/wic/FileStream.h"

#include <algorithm>

#include "host/base/LongPath.h"

namespace vblur::host {

ComPtr<FileStream> FileStream::Open(const std::filesystem::path& path, Use use, const StopTest* stop) {
  const bool reads = use == Use::Read;
  const DWORD access = reads ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
  const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const DWORD flags =
      use == Use::Scratch ? FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE : FILE_ATTRIBUTE_NORMAL;
  const HANDLE file = ::CreateFileW(ExtendedPath(path).c_str(), use == Use::Scratch ? access | DELETE : access, share,
                                    nullptr, reads ? OPEN_EXISTING : OPEN_ALWAYS, flags, nullptr);
  const DWORD error = ::GetLastError();
  auto stream = ComPtr<FileStream>::Own(new FileStream(file, stop));
  if (file == INVALID_HANDLE_VALUE) {
    stream->systemError_ = error != 0 ? error : ERROR_OPEN_FAILED;
  } else if (!reads) {
    stream->Succeeds(::SetEndOfFile(file));
  }
  return stream;
}

FileStream::~FileStream() {
  Close();
}

bool FileStream::Succeeds(BOOL result) {
  if (result == FALSE && systemError_ == 0) {
    const DWORD error = ::GetLastError();
    systemError_ = error != 0 ? error : ERROR_WRITE_FAULT;
  }
  return result != FALSE;
}

bool FileStream::Close() {
  if (file_ != INVALID_HANDLE_VALUE) Succeeds(::CloseHandle(file_));
  file_ = INVALID_HANDLE_VALUE;
  return systemError_ == 0;
}

::HRESULT FileStream::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (iid != __uuidof(::IUnknown) && iid != __uuidof(ISequentialStream) && iid != __uuidof(IStream))
    return E_NOINTERFACE;
  *object = static_cast<IStream*>(this);
  AddRef();
  return S_OK;
}

ULONG FileStream::AddRef() {
  return ++references_;
}

ULONG FileStream::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

::HRESULT FileStream::Read(void* bytes, ULONG count, ULONG* read) {
  DWORD done = 0;
  const bool succeeds = Succeeds(::ReadFile(file_, bytes, count, &done, nullptr));
  if (read != nullptr) *read = done;
  if (!succeeds) return STG_E_READFAULT;
  return done == count ? S_OK : S_FALSE;
}

::HRESULT FileStream::Write(const void* bytes, ULONG count, ULONG* written) {
  if (written != nullptr) *written = count;
  // Codecs are told that all is well, and the caller asks for the error.
  constexpr ULONG kPiece = ULONG{16} << 20;
  const auto* from = static_cast<const std::byte*>(bytes);
  while (count > 0 && !IsOver()) {
    const ULONG piece = std::min(count, kPiece);
    DWORD done = 0;
    if (!Succeeds(::WriteFile(file_, from, piece, &done, nullptr))) break;
    if (done != piece) systemError_ = ERROR_DISK_FULL;
    from += piece;
    count -= piece;
  }
  return S_OK;
}

::HRESULT FileStream::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* place) {
  LARGE_INTEGER at{};
  if (origin > STREAM_SEEK_END) return STG_E_INVALIDFUNCTION;
  // Places before the file's begin are no error of the system.
  if (::SetFilePointerEx(file_, move, &at, origin) == FALSE) return STG_E_INVALIDFUNCTION;
  if (place != nullptr) place->QuadPart = static_cast<ULONGLONG>(at.QuadPart);
  return S_OK;
}

::HRESULT FileStream::SetSize(ULARGE_INTEGER size) {
  LARGE_INTEGER at{};
  LARGE_INTEGER none{};
  LARGE_INTEGER end{};
  end.QuadPart = static_cast<LONGLONG>(size.QuadPart);
  const bool succeeds = ::SetFilePointerEx(file_, none, &at, FILE_CURRENT) != FALSE &&
                        ::SetFilePointerEx(file_, end, nullptr, FILE_BEGIN) != FALSE &&
                        Succeeds(::SetEndOfFile(file_)) && ::SetFilePointerEx(file_, at, nullptr, FILE_BEGIN) != FALSE;
  return succeeds ? S_OK : STG_E_MEDIUMFULL;
}

::HRESULT FileStream::CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) {
  return E_NOTIMPL;
}

::HRESULT FileStream::Commit(DWORD) {
  return S_OK;
}

::HRESULT FileStream::Revert() {
  return E_NOTIMPL;
}

::HRESULT FileStream::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
  return STG_E_INVALIDFUNCTION;
}

::HRESULT FileStream::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) {
  return STG_E_INVALIDFUNCTION;
}

::HRESULT FileStream::Stat(STATSTG* status, DWORD) {
  if (status == nullptr) return STG_E_INVALIDPOINTER;
  *status = {};
  status->type = STGTY_STREAM;
  LARGE_INTEGER size{};
  if (::GetFileSizeEx(file_, &size) == FALSE) return STG_E_ACCESSDENIED;
  status->cbSize.QuadPart = static_cast<ULONGLONG>(size.QuadPart);
  return S_OK;
}

::HRESULT FileStream::Clone(IStream**) {
  return E_NOTIMPL;
}

}  // namespace vblur::host
