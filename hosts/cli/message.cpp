#include "hosts/cli/message.h"

#include <cstdio>
#include <system_error>

#include "hosts/cli/marked_text.h"
#include "hosts/cli/utf8_text.h"

namespace zolt::cli {

namespace {

/// Sentences begin with a capital for hosts that show them alone; after "ved:" they begin with a small
/// letter.
std::string continueSentence(std::string sentence) {
  if (!sentence.empty() && sentence[0] >= 'A' && sentence[0] <= 'Z')
    sentence[0] = static_cast<char>(sentence[0] - 'A' + 'a');
  return sentence;
}

}  // namespace

void printMessage(std::string const& message, std::string const& advice) {
  std::string const lines = "ved: " + toShown(message) + '\n' + advice + (advice.empty() ? "" : "\n");
  std::fwrite(lines.data(), 1, lines.size(), stderr);
}

void printFault(std::string const& place, oss::wstring const& text, FaultS const& fault) {
  std::string headline;
  if (!place.empty()) {
    headline = place + ':';
    if (fault.located) headline += std::to_string(countColumn(text, fault.begin)) + ':';
    headline += ' ';
  }
  // One call, so that the lines stay together when others write to the same terminal.
  std::string lines = "ved: " + toShown(headline + continueSentence(fault.message)) + '\n';
  if (!text.empty()) {
    MarkedTextS const marked = markText(text, fault.begin, fault.end);
    lines += "  " + marked.text + '\n';
    if (fault.located) lines += "  " + marked.marker + '\n';
  }
  std::fwrite(lines.data(), 1, lines.size(), stderr);
}

std::string describeSystemError(int error) { return std::generic_category().message(error); }

}  // namespace zolt::cli
