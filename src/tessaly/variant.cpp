#include "tessaly/variant.h"

#include "tessaly/error.h"

#include <QLocale>

#include <cmath>

namespace tessaly::variant {

namespace {

[[noreturn]] void mismatch(const QVariant &value, const char *wanted)
{
    throw Error(ErrorNumber::TypeMismatch,
                QStringLiteral("\"%1\" is not %2").arg(value.toString(), QLatin1String(wanted)));
}

qint32 roundToLong(double number, const QVariant &value)
{
    const double rounded = std::nearbyint(number); // to even, as the framework rounds
    if (!std::isfinite(rounded) || rounded < -2147483648.0 || rounded > 2147483647.0)
        throw Error(ErrorNumber::Overflow,
                    QStringLiteral("%1 is outside the 32-bit integer range").arg(value.toString()));
    return qint32(rounded);
}

} // namespace

qint32 toLong(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool() ? -1 : 0;
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return roundToLong(value.toDouble(), value);
    case QMetaType::QString: {
        const QString text = value.toString().trimmed();
        bool ok = false;
        const double number = QLocale::c().toDouble(text, &ok);
        if (!ok)
            mismatch(value, "a 32-bit integer");
        return roundToLong(number, value);
    }
    default:
        if (!value.isValid())
            return 0;
        mismatch(value, "a 32-bit integer");
    }
}

bool toBoolean(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QString: {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
            return false;
        bool ok = false;
        const double number = QLocale::c().toDouble(text, &ok);
        if (!ok)
            mismatch(value, "true or false");
        return number != 0;
    }
    default:
        if (!value.isValid())
            return false;
        bool ok = false;
        const double number = value.toDouble(&ok);
        if (!ok)
            mismatch(value, "true or false");
        return number != 0;
    }
}

QString toText(const QVariant &value)
{
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (value.metaType() == QMetaType::fromType<ObjectRef>())
        throw Error(ErrorNumber::TypeMismatch, QStringLiteral("an object is not a text"));
    return value.toString();
}

QVariant holding(const ObjectRef &object)
{
    return QVariant::fromValue(object);
}

ObjectRef heldObject(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<ObjectRef>() ? value.value<ObjectRef>() : nullptr;
}

} // namespace tessaly::variant
