// SPDX-License-Identifier: Apache-2.0
// The commented job files that `lkbench init` writes. Every key stands there with its help; those that the
// template does not set are commented out and show their default. Constant values and a pure function.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace lkbench {

struct JobTemplate {
  struct Setting {
    std::string key;
    std::string value;  // TOML
  };
  std::string name;
  std::string help;
  std::vector<Setting> settings;
};

std::span<const JobTemplate> JobTemplates();
std::vector<std::string> TemplateNames();
std::string TemplateText(const JobTemplate& job_template);

}  // namespace lkbench
