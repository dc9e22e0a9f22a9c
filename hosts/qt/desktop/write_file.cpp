#include "hosts/qt/desktop/write_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <string_view>

#include "hosts/support/replace_file.h"

namespace zolt::desktop {

namespace {

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::writeFile", text); }

/// Why saving failed, in words for the user.
QString describe(std::error_code const& cause, QString const& path) {
  switch (cause.value()) {
    case ENOSPC:
    case EFBIG:
      return tr("The disk is full");
#ifdef EDQUOT
    case EDQUOT:
      return tr("Your share of the disk is full");
#endif
    case ENOENT:
    case ENOTDIR:
      return tr("There is no folder %1 (any more)")
          .arg(QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
    case EACCES:
    case EPERM:
      return tr("You have no permission to write this file or into its folder");
    case EROFS:
      return tr("The disk can only be read");
    case EISDIR:
      return tr("This is a folder or a device, not a file");
    case EWOULDBLOCK:
      return tr("Another program is saving this file at this moment");
    default:
      return QString::fromLocal8Bit(cause.message().c_str());
  }
}

std::filesystem::path toPath(QString const& path) {
#ifdef Q_OS_WIN
  return path.toStdWString();
#else
  return QFile::encodeName(path).toStdString();
#endif
}

}  // namespace

bool writeFile(QString const& path, QByteArray const& bytes, QString& error) {
  std::string_view const contents(bytes.constData(), std::size_t(bytes.size()));
  std::error_code const cause = support::replaceFile(toPath(path), contents);
  if (cause) error = describe(cause, path);
  return !cause;
}

void removeFile(QString const& path) { support::removeFile(toPath(path)); }

}  // namespace zolt::desktop
