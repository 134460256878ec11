// The corpora of the fuzzers, and what they found, in every test run.
#include "tests/fuzz/FileFuzz.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/fuzz/PngChecksums.h"

namespace vblur::test {
namespace {

std::string BytesOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class FileFuzz : public testing::TestWithParam<FileKind> {
 protected:
  // Of corpus/KIND/ANSWER, in the order of their names.
  static std::vector<std::filesystem::path> Corpus(const std::string& answer) {
    const auto folder = std::filesystem::path(VBLUR_FUZZ_CORPUS) / GetParam().name / answer;
    std::vector<std::filesystem::path> files(std::filesystem::directory_iterator(folder), {});
    std::ranges::sort(files);
    return files;
  }

  static void ExpectAnswer(const std::string& answer, bool isAccepted) {
    const auto files = Corpus(answer);
    EXPECT_GE(files.size(), 5u);
    for (const auto& file : files) {
      SCOPED_TRACE(file.filename().string());
      EXPECT_NO_THROW(EXPECT_EQ(GetParam().check(BytesOf(file)), isAccepted));
    }
  }
};

TEST_P(FileFuzz, AcceptsWhatIsSound) {
  ExpectAnswer("accepted", true);
}

TEST_P(FileFuzz, RefusesWhatIsNot) {
  ExpectAnswer("refused", false);
}

// What a fuzzer makes first of its corpus.
TEST_P(FileFuzz, EndsWhereverAFileIsCut) {
  for (const auto& file : Corpus("accepted")) {
    SCOPED_TRACE(file.filename().string());
    const std::string bytes = BytesOf(file);
    const std::size_t step = std::max<std::size_t>(1, bytes.size() / 16);
    for (std::size_t size = 0; size < bytes.size(); size += step)
      EXPECT_NO_THROW(GetParam().check(bytes.substr(0, size))) << size << " bytes";
  }
}

INSTANTIATE_TEST_SUITE_P(All, FileFuzz, testing::ValuesIn(kFileKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST(FileFuzzChecksums, AreThoseThatPngWritersMake) {
  const auto file = std::filesystem::path(VBLUR_FUZZ_CORPUS) / "pictures/accepted/rgb8.png";
  const std::string bytes = BytesOf(file);
  std::vector<std::uint8_t> mended(bytes.begin(), bytes.end());
  // The checksum of the header, which comes first and is 13 bytes long.
  for (std::size_t i = 29; i < 33; ++i)
    mended[i] = 0;
  MendPngChecksums(mended);
  EXPECT_TRUE(std::ranges::equal(mended, std::vector<std::uint8_t>(bytes.begin(), bytes.end())));
}

}  // namespace
}  // namespace vblur::test
