// Names of types in the names of typed tests: ctest prints ProcessorContract/ScreenOfR8.WritesNothing... in place of a
// number, and a template as SampleAt/HvTexture_R8_Rf. Given as the last argument:
//
//   TYPED_TEST_SUITE(SampleAt, Textures, TypeNames);
//   INSTANTIATE_TYPED_TEST_SUITE_P(MixContract, ProcessorContract, Merges, TypeNames);
#pragma once

#include <cstdlib>
#include <memory>
#include <regex>
#include <string>
#include <typeinfo>

#include <cxxabi.h>

#include "image/Pixels.h"

namespace vblur::test {

namespace type_names {

template <class T>
std::string demangled() {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(typeid(T).name(), nullptr, nullptr, &status),
                                                    std::free);
  return text == nullptr ? typeid(T).name() : text.get();
}

inline void replaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

}  // namespace type_names

struct TypeNames {
  template <class T>
  static std::string GetName(int) {
    using namespace type_names;
    std::string name = demangled<T>();
    const std::pair<std::string, const char*> pixels[] = {
        {demangled<R8>(), "R8"}, {demangled<R16>(), "R16"}, {demangled<Ri>(), "Ri"}, {demangled<Rf>(), "Rf"},
        {demangled<C8>(), "C8"}, {demangled<C16>(), "C16"}, {demangled<Ci>(), "Ci"}, {demangled<Cf>(), "Cf"},
    };
    for (const auto& [pixel, shortName] : pixels)
      replaceAll(name, pixel, shortName);
    name = std::regex_replace(name, std::regex("(\\(anonymous namespace\\)|[A-Za-z_]\\w*)::"), "");
    name = std::regex_replace(name, std::regex("-(?=[0-9])"), "minus");
    name = std::regex_replace(name, std::regex("[^A-Za-z0-9]+"), "_");
    while (!name.empty() && name.back() == '_')
      name.pop_back();
    return name;
  }
};

}  // namespace vblur::test
