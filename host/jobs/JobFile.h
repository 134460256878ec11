// Job files: one JSON document for one use of the effect. Reading checks every field and refuses unknown ones; writing
// makes the shortest file that reads back as the same job.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "host/base/OutputFileCommit.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// Reads a job file. File names in it start from its folder, which becomes Job::folder. Throws Failure,
// whose line begins with the file's name: cannot read for a file that is missing, unreadable or larger than
// 16 MiB; wrong usage for an error in it, with line and column, or with the path of the value such as
// "properties/Blur/keys/3" (items are counted from 0). `output` is required, and `input` for every kind but 3 and 7;
// CheckJob checks the fields together.
// "-" is the standard input, whose names start from the current folder.
Job ReadJobFile(const std::filesystem::path& path);

// Parses the text of a job file; file names start from `folder`. Failures name no file.
Job ParseJob(std::string_view text, const std::filesystem::path& folder);

// Writes a job so that ReadJobFile gives an equal one: what differs from the defaults, list entries as
// text, numbers to the last bit. The file appears when complete and replaces an existing one.
// When the job's folder is not that of the file, relative file names are rewritten so that they mean the
// same pictures. Throws Failure: cannot write; wrong usage for a job that a file cannot hold, which is one
// that CheckValues refuses, or one with file names that are not UTF-8.
void WriteJobFile(const Job& job, const std::filesystem::path& path);
// Without taking the name yet, which the caller does.
std::unique_ptr<OutputFileCommit> WriteJobFileBeside(const Job& job, const std::filesystem::path& path);

// The text of a job file; file names are written unchanged.
std::string FormatJob(const Job& job);

}  // namespace vblur::host
