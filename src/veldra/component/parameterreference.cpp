#include "veldra/component/parameterreference.h"

#include <array>

namespace veldra::parameterreference {

namespace {

constexpr std::array<bool, 128> delimiterTable()
{
    std::array<bool, 128> table {};
    for (const char c : "-=<>+/* ',{}()&^%$#@!;:?~\\|")
        table[static_cast<unsigned char>(c)] = c != '\0';
    return table;
}

constexpr std::array<bool, 128> delimiters = delimiterTable();

} // namespace

bool isDelimiter(QChar c)
{
    return c.unicode() < delimiters.size() && delimiters[c.unicode()];
}

qsizetype findDelimiter(QStringView text, qsizetype from)
{
    const QChar *data = text.data();
    for (qsizetype i = from; i < text.size(); ++i) {
        if (isDelimiter(data[i]))
            return i;
    }
    return -1;
}

} // namespace veldra::parameterreference
