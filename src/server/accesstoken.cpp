#include "server/accesstoken.h"

#include "tessaly/error.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace server {

namespace {

constexpr int MinimumLength = 16;

[[noreturn]] void refuse(const QString &path, const QString &why)
{
    throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("token file %1: %2").arg(path, why));
}

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

void createFile(const QString &path)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        refuse(path, QStringLiteral("its folder cannot be made"));
    ::chmod(QFile::encodeName(folder).constData(), 0700);
    quint32 random[8];
    QRandomGenerator::system()->fillRange(random);
    const QByteArray token = QByteArray(reinterpret_cast<const char *>(random), sizeof random)
                                     .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        refuse(path, systemError());
    const QByteArray line = token + '\n';
    const bool written = ::write(fd, line.constData(), size_t(line.size())) == line.size();
    ::close(fd);
    if (!written)
        refuse(path, QStringLiteral("cannot be written"));
}

} // namespace

AccessToken AccessToken::fromFile(const QString &path, bool create)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat info {};
    if (::stat(name.constData(), &info) != 0) {
        if (errno != ENOENT || !create)
            refuse(path, systemError());
        createFile(path);
        if (::stat(name.constData(), &info) != 0)
            refuse(path, systemError());
    }
    if (!S_ISREG(info.st_mode))
        refuse(path, QStringLiteral("not a regular file"));
    if (info.st_mode & 077)
        refuse(path, QStringLiteral("others may read it (mode %1); make it readable by its owner only: chmod 600 %2")
                             .arg(info.st_mode & 0777, 3, 8, QLatin1Char('0')).arg(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        refuse(path, file.errorString());
    AccessToken token;
    token.m_token = file.read(4096).trimmed();
    if (token.m_token.size() < MinimumLength || token.m_token.contains(' ') || token.m_token.contains('\n'))
        refuse(path, QStringLiteral("the token must be one line of at least %1 characters without blanks")
                             .arg(MinimumLength));
    return token;
}

bool AccessToken::accepts(std::string_view authorization) const
{
    constexpr std::string_view scheme = "bearer ";
    if (authorization.size() < scheme.size())
        return false;
    for (size_t i = 0; i < scheme.size(); ++i) {
        if (char(std::tolower(static_cast<unsigned char>(authorization[i]))) != scheme[i])
            return false;
    }
    const std::string_view given = authorization.substr(scheme.size());
    // Every byte of the token is compared whatever the given one holds, so the time taken
    // does not tell how much of it was right.
    unsigned difference = given.size() != size_t(m_token.size()) ? 1U : 0U;
    for (qsizetype i = 0; i < m_token.size(); ++i) {
        const char offered = size_t(i) < given.size() ? given[size_t(i)] : '\0';
        difference |= static_cast<unsigned char>(offered ^ m_token.at(i));
    }
    return difference == 0;
}

} // namespace server
