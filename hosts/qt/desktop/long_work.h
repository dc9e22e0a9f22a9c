#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace zolt::desktop {

/// Called before each step with how much is done; false: stop.
using Progress = std::function<bool(qsizetype)>;

/// For work in small steps: shows over `window`, after a while, how much of `all` is done, with a button to
/// stop it.
Progress showProgress(QWidget* window, QString const& what, qsizetype all);

/// For work that may have a single long step: does it on another thread and shows the same. Returns false as
/// soon as the person stops it; `work` is told so when it next asks, ends on its own, and takes what it holds
/// with it. So it may refer to nothing that others change or destroy.
bool runLongWork(QWidget* window, QString const& what, qsizetype all,
                 std::function<void(Progress const&)> const& work);

}  // namespace zolt::desktop
