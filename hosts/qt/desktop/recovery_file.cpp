#include "hosts/qt/desktop/recovery_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QUuid>

#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/qt/desktop/write_file.h"

#ifdef Q_OS_WIN
#include <io.h>
#include <sys/locking.h>
#else
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#endif

namespace zolt::desktop {

namespace {

constexpr char magic[] = "zolt-recovery 1";
constexpr QLatin1String suffix(".recovery"), lock_suffix(".lock");
constexpr qsizetype longest_head = 1 << 16;

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::RecoveryFile", text); }

/// Removes the line that starts with `word` and a blank from the front of `bytes`, and returns its rest.
std::optional<QByteArray> takeLine(QByteArray& bytes, QByteArray const& word) {
  qsizetype const end = bytes.indexOf('\n');
  if (end < 0 || !bytes.startsWith(word + ' ')) return std::nullopt;
  QByteArray const rest = bytes.mid(word.size() + 1, end - word.size() - 1);
  bytes.remove(0, end + 1);
  return rest;
}

/// Removes the head from the front of a recovery file.
bool takeHead(QByteArray& bytes, RecoveredSheet& recovered) {
  QByteArray const start = QByteArray(magic) + '\n';
  if (!bytes.startsWith(start)) return false;
  bytes.remove(0, start.size());
  auto const path = takeLine(bytes, "path");
  auto const written = takeLine(bytes, "written");
  if (!path || !written) return false;
  recovered.path = QUrl::fromPercentEncoding(*path);
  recovered.written = QDateTime::fromString(QString::fromLatin1(*written), Qt::ISODateWithMs);
  return true;
}

QByteArray readAll(QString const& name) {
  QFile file(name);
  // A recovery file is a sheet with a head; anything longer is no recovery file.
  return file.open(QIODevice::ReadOnly) ? file.read(max_sheet_bytes + longest_head) : QByteArray();
}

}  // namespace

RecoveryFile::RecoveryFile(QString name) : name_(std::move(name)), lock_(name_ + lock_suffix) {}

bool RecoveryFile::tryLock() {
  if (lock_.isOpen()) return true;
  if (!lock_.open(QIODevice::ReadWrite)) return false;
#ifdef Q_OS_WIN
  bool const locked = _locking(lock_.handle(), _LK_NBLCK, 1) == 0;
#else
  struct stat found = {};
  // On a disk without locks nobody else has one; the previous owner may just have removed the file.
  bool const locked = (::flock(lock_.handle(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) &&
                      ::fstat(lock_.handle(), &found) == 0 && found.st_nlink > 0;
#endif
  if (!locked) lock_.close();
  return locked;
}

void RecoveryFile::unlock() {
  if (!lock_.isOpen()) return;
  // Removing closes first, and so another program could take the lock in between.
  QFile::remove(lock_.fileName());
  lock_.close();
}

std::unique_ptr<RecoveryFile> RecoveryFile::create(QString const& folder) {
  QString const id = QUuid::createUuid().toString(QUuid::WithoutBraces);
  return std::unique_ptr<RecoveryFile>(new RecoveryFile(folder + u'/' + id + suffix));
}

std::vector<std::unique_ptr<RecoveryFile>> RecoveryFile::adoptAll(QString const& folder) {
  std::vector<std::unique_ptr<RecoveryFile>> files;
  QStringList names;
  for (QString const& name :
       QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Time | QDir::Reversed)) {
    // The program may have ended before its first file was complete.
    qsizetype const end = name.indexOf(suffix);
    QString const file = name.left(end + suffix.size()).remove(0, name.startsWith(u'.') ? 1 : 0);
    if (end > 0 && !names.contains(file)) names << file;
  }
  for (QString const& name : names) {
    std::unique_ptr<RecoveryFile> file(new RecoveryFile(folder + u'/' + name));
    if (!file->tryLock()) continue;
    if (QFile::exists(file->name_)) {
      files.push_back(std::move(file));
    } else {
      file->remove();
    }
  }
  return files;
}

bool RecoveryFile::write(QString const& path, Sheet const& sheet, QString& error) {
  QFileInfo const folder(QFileInfo(name_).path());
  if (!folder.exists() && QDir().mkpath(folder.filePath())) {
    QFile::setPermissions(folder.filePath(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  if (!tryLock()) {
    error = tr("The folder %1 cannot be written").arg(QDir::toNativeSeparators(folder.filePath()));
    return false;
  }
  QByteArray const head = QByteArray(magic) + "\npath " + QUrl::toPercentEncoding(path, "/") + "\nwritten " +
                          QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1() + '\n';
  return writeFile(name_, head + writeSheet(sheet), error);
}

std::optional<RecoveredSheet> RecoveryFile::read(QString& error) const {
  QByteArray bytes = readAll(name_);
  RecoveredSheet recovered;
  if (!takeHead(bytes, recovered)) {
    error = tr("The file does not start as it should");
    return std::nullopt;
  }
  std::optional<Sheet> const sheet = readSheet(bytes, error);
  if (!sheet) return std::nullopt;
  recovered.sheet = *sheet;
  return recovered;
}

std::optional<RecoveredSheet> RecoveryFile::salvage() const {
  QByteArray bytes = readAll(name_);
  RecoveredSheet recovered;
  if (!takeHead(bytes, recovered)) bytes.remove(0, std::max<qsizetype>(0, bytes.indexOf("zolt-sheet 1\n")));
  std::optional<Sheet> const sheet = salvageSheet(bytes);
  if (!sheet) return std::nullopt;
  recovered.path.clear();
  recovered.sheet = *sheet;
  return recovered;
}

void RecoveryFile::remove() {
  removeFile(name_);
  unlock();
}

}  // namespace zolt::desktop
