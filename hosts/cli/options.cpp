#include "hosts/cli/options.h"

#include <sstream>

namespace zolt::cli {

namespace {

constexpr char guard = '\x01';

std::string unprotectWord(std::string word) {
  if (!word.empty() && word.front() == guard) word.erase(0, 1);
  return word;
}

class HelpFormatterC final : public CLI::Formatter {
 public:
  std::string make_option_opts(CLI::Option const* option) const override {
    std::string const name = getValueName(*option);
    return name.empty() ? name : ' ' + name;
  }
  std::string make_option_desc(CLI::Option const* option) const override {
    std::string const initial = option->get_default_str();
    return option->get_description() + (initial.empty() ? initial : " [" + initial + ']');
  }
};

}  // namespace

std::shared_ptr<CLI::FormatterBase> makeHelpFormatter() { return std::make_shared<HelpFormatterC>(); }

std::string getValueName(CLI::Option const& option) {
  // Limits of the value follow a colon.
  std::string const name = option.get_type_name();
  return name.substr(0, name.find(':'));
}

std::string protectWord(std::string word) {
  if (!word.empty() && (word.front() == '[' || word.front() == '{')) word.insert(0, 1, guard);
  return word;
}

CLI::Option* addPath(CLI::App& command, std::string const& name, std::string& path, std::string const& type,
                     std::string const& help) {
  auto const take = [&path](std::string const& given) { path = unprotectWord(given); };
  return command.add_option_function<std::string>(name, take, help)->type_name(type);
}

CLI::Option* addNumber(CLI::App& command, std::string const& name, double& value, double least, double most,
                       std::string const& help) {
  auto const take = [&value, name, least, most](double given) {
    // The condition is negated so that NaN is refused, too.
    if (!(given >= least && given <= most)) {
      std::ostringstream range;
      range << "the value is not between " << least << " and " << most;
      throw CLI::ValidationError(name, range.str());
    }
    value = given;
  };
  std::ostringstream initial;
  initial << value;
  return command.add_option_function<double>(name, take, help)->type_name("N")->default_str(initial.str());
}

void addInputOptions(CLI::App& command, InputS& input, NotationE& from) {
  auto const take = [&input](std::vector<std::string> const& given) {
    for (std::string const& word : given) input.expressions.push_back(unprotectWord(word));
  };
  CLI::Option* const expressions = command.add_option_function<std::vector<std::string>>(
      "EXPR", take, "Expressions; none, or \"-\": one a line from standard input");
  expressions->type_name("");
  addPath(command, "-i,--input", input.file, "FILE", "Read expressions from a file, one a line")
      ->excludes(expressions);
  addChoice<NotationE>(command, "--from", from,
                       {{"plain", NOTATION_PLAIN},
                        {"infix", NOTATION_INFIX},
                        {"prefix", NOTATION_PREFIX},
                        {"tree", NOTATION_TREE}},
                       "Notation of the expressions");
}

}  // namespace zolt::cli
