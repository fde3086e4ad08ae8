#include "OstrelAgent/Containers/ContainerSnippet.hpp"

#include <algorithm>

#include "OstrelAgent/Containers/TrustBundle.hpp"

namespace ostrel {

namespace {

struct Names {
  std::string_view name;
  std::string_view title;
};

constexpr std::array<Names, containerSnippets.size()> names = {{
    {"dockerRun", "docker run"},
    {"compose", "compose.yaml"},
    {"dockerfile", "Dockerfile"},
    {"envFile", "container.env"},
}};

const Names& namesOf(ContainerSnippet snippet) { return names.at(static_cast<std::size_t>(snippet)); }

/// The option that mounts the bundle: "bundle:path:ro" in quotes.
std::string mount() {
  return "\"" + std::string(trustbundle::file) + ":" + std::string(trustbundle::pathInContainer) + ":ro\"";
}

/// One line for each variable, joined by line feeds.
std::string variableLines(std::string_view before, std::string_view between, std::string_view after) {
  std::string lines;
  for (const auto variable : trustbundle::variables) {
    if (!lines.empty()) lines += '\n';
    lines.append(before).append(variable).append(between).append(trustbundle::pathInContainer).append(after);
  }
  return lines;
}

}  // namespace

std::string_view nameOf(ContainerSnippet snippet) { return namesOf(snippet).name; }

std::optional<ContainerSnippet> containerSnippetNamed(std::string_view name) {
  const auto found = std::ranges::find(containerSnippets, name, [](auto each) { return nameOf(each); });
  return found == containerSnippets.end() ? std::nullopt : std::optional(*found);
}

std::string_view titleOf(ContainerSnippet snippet) { return namesOf(snippet).title; }

std::string textOf(ContainerSnippet snippet) {
  switch (snippet) {
    case ContainerSnippet::dockerRun:
      return "docker run \\\n  -v " + mount() + " \\\n" + variableLines("  -e ", "=", " \\") +
             "\n  node:22 npm install";
    case ContainerSnippet::compose:
      return "services:\n  app:\n    volumes:\n      - " + mount() + "\n    environment:\n" +
             variableLines("      ", ": ", "");
    case ContainerSnippet::dockerfile:
      return "# docker build --build-context ostrel=\"" + std::string(trustbundle::folder) +
             "\" .\n# Builder stage only: registries are reached while building; the\n"
             "# runtime image needs nothing.\nCOPY --from=ostrel bundle.pem " +
             std::string(trustbundle::pathInContainer) + "\n" + variableLines("ENV ", "=", "");
    case ContainerSnippet::envFile:
      return "# ~/.ostrel/container.env, then: docker run --env-file ~/.ostrel/container.env \\\n#   -v " +
             mount() + " …\n" + variableLines("", "=", "");
  }
  return {};
}

}  // namespace ostrel
