#include "hosts/qt/desktop/file_replacement.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#endif

namespace zolt::desktop {

namespace {

/// Where the bytes stand until they are complete. Always the same place, so that what is left over is found
/// again; hidden, because it is nobody's file.
QString draftPath(QString const& target) {
  constexpr qsizetype longest_name = 240;  // bytes that every file system allows, with ours around them
  QFileInfo const info(target);
  QByteArray name = QFile::encodeName(info.fileName());
  if (name.size() > longest_name) name = QCryptographicHash::hash(name, QCryptographicHash::Sha256).toHex();
  return info.path() + QStringLiteral("/.") + QFile::decodeName(name) + QStringLiteral(".part");
}

#ifdef Q_OS_UNIX

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::replaceFile", text); }

/// Why it failed, in the words of somebody who wants to save.
QString describe(int cause, QString const& target) {
  QString const folder = QDir::toNativeSeparators(QFileInfo(target).path());
  switch (cause) {
    case ENOSPC:
    case EFBIG:
      return tr("The disk is full");
    case EDQUOT:
      return tr("Your share of the disk is full");
    case ENOENT:
    case ENOTDIR:
      return tr("There is no folder %1 (any more)").arg(folder);
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
      return qt_error_string(cause);
  }
}

/// Closes the file when it goes.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }
  void reset(int number) {
    close();
    number_ = number;
  }
  bool close() {
    int const number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_;
};

/// What a link leads to, also when there is nothing yet.
QString followLinks(QString path) {
  constexpr int most_links = 40;
  for (int i = 0; i < most_links; ++i) {
    QFileInfo const info(path);
    if (!info.isSymLink()) break;
    path = info.symLinkTarget();
  }
  return path;
}

bool isSameFile(struct stat const& a, struct stat const& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// A new file at `path` that is locked against other writers. False with `errno` set.
bool createDraft(QByteArray const& path, mode_t mode, Descriptor& draft) {
  constexpr int attempts = 5;
  for (int i = 0; i < attempts; ++i) {
    draft.reset(::open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!draft && errno != EEXIST) return false;
    bool const fresh = bool(draft);
    if (!fresh) draft.reset(::open(path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!draft) {
      if (errno == ENOENT) continue;
      if (errno != ELOOP || ::unlink(path) != 0) return false;  // a link: not from us
      continue;
    }
    // Where there are no locks, nobody else has one.
    if (::flock(draft.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    // Who held the lock before may have given the file its final name, and who came between have removed it.
    struct stat ours {
    }, there{};
    bool const inPlace = ::fstat(draft.number(), &ours) == 0 && ::lstat(path, &there) == 0;
    if (!inPlace || !isSameFile(ours, there)) continue;
    if (fresh) return true;
    if (::unlink(path) != 0) return false;  // left over
  }
  errno = EWOULDBLOCK;
  return false;
}

bool writeAll(int file, QByteArray const& bytes) {
  char const* from = bytes.constData();
  for (qsizetype left = bytes.size(); left > 0;) {
    ssize_t const written = ::write(file, from, std::size_t(left));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    from += written;
    left -= written;
  }
  return true;
}

bool syncFile(int file) {
  // Some file systems cannot, and say so.
  return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP;
}

/// Gives `draft` the owner and the permissions of the file that it replaces, as far as this user may.
bool takeOver(int draft, struct stat const& before) {
  bool const owned =
      ::fchown(draft, before.st_uid, before.st_gid) == 0 || ::fchown(draft, uid_t(-1), before.st_gid) == 0;
  // To another group than before only what everybody may do may go.
  mode_t const mode = before.st_mode & 0777u;
  // A file system without permissions refuses, and has nothing to lose by it.
  return ::fchmod(draft, owned ? mode : mode & ~mode_t(070)) == 0 || errno == EPERM || errno == ENOTSUP;
}

bool replace(QByteArray const& target, QByteArray const& draftName, QByteArray const& bytes) {
  struct stat before {};
  bool const exists = ::stat(target, &before) == 0;
  if (!exists && errno != ENOENT) return false;
  if (exists && !S_ISREG(before.st_mode)) {
    errno = EISDIR;
    return false;
  }
  // Taking its place would get around a protection against writing.
  if (exists && ::faccessat(AT_FDCWD, target, W_OK, AT_EACCESS) != 0) return false;
  Descriptor draft;
  if (!createDraft(draftName, exists ? 0600 : 0666, draft)) return false;
  bool done = (!exists || takeOver(draft.number(), before)) && writeAll(draft.number(), bytes) &&
              syncFile(draft.number()) && ::rename(draftName, target) == 0;
  if (!done) {
    int const cause = errno;
    ::unlink(draftName);
    errno = cause;
    return false;
  }
  // The new name, too, is to survive a power failure.
  Descriptor const folder(::open(QFile::encodeName(QFileInfo(QFile::decodeName(target)).path()),
                                 O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) ::fsync(folder.number());
  return true;
}

#endif

}  // namespace

#ifdef Q_OS_UNIX

bool replaceFile(QString const& path, QByteArray const& bytes, QString& error) {
  QString const target = followLinks(QFileInfo(path).absoluteFilePath());
  errno = 0;
  if (replace(QFile::encodeName(target), QFile::encodeName(draftPath(target)), bytes)) return true;
  error = describe(errno, target);
  return false;
}

#else

bool replaceFile(QString const& path, QByteArray const& bytes, QString& error) {
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) return true;
  error = file.errorString();
  return false;
}

#endif

void removeFile(QString const& path) {
  QFile::remove(path);
  QFile::remove(draftPath(path));
}

}  // namespace zolt::desktop
