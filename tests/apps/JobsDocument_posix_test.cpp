// docs/JOBS.md against the program: the examples are valid jobs, the first one renders with the progress shown there,
// and every field is documented and occurs in an example.
#include <set>
#include <sstream>

#include <nlohmann/json.hpp>

#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFields.h"
#include "host/jobs/JobFile.h"
#include "tests/apps/CodeBlocks.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

using Json = nlohmann::json;

std::string Document() {
  return TextOfDocument(VBLUR_JOBS_DOCUMENT);
}

std::vector<std::string> Blocks(const std::string& language) {
  return CodeBlocks(Document(), language);
}

// All but the code blocks.
std::string Prose() {
  const std::string fence = "\n```";
  const std::string text = Document();
  std::string prose;
  for (std::size_t begin = 0; begin != std::string::npos;) {
    const std::size_t end = text.find(fence, begin);
    prose += text.substr(begin, end - begin);
    if (end == std::string::npos) break;
    begin = text.find(fence, end + fence.size()) + fence.size();
  }
  return prose;
}

std::vector<Json> Lines(const std::string& text) {
  std::vector<Json> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(Json::parse(line));
  return lines;
}

// Times, memory and frames in flight differ from run to run: their values are removed.
Json Timeless(Json event) {
  for (const char* name : {"seconds", "memory"}) {
    if (!event.contains(name)) continue;
    for (auto& value : event[name])
      value = 0;
  }
  for (const char* name : {"framesInFlight", "wall", "framesPerSecond"})
    if (event.contains(name)) event[name] = 0;
  return event;
}

// The names of a job's fields and of those of its records, without its properties.
std::set<std::string> FieldsOf(const Json& job) {
  std::set<std::string> names;
  for (const auto& [name, value] : job.items()) {
    names.insert(name);
    if (name == "properties" || !value.is_object()) continue;
    for (const auto& [inner, ignored] : value.items())
      names.insert(inner);
  }
  return names;
}

class JobsDocument : public ProgramTest {
 protected:
  void WriteExample() const {
    std::ofstream(Path("shot.json"), std::ios::binary) << Blocks("json").at(0);
    for (const char* name : {"plate.0001.exr", "plate.0002.exr", "plate.0003.exr"})
      MakePicture(name, 40, 30, 16);
  }
  std::vector<Json> Progress(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"job", "shot.json", "--progress", "json"});
    return Lines(Run(options).err);
  }
};

TEST_F(JobsDocument, ItsExamplesAreJobs) {
  const auto examples = Blocks("json");
  EXPECT_EQ(examples.size(), 6u);
  for (const std::string& example : examples)
    EXPECT_NO_THROW(host::CheckJob(host::ParseJob(example, "."))) << example;
}

TEST_F(JobsDocument, ItsExampleRendersWithTheProgressShown) {
  WriteExample();
  const auto shown = Lines(Blocks("").at(0));
  const auto events = Progress();
  ASSERT_EQ(events.size(), shown.size());
  for (std::size_t i = 0; i < events.size(); ++i)
    EXPECT_EQ(Timeless(events[i]), Timeless(shown[i]));
}

TEST_F(JobsDocument, AFailedFrameIsReportedAsShown) {
  WriteExample();
  std::filesystem::remove(Path("plate.0002.exr"));
  const auto events = Progress({"--on-error", "skip"});
  ASSERT_EQ(events.size(), 6u);
  EXPECT_EQ(Timeless(events[3]), Timeless(Lines(Blocks("").at(1)).at(0)));
}

TEST_F(JobsDocument, DescribesEveryFieldAndShowsItInAnExample) {
  const std::string prose = Prose();
  std::set<std::string> shown;
  for (const std::string& example : Blocks("json"))
    shown.merge(FieldsOf(Json::parse(example)));
  const auto expectAll = [&](const auto& names) {
    for (const std::string_view view : names) {
      const std::string name(view);
      const bool isDescribed =
          prose.find("`" + name + "`") != std::string::npos || prose.find('"' + name + '"') != std::string::npos;
      EXPECT_TRUE(isDescribed) << name;
      EXPECT_TRUE(shown.contains(name)) << name;
    }
  };
  expectAll(host::job_fields::kJob);
  expectAll(host::job_fields::kInput);
  expectAll(host::job_fields::kMask);
  expectAll(host::job_fields::kOutput);
  expectAll(host::job_fields::kProject);
}

}  // namespace
}  // namespace vblur::cli
