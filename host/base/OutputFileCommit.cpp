#include "host/base/OutputFileCommit.h"

#include <system_error>

#include "host/base/Failure.h"
#include "host/base/PartFiles.h"

namespace vblur::host {

namespace {

std::filesystem::path WithoutLinks(const std::filesystem::path& target) {
  std::error_code error;
  if (!std::filesystem::is_symlink(target, error)) return target;
  const auto real = std::filesystem::weakly_canonical(target, error);
  return error ? target : real;
}

}  // namespace

OutputFileCommit::OutputFileCommit(const std::filesystem::path& target)
    : target_(WithoutLinks(target)), written_(PartFileFor(target_)) {}

OutputFileCommit::~OutputFileCommit() {
  std::error_code ignored;
  if (!committed_) std::filesystem::remove(written_, ignored);
}

void OutputFileCommit::Commit() {
  std::error_code error;
  const auto old = std::filesystem::status(target_, error);
  if (std::filesystem::is_regular_file(old)) std::filesystem::permissions(written_, old.permissions(), error);
  error.clear();
  std::filesystem::rename(written_, target_, error);
  if (error) RefuseToWrite(target_, error.message());
  committed_ = true;
}

}  // namespace vblur::host
