#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace server {

// The secret a client shows as "Authorization: Bearer TOKEN". Read from a file that only its
// owner may read; never written to a log or an answer.
class AccessToken
{
public:
    // Reads the token from path. With create, a missing file is made with a new random token
    // and mode 0600 (its folder too, 0700). Raises tessaly::Error when the file cannot be read
    // or made, others may read it, or the token is shorter than 16 characters.
    static AccessToken fromFile(const QString &path, bool create);

    // Whether the Authorization header's value carries the token, compared in constant time.
    bool accepts(std::string_view authorization) const;

private:
    QByteArray m_token;
};

} // namespace server
