#include "OstrelAgent/Verdict.hpp"

#include "OstrelAgent/Copy.hpp"

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

MenuBarIcon MenuBarIcon::of(const ProtectionVerdict& verdict) {
  using enum ProtectionVerdict::Case;
  switch (verdict.kind) {
    case isProtected:
      return {MenuBarBadge::dot, "checkmark.shield.fill", verdict.menuBarDescription()};
    case protectedWithOff:
      return {MenuBarBadge::dot, "shield", verdict.menuBarDescription()};
    case notProtected:
      return {MenuBarBadge::octagon, "exclamationmark.shield.fill", verdict.menuBarDescription()};
    case needsAttention:
    case notReported:
      break;
  }
  return {MenuBarBadge::square, "exclamationmark.triangle.fill", verdict.menuBarDescription()};
}

}  // namespace ostrel
