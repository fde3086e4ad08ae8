#include "OstrelAgent/Panel/PanelMessages.hpp"

#include <utility>

#include "OstrelAgent/Status/RFC3339.hpp"
#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

constexpr std::size_t maxCharacters = 120;

/// The text, or its first characters and an ellipsis when it is longer. A character is a code point.
std::string shortened(std::string text) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool startsCharacter = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (startsCharacter && ++characters > maxCharacters) return text.substr(0, i) + "…";
  }
  return text;
}

/// The member when it is a non-empty text.
std::optional<std::string> filledText(const JsonObject& object, std::string_view name) {
  auto text = object.text(name);
  if (text && text->empty()) text.reset();
  return text;
}

DiagnosticsSending notSent(std::string sentence) { return {std::nullopt, std::move(sentence)}; }

std::string text(const Message& message) { return std::string(message.text()); }

Alert news(const Message& title, std::string reason) {
  return {text(title), std::move(reason), {text(Copy::alertButtonOk)}};
}

}  // namespace

std::string checkinNotice(const std::expected<JsonObject, ControlSocketError>& answer) {
  if (!answer) {
    return Copy::noticeCheckinFailed.with(answer.error().userMessage(Copy::socketOpCheckIn.text()));
  }
  if (answer->boolean("checked_in") == true) return std::string(Copy::noticeCheckedIn.text());
  if (auto reason = filledText(*answer, "skipped")) {
    return Copy::noticeSkippedReason.with(shortened(std::move(*reason)));
  }
  if (auto error = filledText(*answer, "last_error")) {
    return Copy::noticeCheckinFailed.with(shortened(std::move(*error)));
  }
  return std::string(Copy::noticeSkipped.text());
}

std::string diagnosticsNotice(std::int32_t helperStatus) {
  if (helperStatus != 0) return Copy::noticeDiagnosticsFailed.with(helperStatus);
  return std::string(Copy::noticeDiagnosticsCopied.text());
}

DiagnosticsSending diagnosticsSending(const HelperRunner::HelperOutput& output, Date now) {
  const auto answer = JsonObject::parse(output.standardOutput);
  if (!answer && output.status != 0) return notSent(Copy::noticeDiagnosticsFailed.with(output.status));
  if (!answer) return notSent(Copy::noticeDiagnosticsSendFailed.with(""));
  if (answer->boolean("sent") == true) {
    return {parseRFC3339(answer->text("sent_at").value_or("")).value_or(now), std::nullopt};
  }
  const auto seconds = answer->integer("retry_after_seconds").value_or(0);
  if (seconds >= 1) return notSent(Copy::noticeDiagnosticsSentRecently.with((seconds - 1) / 60 + 1));
  return notSent(Copy::noticeDiagnosticsSendFailed.with(answer->text("error").value_or("")));
}

Alert installAlert() {
  return {text(Copy::alertInstallTitle),
          text(Copy::alertInstallBody),
          {text(Copy::alertButtonInstall), text(Copy::alertButtonCancel)}};
}

Alert updateFailedAlert(const ControlSocketError& error) {
  // This is how a daemon that does not know the action refuses it.
  const bool isTooOld = error.message.starts_with("unknown ");
  return news(Copy::alertUpdateFailedTitle, isTooOld
                                                ? text(Copy::updateServiceTooOld)
                                                : error.userMessage(Copy::socketOpInstallUpdates.text()));
}

Alert filterOnFailedAlert(std::string reason) { return news(Copy::alertFilterOnTitle, std::move(reason)); }

Alert trustFailedAlert(std::string reason) { return news(Copy::alertTrustTitle, std::move(reason)); }

}  // namespace ostrel
