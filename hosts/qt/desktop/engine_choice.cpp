#include "hosts/qt/desktop/engine_choice.h"

#include <QCoreApplication>

#include "zolt/engines/list/engine_list.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using qt::toQString;

namespace {

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::EngineChoice", text); }

}  // namespace

std::vector<EngineChoice> engineChoices() {
  std::vector<EngineChoice> all;
  for (engine_list::EngineEntryS const& entry : engine_list::listEngines()) {
    EngineChoice choice;
    choice.id = toQString(entry.name);
    choice.title = toQString(entry.title);
    if (entry.isThere) choice.engine = engine_list::makeEngine(entry.name);
    if (!choice.engine) choice.reason = tr("%1.").arg(toQString(entry.reason));
    all.push_back(std::move(choice));
  }
  return all;
}

}  // namespace zolt::desktop
