// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Library.h"

#include <dlfcn.h>
#include <link.h>

#include "core/LKConfig.h"
#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

int Flags(Visibility visibility) {
  return RTLD_NOW | (visibility == Visibility::kGlobal ? RTLD_GLOBAL : RTLD_LOCAL);
}

std::string LastError() {
  const char* text = dlerror();
  return text == nullptr ? "unknown error" : OneLine(text);
}

// The loader says "no such file" also for a library that the file needs: then the file itself is there.
bool IsMissing(const std::filesystem::path& file) {
  std::error_code error;
  return file.has_parent_path() && !std::filesystem::exists(file, error);
}

}  // namespace

Library::Library(const std::string& what, const std::filesystem::path& file, Visibility visibility)
    : m_what(what) {
  if (IsMissing(file)) throw PrepareError("the " + what + " is missing: looked for " + file.string());
  m_handle = dlopen(file.c_str(), Flags(visibility));
  if (m_handle == nullptr)
    throw PrepareError("the " + what + ' ' + file.string() + " cannot be loaded: " + LastError());
}

Library::Library(const std::string& what, const std::vector<std::filesystem::path>& files,
                 const std::string& where, Visibility visibility)
    : m_what(what) {
  std::vector<std::string> names;
  std::string broken;
  for (const auto& file : files) {
    m_handle = IsMissing(file) ? nullptr : dlopen(file.c_str(), Flags(visibility));
    if (m_handle != nullptr) return;
    const std::string error = IsMissing(file) ? "" : LastError();
    if (error.find("cannot open shared object file: No such file") == std::string::npos && broken.empty())
      broken = error;
    if (file.has_parent_path()) continue;
    names.push_back(file.string());
  }
  throw PrepareError("the " + what + " is missing: looked for " + Join(names, ", ") + " in " + where +
                     (broken.empty() ? "" : " (" + broken + ")"));
}

void* Library::Symbol(const char* name) const {
  void* symbol = dlsym(m_handle, name);
  if (symbol == nullptr)
    throw PrepareError("the " + m_what + ' ' + Path().string() + " lacks the symbol " + name);
  return symbol;
}

std::filesystem::path Library::Path() const {
  const link_map* map = nullptr;
  if (dlinfo(m_handle, RTLD_DI_LINKMAP, &map) != 0 || map->l_name == nullptr) return {};
  return std::filesystem::path(map->l_name).lexically_normal();
}

std::filesystem::path LibraryFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&LKGetConfig), &info) == 0 || info.dli_fname == nullptr) return {};
  return std::filesystem::weakly_canonical(info.dli_fname).parent_path();
}

}  // namespace lkbench
