// The picture library: a module that reads and writes picture files, loaded when first needed. Its dependencies are
// hundreds of libraries, whose loading dominates a short run: plain files go to a light one (LightPictures.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/base/LoadModule.h"
#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/files/PictureReport.h"
#include "host/files/RowProgress.h"

namespace vblur::host {

// A picture file opened for reading. One thread at a time.
class PictureSource {
 public:
  virtual ~PictureSource() = default;

  virtual const PictureInfo& Info() const = 0;
  // As many rows as are read well at once: whole tiles and strips, and a fraction of a second's work.
  virtual std::int32_t RowsAtOnce() const = 0;
  // Reads rows of the data window, 0 its top one: the channels of PictureInfo::Taken, of the kind in Info(), upper rows
  // first, without padding. Every row once, from the top on, RowsAtOnce at a time. Throws Failure (cannot read) when
  // the file is damaged or truncated.
  virtual void ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) = 0;
  // Facts of the file, after its rows are read.
  virtual ReadPicture Facts() = 0;
  // Whether they are the same before.
  virtual bool KnowsFacts() const { return false; }
};

// A picture to write.
struct PictureToWrite {
  const std::filesystem::path& target;  // for messages
  const std::filesystem::path& file;    // the one to write to
  const OutputFormat& format;
  const HostImage& image;
  const PictureMetadata* metadata;  // null for none
  const OutputStorage& storage;
  const RenderedPart* part = nullptr;  // null for all of it; goes with metadata
  std::int32_t threads = 1;            // that may pack the file; its bytes do not depend on their number
  // Of an image that is rendered meanwhile: its rows are used when they are there. Null: all are.
  const RowProgress* rendered = nullptr;

  void WaitForAll() const {
    if (rendered != nullptr) rendered->WaitFor(image.Height());
  }
};

// Thread-safe.
class PictureLibrary {
 public:
  virtual ~PictureLibrary() = default;

  // Of a file that RequirePictureFile accepts. Throws as ReadPictureInfo does.
  virtual std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) = 0;
  // Returns what the file loses of the source and of the picture, as WrittenPicture::Notes has it. Throws
  // Failure (cannot write), and FileInterrupted.
  virtual std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) = 0;
  // Of a file that RequirePictureFile accepts. Throws as ReadPictureInfo does.
  virtual PictureReport Report(const std::filesystem::path& path, const ReadChoice& choice) = 0;
  // Scales a four-component picture to the size of another of the same depth, each component independently.
  virtual void Scale(const HostImage& from, HostImage& to) = 0;
};

// The module that handles pictures, loaded at the first call and never unloaded: its dependencies do not support that.
// Throws Failure (cannot read) when it cannot be loaded. Thread-safe.
const LoadedModule& ThePictureModule();
// Reads and writes what the light library takes with it, and all else with the module.
PictureLibrary& ThePictureLibrary();

// Which of the two is used. Light: the light one alone; what it does not take is refused, as files that cannot be read
// or written.
enum class PictureLibraries : std::uint8_t { Automatic, Light, Full };
// Before the first picture. Windows has one for all, which its system brings.
void UsePictures(PictureLibraries libraries);

// What the module exports, by this name.
using PictureLibraryFunction = PictureLibrary*();
inline constexpr const char* kPictureLibraryFunction = "VBlurPictureLibrary";

}  // namespace vblur::host
