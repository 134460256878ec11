// Option values that are more than a word or a number, read from their text. Every failure is a
// host::Failure (wrong usage) that begins with the option's name.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

namespace vblur::cli {

// "12.5"; finite.
double ParseNumber(std::string_view option, std::string_view text);
// "12"; in 32 bits.
std::int32_t ParseWhole(std::string_view option, std::string_view text);
// "2G", "512MiB", "65536": bytes, with K, M or G, with or without B or iB behind it, for powers of 1024; at least 1.
std::int64_t ParseBytes(std::string_view option, std::string_view text);
// A number of pixels, of thousands, millions or thousand millions with K, M or G.
std::int64_t ParsePixels(std::string_view option, std::string_view text);
// "1920x1080", "3,-3", "0.5,0.5": two or four numbers with a separator between them.
std::array<double, 2> ParseNumberPair(std::string_view option, std::string_view text);
std::array<std::int32_t, 2> ParseWholePair(std::string_view option, std::string_view text, char separator = ',');
std::array<std::int32_t, 4> ParseWholeFour(std::string_view option, std::string_view text);
// The form of an option that takes one of these words: "A|B|C".
std::string ChoiceForm(std::span<const std::string_view> words);
// The index of a word in a list.
std::size_t ParseChoice(std::string_view option, std::string_view text, std::span<const std::string_view> words);

// Adds an option whose text is passed to `set`. `set` may throw host::Failure.
CLI::Option* AddTextOption(CLI::App& app, const std::string& name, const std::string& form, const std::string& help,
                           const std::function<void(const std::string&)>& set);

}  // namespace vblur::cli
