// vblur info FILE...: what picture files hold, and what a render would keep of it.
#include <algorithm>
#include <cstdio>
#include <optional>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "apps/vblur/Commands.h"
#include "apps/vblur/OptionText.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/files/PictureReport.h"

namespace vblur::cli {

namespace {

using Json = nlohmann::ordered_json;
using host::OutputFormat;
using host::PictureReport;

std::string Window(const host::FileWindow& window) {
  return std::to_string(window.width) + " x " + std::to_string(window.height) + " at " + std::to_string(window.x) +
         ", " + std::to_string(window.y);
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words)
    text += (text.empty() ? "" : ", ") + word;
  return text;
}

// An output of one format, as a render of the file makes it.
struct Outcome {
  std::string extension;
  std::string kept;
  std::vector<std::string> lost;
};

Outcome OutcomeOf(const PictureReport& report, const OutputFormat& format) {
  const host::OutputStorage storage;
  const std::string compression = host::OutputCompressionOf(report, format, storage);
  Outcome outcome;
  outcome.extension = std::string(host::FirstExtension(format));
  outcome.kept = host::NameOf(host::OutputLayoutOf(report, format, storage)) + ", " +
                 std::string(host::NameOf(host::OutputTypeOf(report.info, format, storage))) +
                 (compression.empty() ? "" : ", " + compression);
  for (const host::Loss& loss : host::LossesOf(report, format, storage, report.info.NaturalDepth()))
    outcome.lost.push_back(loss.what);
  return outcome;
}

class InfoCommand : public Command {
 public:
  explicit InfoCommand(CLI::App& parent)
      : Command(parent, "info", "Print what picture files hold and what a render keeps") {
    App()->add_option("FILE", files_, "Pictures; - is the standard input")->required()->type_name("");
    AddTextOption(*App(), "--to", "FORMAT,...", "Only for outputs with these extensions, such as png,tif [all formats]",
                  [this](const std::string& text) { AddFormats(text); });
    AddTextOption(*App(), "--layer", "NAME", "Layer that is worked on, such as diffuse [the one without a name]",
                  [this](const std::string& name) { choice_.layer = name; });
    AddTextOption(*App(), "--max-pixels", "N", "Most pixels of a picture that is read, such as 500M [1G]",
                  [this](const std::string& text) { choice_.mostPixels = ParsePixels("--max-pixels", text); });
    App()->add_flag("--json", json_, "Print a JSON object for each file");
  }

  host::ExitCode Run(const GlobalOptions&, Terminal& terminal) override {
    host::ExitCode code = host::ExitCode::Done;
    for (const std::string& file : files_) {
      try {
        const PictureReport report = host::ReportPicture(host::PathOf(file), choice_);
        std::puts(json_ ? JsonLine(file, report).c_str() : Text(file, report).c_str());
      } catch (const host::Failure& failure) {
        if (files_.size() == 1) throw;
        terminal.Fail(failure.what());
        code = failure.Code();
      }
    }
    return code;
  }

 private:
  void AddFormats(const std::string& text) {
    // An empty word at the end counts too.
    std::istringstream words(text + ",");
    for (std::string each; std::getline(words, each, ',');)
      formats_.push_back(&host::FormatOfExtension("--to", each));
  }

  std::vector<Outcome> Outcomes(const PictureReport& report) const {
    std::vector<Outcome> outcomes;
    for (const OutputFormat& format : host::OutputFormats()) {
      const bool isChosen = std::ranges::find(formats_, &format) != formats_.end();
      if (formats_.empty() || isChosen) outcomes.push_back(OutcomeOf(report, format));
    }
    return outcomes;
  }

  std::string Text(const std::string& file, const PictureReport& report) const {
    const host::PictureInfo& info = report.info;
    std::string text = host::InputName(host::PathOf(file)) + ": " + info.format + ", " +
                       std::to_string(info.display.width) + " x " + std::to_string(info.display.height) + " pixels";
    const auto add = [&](const std::string& name, const std::string& value) { text += "\n  " + name + ": " + value; };
    if (info.data != info.display) {
      add("display window", Window(info.display));
      add("data window", Window(info.data));
    }
    std::vector<std::string> channels;
    for (const host::FileChannel& channel : info.all)
      channels.push_back(channel.name + " " + host::NameOf(channel.type));
    add("channels", Joined(channels));
    if (info.HasAlpha()) add("alpha", report.associatedAlpha ? "colours declared as premultiplied" : "as stored");
    if (info.hasInks) add("colours", "four inks, read as red, green and blue");
    if (info.pictures > 1) add("pictures", std::to_string(info.pictures) + ", of which the first is read");
    if (info.tileWidth > 0) add("tiles", host::TilesOf(info));
    if (info.levels > 1) add("levels", std::to_string(info.levels) + ", of which the largest is read");
    add("rendered at", std::to_string(info.NaturalDepth()) + " bits");
    if (!report.compression.empty()) add("compression", report.compression);
    for (const auto& [name, value] : report.attributes)
      add(name, value);
    for (const Outcome& outcome : Outcomes(report)) {
      add("as " + outcome.extension,
          outcome.kept + (outcome.lost.empty() ? "; nothing is lost" : "; lost: " + Joined(outcome.lost)));
    }
    return text;
  }

  std::string JsonLine(const std::string& file, const PictureReport& report) const {
    const host::PictureInfo& info = report.info;
    const auto window = [](const host::FileWindow& w) { return Json{w.x, w.y, w.width, w.height}; };
    Json json = {
        {"file", file}, {"format", info.format}, {"display", window(info.display)}, {"data", window(info.data)}};
    json["channels"] = Json::array();
    for (const host::FileChannel& channel : info.all)
      json["channels"].push_back({{"name", channel.name}, {"type", host::NameOf(channel.type)}});
    json["pictures"] = info.pictures;
    json["levels"] = info.levels;
    json["tiles"] = {info.tileWidth, info.tileHeight};
    json["inks"] = info.hasInks;
    json["depth"] = info.NaturalDepth();
    json["compression"] = report.compression;
    json["premultiplied"] = report.associatedAlpha;
    json["metadata"] = Json::object();
    for (const auto& [name, value] : report.attributes)
      json["metadata"][name] = value;
    json["outputs"] = Json::object();
    for (const Outcome& outcome : Outcomes(report))
      json["outputs"][outcome.extension] = {{"kept", outcome.kept}, {"lost", outcome.lost}};
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
  }

  std::vector<std::string> files_;
  std::vector<const OutputFormat*> formats_;  // none: all of them
  host::ReadChoice choice_;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeInfoCommand(CLI::App& parent) {
  return std::make_unique<InfoCommand>(parent);
}

}  // namespace vblur::cli
