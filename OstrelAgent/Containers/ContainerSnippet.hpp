#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

/// The ways to start containers for which there is a snippet.
enum class ContainerSnippet { dockerRun, compose, dockerfile, envFile };

inline constexpr std::array containerSnippets = {ContainerSnippet::dockerRun, ContainerSnippet::compose,
                                                 ContainerSnippet::dockerfile, ContainerSnippet::envFile};

/// "dockerRun", "compose", "dockerfile" or "envFile".
std::string_view nameOf(ContainerSnippet snippet);
std::optional<ContainerSnippet> containerSnippetNamed(std::string_view name);

/// The command or file under which a picker lists the snippet: "docker run", "compose.yaml", …
std::string_view titleOf(ContainerSnippet snippet);

/// The text to paste, without a line feed at the end.
std::string textOf(ContainerSnippet snippet);

}  // namespace ostrel
