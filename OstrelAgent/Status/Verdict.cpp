#include "OstrelAgent/Status/Verdict.hpp"

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

ProtectionVerdict ProtectionVerdict::fromWire(std::string_view wire, std::int64_t offByPolicy) {
  if (wire == "protected" && offByPolicy >= 1) return {Case::protectedWithOff, offByPolicy};
  if (wire == "protected") return {Case::isProtected, 0};
  if (wire == "degraded") return {Case::needsAttention, 0};
  if (wire == "not_protected") return {Case::notProtected, 0};
  return {Case::notReported, 0};
}

ProtectionVerdict ProtectionVerdict::of(const Snapshot& snapshot) {
  return fromWire(snapshot.verdict, snapshot.offByPolicyCount());
}

std::string ProtectionVerdict::menuBarDescription() const {
  switch (kind) {
    case Case::isProtected:
      return std::string(Copy::tooltipProtected.text());
    case Case::protectedWithOff:
      return Copy::tooltipProtectedWithOff.with(count);
    case Case::needsAttention:
      return std::string(Copy::tooltipDegraded.text());
    case Case::notProtected:
      return std::string(Copy::tooltipNotProtected.text());
    case Case::notReported:
      return std::string(Copy::tooltipUnreported.text());
  }
  return {};
}

std::string ProtectionVerdict::headerText() const {
  switch (kind) {
    case Case::isProtected:
      return std::string(Copy::verdictProtected.text());
    case Case::protectedWithOff:
      return Copy::verdictProtectedWithOff.with(count);
    case Case::needsAttention:
      return std::string(Copy::verdictNeedsAttention.text());
    case Case::notProtected:
      return std::string(Copy::verdictNotProtected.text());
    case Case::notReported:
      return std::string(Copy::verdictNotReported.text());
  }
  return {};
}

}  // namespace ostrel
