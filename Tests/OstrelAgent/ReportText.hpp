#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The shortest report that reads, with its verdict.
inline std::string reportText(std::string_view verdict = "protected") {
  return R"({"version":"2.4.0","ca_trusted":true,"token_present":true,"token_managed":false,)"
         R"("daemon_listening":true,"health":{"verdict":")" +
         std::string(verdict) + R"("}})";
}

}  // namespace ostrel
